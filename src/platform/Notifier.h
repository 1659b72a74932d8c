#pragma once

#include <QString>

namespace zelto {

enum class MessageIcon { None, Information, Warning, Stop };

// How the engine tells the user something: a message box in a windowed run, standard error in an
// unattended one. The engine never shows a window itself.
class Notifier {
public:
    virtual ~Notifier() = default;
    virtual void showMessage(const QString& text, MessageIcon icon) = 0;
};

} // namespace zelto
