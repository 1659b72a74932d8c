#pragma once

#include "platform/StringIds.h"

#include <QString>

namespace zelto {

enum class MessageIcon { None, Information, Warning, Stop, Question };

// The shared three-button question: a caption, a text and three buttons, answered as accepted
// (first button), the middle choice (which can be disabled) or cancelled. Button texts are string
// ids, so each caller names its own ("Append", "Replace", ...).
struct Question {
    QString caption;
    QString text;
    int acceptTextId = ids::kButtonOk;
    int middleTextId = ids::kButtonAll;
    bool middleEnabled = true;
    int cancelTextId = ids::kButtonCancel;
};

enum class Answer { Accepted, Middle, Cancelled };

// How the engine tells the user something: a message box in a windowed run, standard error in an
// unattended one. The engine never shows a window itself.
class Notifier {
public:
    virtual ~Notifier() = default;
    virtual void showMessage(const QString& text, MessageIcon icon) = 0;
    // Asked on the UI thread only. An unattended run cannot ask anyone: it answers Cancelled.
    virtual Answer ask(const Question& question) = 0;
    // A question answered Yes (true) or No, with the question icon; on the UI thread only. One
    // that nobody can answer is answered No.
    [[nodiscard]] virtual bool askYesNo(const QString& /*text*/) { return false; }
    // A question answered OK (true) or Cancel, with the question icon; on the UI thread only.
    // Where no two-button box exists it is the three-button question with its middle disabled.
    [[nodiscard]] virtual bool askOkCancel(const QString& caption, const QString& text)
    {
        return ask({ caption, text, ids::kButtonOk, ids::kButtonAll, false, ids::kButtonCancel })
            == Answer::Accepted;
    }
};

} // namespace zelto
