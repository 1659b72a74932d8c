#include "ScheduleChoice.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QDate>
#include <QRegularExpression>

namespace zelto {
namespace {

QString twoDigits(int value)
{
    return QStringLiteral("%1").arg(value, 2, 10, QChar(u'0'));
}

bool isWeekday(const QString& word)
{
    for (int id = ids::kWeekdaySunday; id <= ids::kWeekdaySaturday; ++id) {
        if (word == StringTable::text(id))
            return true;
    }
    return false;
}

// The numbers of a word of the given form, or nothing when it has another form or a number is
// out of its range.
std::optional<QList<int>> numbersOf(const QString& word, const QString& pattern)
{
    const QRegularExpression form(QRegularExpression::anchoredPattern(pattern));
    const QRegularExpressionMatch match = form.match(word);
    if (!match.hasMatch())
        return std::nullopt;
    QList<int> numbers;
    for (int group = 1; group <= form.captureCount(); ++group)
        numbers.append(match.captured(group).toInt());
    return numbers;
}

QString dateFault(const ScheduleEntry& entry, int frequency)
{
    const QString& date = entry.date;
    bool good = false;
    switch (frequency) {
    case ids::kFrequencyOnce:
    case ids::kFrequencyToday:
        if (const auto n = numbersOf(date, QStringLiteral("(\\d\\d)/(\\d\\d)/(\\d{4})")))
            good = QDate((*n)[2], (*n)[1], (*n)[0]).isValid();
        break;
    case ids::kFrequencyHourly:
    case ids::kFrequencyDaily:
        good = date == QLatin1StringView("----");
        break;
    case ids::kFrequencyWeekly:
        good = isWeekday(date);
        break;
    case ids::kFrequencyMonthly:
        if (const auto n = numbersOf(date, QStringLiteral("(\\d\\d)/--/--")))
            good = (*n)[0] >= 1 && (*n)[0] <= 31;
        break;
    case ids::kFrequencyYearly:
        // A leap year's 29 February is a day some years have.
        if (const auto n = numbersOf(date, QStringLiteral("(\\d\\d)/(\\d\\d)/--")))
            good = QDate(2000, (*n)[1], (*n)[0]).isValid();
        break;
    default:
        break;
    }
    return good ? QString()
                : QStringLiteral("the date \"%1\" is not one of %2").arg(date, entry.frequency);
}

QString timeFault(const ScheduleEntry& entry, int frequency)
{
    const bool hourly = frequency == ids::kFrequencyHourly;
    const auto n = numbersOf(
        entry.time, hourly ? QStringLiteral("--:(\\d\\d)") : QStringLiteral("(\\d\\d):(\\d\\d)"));
    const bool good = n && (hourly ? (*n)[0] < 60 : (*n)[0] < 24 && (*n)[1] < 60);
    return good
        ? QString()
        : QStringLiteral("the time \"%1\" is not one of %2").arg(entry.time, entry.frequency);
}

} // namespace

ScheduleChoice ScheduleChoice::at(const QDateTime& moment)
{
    const QDate date = moment.date();
    const QTime time = moment.time();
    // dayOfWeek(): Monday 1 ... Sunday 7.
    return { date.day(), date.month(), date.year(), date.dayOfWeek() % 7, time.hour(),
        time.minute() };
}

QString ScheduleChoice::dateWord(int frequency) const
{
    switch (frequency) {
    case ids::kFrequencyOnce:
    case ids::kFrequencyToday:
        return twoDigits(day) + u'/' + twoDigits(month) + u'/' + QString::number(year);
    case ids::kFrequencyHourly:
    case ids::kFrequencyDaily:
        return QStringLiteral("----");
    case ids::kFrequencyWeekly:
        return StringTable::text(ids::kWeekdaySunday + weekday);
    case ids::kFrequencyMonthly:
        return twoDigits(day) + QStringLiteral("/--/--");
    case ids::kFrequencyYearly:
        return twoDigits(day) + u'/' + twoDigits(month) + QStringLiteral("/--");
    default:
        return {};
    }
}

QString ScheduleChoice::timeWord(int frequency) const
{
    if (frequency == ids::kFrequencyHourly)
        return QStringLiteral("--:") + twoDigits(minute);
    return twoDigits(hour) + u':' + twoDigits(minute);
}

ScheduleEntry ScheduleChoice::entry(const QString& name, int frequency) const
{
    ScheduleEntry entry;
    entry.name = name;
    entry.frequency = StringTable::text(frequency);
    entry.date = dateWord(frequency);
    entry.time = timeWord(frequency);
    entry.state = StringTable::text(ids::kStateOn);
    return entry;
}

bool ScheduleChoice::inPast(int frequency, const QDateTime& now) const
{
    if (frequency != ids::kFrequencyOnce && frequency != ids::kFrequencyToday)
        return false;
    if (frequency == ids::kFrequencyOnce) {
        const QDate chosen(year, month, day);
        if (chosen != now.date())
            return chosen < now.date();
    }
    const QTime time = now.time();
    return hour < time.hour() || (hour == time.hour() && minute <= time.minute());
}

int ScheduleChoice::frequencyOf(const QString& word)
{
    for (int id = ids::kFrequencyOnce; id <= ids::kFrequencyYearly; ++id) {
        if (word == StringTable::text(id))
            return id;
    }
    return 0;
}

QString ScheduleChoice::faultOf(const ScheduleEntry& entry)
{
    if (entry.name.isEmpty())
        return QStringLiteral("the entry has no name");
    const int frequency = frequencyOf(entry.frequency);
    if (frequency == 0)
        return QStringLiteral("\"%1\" is not a frequency").arg(entry.frequency);
    if (QString fault = dateFault(entry, frequency); !fault.isEmpty())
        return fault;
    if (QString fault = timeFault(entry, frequency); !fault.isEmpty())
        return fault;
    if (entry.state != StringTable::text(ids::kStateOn)
        && entry.state != StringTable::text(ids::kStateOff))
        return QStringLiteral("the state \"%1\" is neither %2 nor %3")
            .arg(entry.state, StringTable::text(ids::kStateOn), StringTable::text(ids::kStateOff));
    return {};
}

} // namespace zelto
