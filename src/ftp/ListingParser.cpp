#include "ListingParser.h"

#include <QRegularExpression>

#include <algorithm>
#include <vector>

namespace zelto {
namespace {

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

// A size the listing gives in decimal digits; -1 for one past 63 bits.
qint64 sizeOf(QStringView digits)
{
    bool ok = false;
    const qint64 size = digits.toLongLong(&ok);
    return ok ? size : -1;
}

// 1 to 12, or 0 for a month name of another language.
int monthOf(QStringView name)
{
    static const QStringList months { "jan", "feb", "mar", "apr", "may", "jun", "jul", "aug", "sep",
        "oct", "nov", "dec" };
    return int(months.indexOf(name.toString().toLower())) + 1;
}

QDateTime utc(QDate date, QTime time)
{
    if (!date.isValid() || !time.isValid())
        return {};
    return QDateTime(date, time, Qt::UTC);
}

struct Word {
    qsizetype start;
    qsizetype end;
};

std::vector<Word> wordsOf(const QString& line)
{
    std::vector<Word> words;
    for (qsizetype at = 0; at < line.size();) {
        while (at < line.size() && line[at].isSpace())
            ++at;
        const qsizetype start = at;
        while (at < line.size() && !line[at].isSpace())
            ++at;
        if (at > start)
            words.push_back({ start, at });
    }
    return words;
}

// "11-21-26  05:25PM       <DIR>          name" or "...  1234 name". Anchored, with no
// ambiguous runs: linear.
const QRegularExpression& dosLine()
{
    static const QRegularExpression line(
        QStringLiteral(R"(^(\d{1,2})-(\d{1,2})-(\d{2,4})\s+(\d{1,2}):(\d{2})\s*([AaPp][Mm])?\s+)"
                       R"((<DIR>|-?\d+)\s+(.+)$)"));
    return line;
}

} // namespace

ListingParser::ListingParser(Format format, QDateTime now) : format_(format), now_(std::move(now))
{
}

std::optional<RemoteEntry> ListingParser::parse(QByteArrayView raw) const
{
    while (raw.endsWith('\n') || raw.endsWith('\r'))
        raw.chop(1);
    const QString line = QString::fromUtf8(raw);
    std::optional<RemoteEntry> entry;
    if (format_ == Format::Mlsd)
        entry = parseMlsd(line);
    else if (entry = parseUnix(line); !entry)
        entry = parseDos(line);
    if (!entry || entry->name.isEmpty() || entry->name == u"." || entry->name == u"..")
        return std::nullopt;
    return entry;
}

// "type=file;size=1234;modify=20261121172500; name": facts up to the first blank, then the name.
std::optional<RemoteEntry> ListingParser::parseMlsd(const QString& line) const
{
    const qsizetype blank = line.indexOf(u' ');
    if (blank < 0)
        return std::nullopt;
    RemoteEntry entry;
    entry.name = line.sliced(blank + 1);
    bool typed = false;
    for (const auto fact : QStringView(line).first(blank).split(u';', Qt::SkipEmptyParts)) {
        const qsizetype equals = fact.indexOf(u'=');
        if (equals < 0)
            continue;
        const auto key = fact.first(equals).toString().toLower();
        const auto value = fact.sliced(equals + 1);
        if (key == u"type") {
            typed = true;
            const auto type = value.toString().toLower();
            if (type == u"cdir" || type == u"pdir")
                return std::nullopt;
            if (type == u"dir")
                entry.kind = RemoteEntry::Kind::Folder;
            else if (type.startsWith(u"os.unix=slink") || type.startsWith(u"os.unix=symlink"))
                entry.kind = RemoteEntry::Kind::Link;
        } else if (key == u"size" && allDigits(value)) {
            entry.size = sizeOf(value);
        } else if (key == u"modify" && value.size() >= 14 && allDigits(value.first(14))) {
            entry.modified
                = utc(QDate::fromString(value.first(8).toString(), QStringLiteral("yyyyMMdd")),
                    QTime::fromString(value.sliced(8, 6).toString(), QStringLiteral("HHmmss")));
        }
    }
    if (!typed)
        return std::nullopt;
    return entry;
}

// "drwxr-xr-x  2 owner group  4096 Nov 21 17:25 name": type and rights (ten characters or more),
// then anything up to a word that ends in the size's digits, the month, the day and the time or
// year; the rest is the name. Owner and group are optional, and a group may run into the size.
// Words are found once, left to right, so a long line costs its length and no more (a pattern
// with a lazy run before the digits took quadratic time on a long run of digits).
std::optional<RemoteEntry> ListingParser::parseUnix(const QString& line) const
{
    static const QString types = QStringLiteral("-dlbcpsDL");
    if (line.isEmpty() || !types.contains(line.front()))
        return std::nullopt;
    const auto words = wordsOf(line);
    if (words.empty() || words.front().start != 0 || words.front().end < 10)
        return std::nullopt;
    const auto text = [&](std::size_t i) {
        return QStringView(line).sliced(words[i].start, words[i].end - words[i].start);
    };
    for (std::size_t i = 1; i + 3 < words.size(); ++i) {
        const auto sizeWord = text(i);
        if (!sizeWord.back().isDigit())
            continue;
        const auto month = text(i + 1);
        if (month.size() != 3 || !isAsciiLetters(month))
            continue;
        const auto day = text(i + 2);
        const auto timeOrYear = text(i + 3);
        if (day.size() > 2 || !allDigits(day) || !isTimeOrYear(timeOrYear))
            continue;
        if (i + 4 >= words.size())
            return std::nullopt;

        RemoteEntry entry;
        entry.name = line.sliced(words[i + 4].start);
        const QChar type = line.front().toLower();
        if (type == u'd') {
            entry.kind = RemoteEntry::Kind::Folder;
        } else if (type == u'l') {
            entry.kind = RemoteEntry::Kind::Link;
            entry.name = entry.name.section(QStringLiteral(" -> "), 0, 0);
        }
        qsizetype digits = sizeWord.size();
        while (digits > 0 && sizeWord[digits - 1].isDigit())
            --digits;
        // A sign before the digits makes a negative size, which no file has.
        if (digits == 0 || sizeWord[digits - 1] != u'-')
            entry.size = sizeOf(sizeWord.sliced(digits));
        entry.modified = unixTime(monthOf(month), day.toInt(), timeOrYear);
        return entry;
    }
    return std::nullopt;
}

std::optional<RemoteEntry> ListingParser::parseDos(const QString& line)
{
    const auto match = dosLine().match(line);
    if (!match.hasMatch())
        return std::nullopt;
    RemoteEntry entry;
    entry.name = match.captured(8);
    const auto size = match.capturedView(7);
    if (size == u"<DIR>")
        entry.kind = RemoteEntry::Kind::Folder;
    else if (!size.startsWith(u'-'))
        entry.size = sizeOf(size);
    int year = match.capturedView(3).toInt();
    if (match.capturedView(3).size() == 2)
        year += year < 70 ? 2000 : 1900;
    int hour = match.capturedView(4).toInt();
    if (const auto half = match.capturedView(6).toString().toLower(); !half.isEmpty()) {
        if (hour < 1 || hour > 12)
            hour = -1;
        else
            hour = hour % 12 + (half == u"pm" ? 12 : 0);
    }
    entry.modified = utc(QDate(year, match.capturedView(1).toInt(), match.capturedView(2).toInt()),
        QTime(hour, match.capturedView(5).toInt()));
    return entry;
}

QDateTime ListingParser::unixTime(int month, int day, QStringView timeOrYear) const
{
    if (month == 0)
        return {};
    if (!timeOrYear.contains(u':'))
        return utc(QDate(timeOrYear.toInt(), month, day), QTime(0, 0));
    const auto time = QTime::fromString(timeOrYear.toString(), QStringLiteral("H:mm"));
    // "ls" leaves the year out for the last six months; a day ahead of now is last year's.
    const QDate today = now_.date();
    QDate date(today.year(), month, day);
    if (date.isValid() && date > today.addDays(1))
        date = QDate(today.year() - 1, month, day);
    return utc(date, time);
}

} // namespace zelto
