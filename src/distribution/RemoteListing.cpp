#include "RemoteListing.h"

#include <QRegularExpression>

namespace zelto {
namespace {

// "drwxr-xr-x  2 owner group  4096 Nov 21 17:25 name": type and rights, then anything up to the
// size, month, day and time or year; the rest is the name. Owner and group are optional.
const QRegularExpression& unixLine()
{
    static const QRegularExpression line(QStringLiteral(
        R"(^([-dlbcpsDL])\S{9}\S*\s+.*?\d+\s+[A-Za-z]{3}\s+\d{1,2}\s+(\d{1,2}:\d{2}|\d{4})\s+(.+)$)"));
    return line;
}

// "11-21-26  05:25PM       <DIR>          name" or "...  1234 name".
const QRegularExpression& dosLine()
{
    static const QRegularExpression line(QStringLiteral(
        R"(^\d{1,2}-\d{1,2}-\d{2,4}\s+\d{1,2}:\d{2}\s*(?:[AaPp][Mm])?\s+(<DIR>|\d+)\s+(.+)$)"));
    return line;
}

} // namespace

RemoteListing RemoteListing::parse(const QByteArray& reply)
{
    RemoteListing listing;
    for (auto raw : reply.split('\n')) {
        if (raw.endsWith('\r'))
            raw.chop(1);
        const auto line = QString::fromUtf8(raw);
        QString name;
        bool folder = false;
        if (const auto unixMatch = unixLine().match(line); unixMatch.hasMatch()) {
            const auto type = unixMatch.captured(1).toLower();
            name = unixMatch.captured(3);
            folder = type == u"d";
            if (type == u"l")
                name = name.section(QStringLiteral(" -> "), 0, 0);
        } else if (const auto dosMatch = dosLine().match(line); dosMatch.hasMatch()) {
            folder = dosMatch.captured(1) == u"<DIR>";
            name = dosMatch.captured(2);
        }
        if (name.isEmpty() || name == u"." || name == u"..")
            continue;
        (folder ? listing.folders : listing.files).insert(name);
    }
    return listing;
}

} // namespace zelto
