#include "FrameTray.h"

#include "app/ui/AppIcons.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>

namespace zelto {

FrameTray::FrameTray(bool systemHasTray) : openMenu_([](QMenu& menu) { menu.exec(QCursor::pos()); })
{
    if (systemHasTray) {
        icon_ = new QSystemTrayIcon(AppIcons::tray(TrayState::Idle), this);
        icon_->setToolTip(StringTable::text(ids::kAppTitle));
        connect(icon_, &QSystemTrayIcon::activated, this, &FrameTray::activate);
    }
    leftPress_.setSingleShot(true);
    leftPress_.setInterval(QApplication::doubleClickInterval());
    connect(&leftPress_, &QTimer::timeout, this, &FrameTray::openMenu);
}

FrameTray::~FrameTray() = default;

void FrameTray::setTipLine(const QString& line)
{
    if (icon_) {
        const QString title = StringTable::text(ids::kAppTitle);
        icon_->setToolTip(line.isEmpty() ? title : title + u'\n' + line);
    }
}

void FrameTray::setState(TrayState state)
{
    // Queued from a worker, direct on the UI thread; a state still queued when the tray goes is
    // dropped with it.
    QMetaObject::invokeMethod(
        this, [this, state] { showState(state); }, Qt::AutoConnection);
}

void FrameTray::showState(TrayState state)
{
    if (state == state_)
        return;
    state_ = state;
    if (icon_)
        icon_->setIcon(AppIcons::tray(state));
}

void FrameTray::attach(QMenu* menu, QWidget* window)
{
    menu_ = menu;
    window_ = window;
}

void FrameTray::show()
{
    if (icon_)
        icon_->show();
}

void FrameTray::remove()
{
    leftPress_.stop();
    if (icon_)
        icon_->hide();
}

void FrameTray::activate(QSystemTrayIcon::ActivationReason reason)
{
    switch (reason) {
    case QSystemTrayIcon::DoubleClick:
        leftPress_.stop();
        Q_EMIT toggleWindowRequested();
        break;
    case QSystemTrayIcon::Trigger:
        leftPress_.start();
        break;
    case QSystemTrayIcon::Context:
        openMenu();
        break;
    case QSystemTrayIcon::MiddleClick:
    case QSystemTrayIcon::Unknown:
        break;
    }
}

void FrameTray::openMenu()
{
    if (!menu_)
        return;
    openMenu_(*menu_);
    // Asked after the first menu, whose command may have hidden or closed the window.
    if (menu_ && window_ && window_->isVisible() && !window_->isMinimized())
        openMenu_(*menu_);
}

} // namespace zelto
