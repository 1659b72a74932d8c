#include "ScriptReader.h"

namespace zelto {

ScriptReader::ScriptReader(const QString& path) : file_(path)
{
}

bool ScriptReader::open()
{
    return file_.open(QIODevice::ReadOnly);
}

std::optional<ScriptReader::Line> ScriptReader::next()
{
    if (!file_.isOpen() || file_.atEnd())
        return std::nullopt;
    QByteArray bytes(kMaxLineBytes + 1, Qt::Uninitialized);
    const qint64 read = file_.readLine(bytes.data(), bytes.size());
    if (read < 0)
        return std::nullopt;
    bytes.truncate(read);

    Line line;
    if (bytes.endsWith('\n')) {
        bytes.chop(1);
    } else if (!file_.atEnd()) {
        // Full to the limit: the line may still end right here.
        char ahead[2] = {};
        const qint64 seen = file_.peek(ahead, 2);
        if (seen >= 1 && ahead[0] == '\n') {
            file_.skip(1);
        } else if (seen == 2 && ahead[0] == '\r' && ahead[1] == '\n') {
            file_.skip(2);
        } else {
            line.cut = true;
            skipRestOfLine();
        }
    }
    if (bytes.endsWith('\r'))
        bytes.chop(1);
    // A byte-order mark, as some editors write it, is not part of the first command.
    if (first_ && bytes.startsWith("\xEF\xBB\xBF"))
        bytes.remove(0, 3);
    first_ = false;
    line.text = QString::fromUtf8(bytes);
    return line;
}

void ScriptReader::skipRestOfLine()
{
    char scratch[4096];
    for (;;) {
        const qint64 read = file_.readLine(scratch, sizeof scratch);
        if (read <= 0 || scratch[read - 1] == '\n')
            return;
    }
}

} // namespace zelto
