#include "ScheduleEntry.h"

#include <QStringList>

#include <array>

namespace zelto {
namespace {

// The blanks that end a word: the C library's white space, no more (a stored value is 8-bit
// text from the user's profile).
bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\v' || c == u'\f' || c == u'\r';
}

QStringList wordsOf(const QString& value)
{
    QStringList words;
    QString word;
    for (const QChar c : value) {
        if (!isBlank(c)) {
            word += c;
        } else if (!word.isEmpty()) {
            words.append(word);
            word.clear();
        }
    }
    if (!word.isEmpty())
        words.append(word);
    return words;
}

} // namespace

ScheduleEntry ScheduleEntry::parse(const QString& value)
{
    const auto words = wordsOf(value);
    ScheduleEntry entry;
    // Fewer than six words leave the sixth as it is, and the missing ones empty.
    const std::array<QString*, 6> fields
        = { &entry.name, &entry.frequency, &entry.date, &entry.time, &entry.state, &entry.sixth };
    for (std::size_t i = 0; i < fields.size() && qsizetype(i) < words.size(); ++i)
        *fields[i] = words[qsizetype(i)];
    return entry;
}

QString ScheduleEntry::format() const
{
    return QStringList { name, frequency, date, time, state }.join(u' ');
}

} // namespace zelto
