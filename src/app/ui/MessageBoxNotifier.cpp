#include "MessageBoxNotifier.h"

#include "platform/StringTable.h"
#include "platform/WorkerStop.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QThread>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

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

// A box asked for by a worker: the answer, written on the UI thread, and the box while it is
// up.
template <typename T> struct BoxCall {
    std::mutex mutex;
    std::condition_variable_any answered;
    std::optional<T> answer; // guarded by mutex
    QPointer<QMessageBox> box; // UI thread only
    bool abandoned = false; // UI thread only
};

template <typename T> struct BoxForm {
    // Gives the box its texts and buttons. Called on the UI thread, perhaps after the asking
    // worker has gone: it holds copies.
    std::function<void(QMessageBox&)> build;
    // What the closed box answers.
    std::function<T(const QMessageBox&)> read;
};

// Shows the box application-modal over the active window and returns its answer; `shown`
// points at the box while it is up.
template <typename T> T showBox(const BoxForm<T>& form, QPointer<QMessageBox>* shown = nullptr)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowModality(Qt::ApplicationModal);
    form.build(box);
    if (shown)
        *shown = &box;
    box.exec();
    return form.read(box);
}

// Shows the box on the UI thread. A worker waits there for the answer until its stop request;
// then the box is closed and the worker goes on with `stopped`, as if nobody had answered.
template <typename T> T answerOf(BoxForm<T> form, T stopped)
{
    if (QThread::currentThread() == qApp->thread())
        return showBox(form);
    auto call = std::make_shared<BoxCall<T>>();
    QMetaObject::invokeMethod(
        qApp,
        [call, form = std::move(form)] {
            if (call->abandoned)
                return;
            const T answer = showBox(form, &call->box);
            {
                const std::lock_guard lock(call->mutex);
                call->answer = answer;
            }
            call->answered.notify_all();
        },
        Qt::QueuedConnection);
    {
        std::unique_lock lock(call->mutex);
        if (call->answered.wait(lock, workerStop(), [&] { return call->answer.has_value(); }))
            return *call->answer;
    }
    QMetaObject::invokeMethod(
        qApp,
        [call] {
            call->abandoned = true;
            if (call->box)
                call->box->reject();
        },
        Qt::QueuedConnection);
    return stopped;
}

// A question box with two standard buttons; true when `yes` was chosen, which is the default.
bool askTwoWay(const QString& caption, const QString& text, QMessageBox::StandardButton yes,
    QMessageBox::StandardButton no)
{
    BoxForm<bool> form;
    form.build = [caption, text, yes, no](QMessageBox& box) {
        box.setIcon(QMessageBox::Question);
        box.setWindowTitle(caption);
        box.setText(text);
        box.setStandardButtons(yes | no);
        box.setDefaultButton(yes);
        box.setEscapeButton(no);
    };
    form.read
        = [yes](const QMessageBox& box) { return box.standardButton(box.clickedButton()) == yes; };
    return answerOf(std::move(form), false);
}

} // namespace

Answer MessageBoxNotifier::ask(const Question& question)
{
    BoxForm<Answer> form;
    form.build = [question](QMessageBox& box) {
        box.setIcon(QMessageBox::Question);
        box.setWindowTitle(question.caption);
        box.setText(question.text);
        QPushButton* accept
            = box.addButton(StringTable::text(question.acceptTextId), QMessageBox::AcceptRole);
        QPushButton* middle
            = box.addButton(StringTable::text(question.middleTextId), QMessageBox::ActionRole);
        QPushButton* cancel
            = box.addButton(StringTable::text(question.cancelTextId), QMessageBox::RejectRole);
        middle->setEnabled(question.middleEnabled);
        box.setDefaultButton(accept);
        box.setEscapeButton(cancel);
    };
    form.read = [](const QMessageBox& box) {
        switch (box.buttonRole(box.clickedButton())) {
        case QMessageBox::AcceptRole:
            return Answer::Accepted;
        case QMessageBox::ActionRole:
            return Answer::Middle;
        default:
            return Answer::Cancelled;
        }
    };
    return answerOf(std::move(form), Answer::Cancelled);
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
    BoxForm<bool> form;
    form.build = [text, icon](QMessageBox& box) {
        box.setIcon(boxIcon(icon));
        box.setWindowTitle(QCoreApplication::applicationName());
        box.setText(text);
        box.setStandardButtons(QMessageBox::Ok);
    };
    form.read = [](const QMessageBox&) { return true; };
    (void)answerOf(std::move(form), false);
}

} // namespace zelto
