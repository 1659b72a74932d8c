#pragma once

#include "platform/TrayIndicator.h"

#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QTimer>

#include <functional>

class QMenu;
class QWidget;

namespace zelto {

// The notification-area icon of an interactive run. It lives longer than the transfer work, which
// sets its state from worker threads; the main frame gives it its menu and its window.
//
// A double click asks for the window to be toggled. A press opens the menu at the cursor (the left
// button's once the double-click time has passed without a second click), and while the window is
// not minimised the menu opens a second time when the first is dismissed: that is how this
// program's tray menu has always behaved.
class FrameTray final : public QObject, public TrayIndicator {
    Q_OBJECT
public:
    // Opens the menu and returns when it is dismissed.
    using MenuOpener = std::function<void(QMenu& menu)>;

    // Without a system tray there is no icon, and the frame keeps its window on the task bar.
    explicit FrameTray(bool systemHasTray = QSystemTrayIcon::isSystemTrayAvailable());
    ~FrameTray() override;
    FrameTray(const FrameTray&) = delete;
    FrameTray& operator=(const FrameTray&) = delete;

    [[nodiscard]] bool present() const { return icon_ != nullptr; }

    // From any thread: the picture changes on the UI thread.
    void setState(TrayState state) override;
    [[nodiscard]] TrayState state() const { return state_; }

    // The menu to open and the window whose state decides whether it opens twice. The tray keeps
    // neither alive.
    void attach(QMenu* menu, QWidget* window);
    void setMenuOpener(MenuOpener opener) { openMenu_ = std::move(opener); }
    void show();
    void remove();
    // A second line of the icon's tip under the program's name (the next scheduled run); empty
    // for none.
    void setTipLine(const QString& line);

public Q_SLOTS:
    void activate(QSystemTrayIcon::ActivationReason reason);

Q_SIGNALS:
    void toggleWindowRequested();

private:
    void showState(TrayState state);
    void openMenu();

    QSystemTrayIcon* icon_ = nullptr;
    TrayState state_ = TrayState::Idle;
    QPointer<QMenu> menu_;
    QPointer<QWidget> window_;
    MenuOpener openMenu_;
    // A left press waits this long for a second click before it opens the menu.
    QTimer leftPress_;
};

} // namespace zelto
