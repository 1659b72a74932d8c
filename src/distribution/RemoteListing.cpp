#include "RemoteListing.h"

#include "ftp/FtpConnection.h"
#include "ftp/FtpErrors.h"

#include <QRegularExpression>

#include <algorithm>
#include <vector>

namespace zelto {
namespace {

bool isBlank(QChar c)
{
    return c.isSpace();
}

bool allDigits(QStringView text)
{
    return !text.isEmpty()
        && std::all_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

bool isAsciiLetters(QStringView text)
{
    return std::all_of(text.begin(), text.end(),
        [](QChar c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); });
}

// "17:25" or "2026".
bool isTimeOrYear(QStringView text)
{
    if (text.size() == 4 && allDigits(text))
        return true;
    const qsizetype colon = text.indexOf(u':');
    return (colon == 1 || colon == 2) && text.size() == colon + 3 && allDigits(text.first(colon))
        && allDigits(text.sliced(colon + 1));
}

struct Word {
    qsizetype start;
    qsizetype end;
};

// "drwxr-xr-x  2 owner group  4096 Nov 21 17:25 name": type and rights (ten characters or more),
// then anything up to a word that ends in the size's digits, the month, the day and the time or
// year; the rest is the name. Owner and group are optional. Words are found once, left to right,
// so a long line costs its length and no more (a pattern with a lazy run before the digits took
// quadratic time on a long run of digits).
bool parseUnix(const QString& line, QString& name, QChar& type)
{
    static const QString types = QStringLiteral("-dlbcpsDL");
    if (line.isEmpty() || !types.contains(line.front()))
        return false;
    std::vector<Word> words;
    for (qsizetype at = 0; at < line.size();) {
        while (at < line.size() && isBlank(line[at]))
            ++at;
        const qsizetype start = at;
        while (at < line.size() && !isBlank(line[at]))
            ++at;
        if (at > start)
            words.push_back({ start, at });
    }
    if (words.empty() || words.front().start != 0 || words.front().end < 10)
        return false;
    const auto text = [&](std::size_t i) {
        return QStringView(line).sliced(words[i].start, words[i].end - words[i].start);
    };
    for (std::size_t i = 1; i + 3 < words.size(); ++i) {
        if (!text(i).back().isDigit())
            continue;
        if (text(i + 1).size() != 3 || !isAsciiLetters(text(i + 1)))
            continue;
        if (text(i + 2).size() > 2 || !allDigits(text(i + 2)) || !isTimeOrYear(text(i + 3)))
            continue;
        if (i + 4 >= words.size())
            return false;
        name = line.sliced(words[i + 4].start);
        type = line.front().toLower();
        return true;
    }
    return false;
}

// "11-21-26  05:25PM       <DIR>          name" or "...  1234 name". Anchored, with no
// ambiguous runs: linear.
const QRegularExpression& dosLine()
{
    static const QRegularExpression line(QStringLiteral(
        R"(^\d{1,2}-\d{1,2}-\d{2,4}\s+\d{1,2}:\d{2}\s*(?:[AaPp][Mm])?\s+(<DIR>|\d+)\s+(.+)$)"));
    return line;
}

} // namespace

void RemoteListing::addLine(QByteArrayView raw)
{
    while (raw.endsWith('\n') || raw.endsWith('\r'))
        raw.chop(1);
    const QString line = QString::fromUtf8(raw);
    QString name;
    bool folder = false;
    if (QChar type; parseUnix(line, name, type)) {
        folder = type == u'd';
        if (type == u'l')
            name = name.section(QStringLiteral(" -> "), 0, 0);
    } else if (const auto dosMatch = dosLine().match(line); dosMatch.hasMatch()) {
        folder = dosMatch.captured(1) == u"<DIR>";
        name = dosMatch.captured(2);
    }
    if (name.isEmpty() || name == u"." || name == u"..")
        return;
    (folder ? folders : files).insert(name);
}

RemoteListing RemoteListing::parse(const QByteArray& reply)
{
    RemoteListing listing;
    for (const QByteArray& line : reply.split('\n'))
        listing.addLine(line);
    return listing;
}

FtpValue<RemoteListing> RemoteListing::fetch(FtpConnection& connection, const QString& path)
{
    RemoteListing taken;
    QByteArray partial; // the start of a line whose end has not arrived yet
    qint64 received = 0;
    QString refusal;
    const auto listed
        = connection.download(path, TransferType::Binary, [&](const char* data, qint64 size) {
              received += size;
              if (received > kMaxBytes) {
                  refusal = QStringLiteral("The listing of %1 passed %2 MiB and was refused.")
                                .arg(path)
                                .arg(kMaxBytes / (1024 * 1024));
                  return false;
              }
              QByteArrayView rest(data, size);
              for (qsizetype end = rest.indexOf('\n'); end >= 0; end = rest.indexOf('\n')) {
                  if (partial.isEmpty()) {
                      taken.addLine(rest.first(end));
                  } else {
                      partial.append(rest.first(end));
                      taken.addLine(partial);
                      partial.clear();
                  }
                  rest = rest.sliced(end + 1);
              }
              partial.append(rest);
              if (taken.size() > kMaxEntries) {
                  refusal = QStringLiteral("The listing of %1 passed %2 entries and was refused.")
                                .arg(path)
                                .arg(kMaxEntries);
                  return false;
              }
              return true;
          });
    if (!refusal.isEmpty())
        return { FtpResult::failure(inet::kReplyNotParsed, refusal) };
    if (!listed.ok())
        return { listed };
    taken.addLine(partial);
    return { listed, std::move(taken) };
}

} // namespace zelto
