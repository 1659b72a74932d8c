#include "MessageBoxNotifier.h"

#include "platform/StringTable.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
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
    case MessageIcon::Question:
        return QMessageBox::Question;
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

// Runs `show` on the UI thread, waiting for it when called from a worker.
template <typename Show> void onUiThread(Show&& show)
{
    if (QThread::currentThread() == qApp->thread())
        show();
    else
        QMetaObject::invokeMethod(qApp, std::forward<Show>(show), Qt::BlockingQueuedConnection);
}

// A question box with two standard buttons; true when `yes` was chosen, which is the default.
bool askTwoWay(const QString& caption, const QString& text, QMessageBox::StandardButton yes,
    QMessageBox::StandardButton no)
{
    bool chosen = false;
    onUiThread([&] {
        QMessageBox box(
            QMessageBox::Question, caption, text, yes | no, QApplication::activeWindow());
        box.setWindowModality(Qt::ApplicationModal);
        box.setDefaultButton(yes);
        box.setEscapeButton(no);
        chosen = box.exec() == yes;
    });
    return chosen;
}

} // namespace

Answer MessageBoxNotifier::ask(const Question& question)
{
    Answer answer = Answer::Cancelled;
    onUiThread([&] {
        QMessageBox box(QMessageBox::Question, question.caption, question.text,
            QMessageBox::NoButton, QApplication::activeWindow());
        box.setWindowModality(Qt::ApplicationModal);
        QPushButton* accept
            = box.addButton(StringTable::text(question.acceptTextId), QMessageBox::AcceptRole);
        QPushButton* middle
            = box.addButton(StringTable::text(question.middleTextId), QMessageBox::ActionRole);
        QPushButton* cancel
            = box.addButton(StringTable::text(question.cancelTextId), QMessageBox::RejectRole);
        middle->setEnabled(question.middleEnabled);
        box.setDefaultButton(accept);
        box.setEscapeButton(cancel);
        box.exec();
        if (box.clickedButton() == accept)
            answer = Answer::Accepted;
        else if (box.clickedButton() == middle)
            answer = Answer::Middle;
    });
    return answer;
}

bool MessageBoxNotifier::askYesNo(const QString& text)
{
    return askTwoWay(QCoreApplication::applicationName(), text, QMessageBox::Yes, QMessageBox::No);
}

bool MessageBoxNotifier::askOkCancel(const QString& caption, const QString& text)
{
    return askTwoWay(caption, text, QMessageBox::Ok, QMessageBox::Cancel);
}

void MessageBoxNotifier::showMessage(const QString& text, MessageIcon icon)
{
    onUiThread([&] { showBox(text, icon); });
}

} // namespace zelto
