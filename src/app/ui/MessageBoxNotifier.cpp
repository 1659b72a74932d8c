#include "MessageBoxNotifier.h"

#include <QApplication>
#include <QMessageBox>
#include <QThread>

namespace zelto {
namespace {

QMessageBox::Icon boxIcon(MessageIcon icon)
{
    switch (icon) {
    case MessageIcon::Information:
        return QMessageBox::Information;
    case MessageIcon::Warning:
        return QMessageBox::Warning;
    case MessageIcon::Stop:
        return QMessageBox::Critical;
    case MessageIcon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

void showBox(const QString& text, MessageIcon icon)
{
    QMessageBox box(boxIcon(icon), QCoreApplication::applicationName(), text, QMessageBox::Ok,
        QApplication::activeWindow());
    box.setWindowModality(Qt::ApplicationModal);
    box.exec();
}

} // namespace

void MessageBoxNotifier::showMessage(const QString& text, MessageIcon icon)
{
    if (QThread::currentThread() == qApp->thread()) {
        showBox(text, icon);
        return;
    }
    QMetaObject::invokeMethod(
        qApp, [&] { showBox(text, icon); }, Qt::BlockingQueuedConnection);
}

} // namespace zelto
