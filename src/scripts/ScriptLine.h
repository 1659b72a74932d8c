#pragma once

#include <QString>
#include <QStringList>

namespace zelto {

// The commands of a script, in the order a line is tested against them.
enum class ScriptVerb {
    Open,
    Get,
    Send,
    Put,
    Close,
    Cd,
    Lcd,
    Mkdir,
    Remove,
    Rmdir,
    Rename,
    Binary,
    Ascii
};

// One line of a command script, read the way the interpreter has always read it: leading white
// space dropped; a line starting with "/" is a comment; the command is the first keyword whose
// letters begin the line, compared without regard to case and only as far as the keyword goes
// ("getall" is "get", "closeall" is "close"); then the words are read as "%s" patterns read
// them, split at white space and no more than the command's pattern holds, the keyword first.
struct ScriptLine final {
    enum class Kind {
        Skipped, // a comment or a blank line
        Command, // a command with the words it needs
        Malformed, // a command with fewer words than it needs
        Unparsable, // no command, or a line too long to have been read whole
    };

    Kind kind = Kind::Skipped;
    ScriptVerb verb = ScriptVerb::Open;
    QStringList words;
    // The line as a report shows it: without its leading white space, with control characters
    // made visible, the password of "open" hidden and a cut line shortened.
    QString shown;

    // The word at `index` (0 is the keyword), or an empty text past the words read.
    [[nodiscard]] QString word(qsizetype index) const { return words.value(index); }

    // `cut`: the line was longer than a reader takes, so only its beginning is known; it is
    // never run.
    [[nodiscard]] static ScriptLine parse(const QString& line, bool cut = false);

    // How much of a cut line a report shows.
    static constexpr qsizetype kShownOfCutLine = 200;
};

} // namespace zelto
