#pragma once

#include <QFile>
#include <QString>

#include <optional>

namespace zelto {

// Reads a script file line by line, as UTF-8, without its line ends ("\n" or "\r\n"). A line is
// read no further than kMaxLineBytes: the rest of a longer one is skipped without being kept, so
// a file with no line ends at all (a binary file) costs no more memory than one such line.
class ScriptReader final {
public:
    static constexpr qint64 kMaxLineBytes = 8192;

    struct Line {
        QString text;
        bool cut = false; // longer than kMaxLineBytes: `text` is its beginning
    };

    explicit ScriptReader(const QString& path);

    [[nodiscard]] bool open();
    // What the file could not be opened for.
    [[nodiscard]] QString errorString() const { return file_.errorString(); }
    // The next line, or none at the end of the file (or at a read error).
    [[nodiscard]] std::optional<Line> next();

private:
    void skipRestOfLine();

    QFile file_;
    bool first_ = true;
};

} // namespace zelto
