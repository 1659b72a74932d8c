#pragma once

#include "platform/Notifier.h"

namespace zelto {

// Writes messages to standard error, one line each (line breaks inside a message become blanks).
// Nobody is there to answer a question: it is written too, and answered Cancelled (or No).
class ConsoleNotifier final : public Notifier {
public:
    void showMessage(const QString& text, MessageIcon icon) override;
    Answer ask(const Question& question) override;
    [[nodiscard]] bool askYesNo(const QString& text) override;
};

} // namespace zelto
