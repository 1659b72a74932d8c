#pragma once

#include "platform/Notifier.h"

namespace zelto {

// Writes messages to standard error, one line each (line breaks inside a message become blanks).
class ConsoleNotifier final : public Notifier {
public:
    void showMessage(const QString& text, MessageIcon icon) override;
};

} // namespace zelto
