#pragma once

#include "platform/Notifier.h"

namespace zelto {

// Shows messages in application-modal message boxes, always on the UI thread: a worker that calls
// it waits until the user has answered, or until the worker is stopped, which closes the box.
class MessageBoxNotifier final : public Notifier {
public:
    void showMessage(const QString& text, MessageIcon icon) override;
    Answer ask(const Question& question) override;
    [[nodiscard]] bool askYesNo(const QString& text) override;
    [[nodiscard]] bool askOkCancel(const QString& caption, const QString& text) override;
};

} // namespace zelto
