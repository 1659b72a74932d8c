#include "ScheduleCheck.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"

namespace zelto {
namespace {

QString twoDigits(int value)
{
    return QStringLiteral("%1").arg(value, 2, 10, QChar(u'0'));
}

// What each frequency's date word must be today, and the time word now.
struct Today {
    explicit Today(const QDateTime& now)
    {
        const auto date = now.date();
        const auto time = now.time();
        this->time = twoDigits(time.hour()) + u':' + twoDigits(time.minute());
        day = twoDigits(date.day()) + u'/' + twoDigits(date.month()) + u'/'
            + QString::number(date.year());
        // dayOfWeek(): Monday 1 ... Sunday 7; the names run from Sunday.
        weekday = StringTable::text(ids::kWeekdaySunday + date.dayOfWeek() % 7);
        monthly = twoDigits(date.day()) + QStringLiteral("/--/--");
        yearly = twoDigits(date.day()) + u'/' + twoDigits(date.month()) + QStringLiteral("/--");
    }

    QString time;
    QString day;
    QString weekday;
    QString monthly;
    QString yearly;
};

bool isDue(const ScheduleEntry& entry, const Today& today)
{
    if (entry.state != StringTable::text(ids::kStateOn) || entry.time != today.time)
        return false;
    const auto is = [&entry](int id) { return entry.frequency == StringTable::text(id); };
    if (is(ids::kFrequencyOnce) || is(ids::kFrequencyToday))
        return entry.date == today.day;
    if (is(ids::kFrequencyDaily))
        return true;
    if (is(ids::kFrequencyWeekly))
        return entry.date == today.weekday;
    if (is(ids::kFrequencyMonthly))
        return entry.date == today.monthly;
    if (is(ids::kFrequencyYearly))
        return entry.date == today.yearly;
    return false;
}

} // namespace

std::vector<ScheduleCheck::Due> ScheduleCheck::due(
    const std::vector<ScheduleEntry>& entries, const QDateTime& now)
{
    const Today today(now);
    std::vector<Due> due;
    for (const auto& entry : entries)
        if (isDue(entry, today))
            due.push_back({ entry, isScript(entry.name) });
    return due;
}

bool ScheduleCheck::isScript(const QString& name)
{
    return name.endsWith(QLatin1StringView("cmd"), Qt::CaseInsensitive);
}

} // namespace zelto
