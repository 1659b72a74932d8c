#include "ScheduleCheck.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scheduler/ScheduleChoice.h"

namespace zelto {
namespace {

bool isDue(const ScheduleEntry& entry, const ScheduleChoice& now)
{
    if (entry.state != StringTable::text(ids::kStateOn)
        || entry.time != now.timeWord(ids::kFrequencyDaily))
        return false;
    // "Hourly" has no rule: it is never due.
    switch (const int frequency = ScheduleChoice::frequencyOf(entry.frequency)) {
    case ids::kFrequencyDaily:
        return true;
    case ids::kFrequencyOnce:
    case ids::kFrequencyToday:
    case ids::kFrequencyWeekly:
    case ids::kFrequencyMonthly:
    case ids::kFrequencyYearly:
        return entry.date == now.dateWord(frequency);
    default:
        return false;
    }
}

// A yearly 29 February comes back within eight years (1900-style gaps included).
constexpr int kDaysAhead = 8 * 366;

// When `entry` is next due after `now`. A repeating entry tries the days ahead in turn with the due
// test itself, so the two never disagree.
std::optional<QDateTime> nextOf(const ScheduleEntry& entry, const QDateTime& now)
{
    const QTime time = QTime::fromString(entry.time, QStringLiteral("HH:mm"));
    if (!time.isValid())
        return std::nullopt;
    const int frequency = ScheduleChoice::frequencyOf(entry.frequency);
    if (frequency == ids::kFrequencyOnce || frequency == ids::kFrequencyToday) {
        const QDateTime at(QDate::fromString(entry.date, QStringLiteral("dd/MM/yyyy")), time);
        return at.isValid() && at > now ? std::optional(at) : std::nullopt;
    }
    for (int days = 0; days <= kDaysAhead; ++days) {
        const QDateTime at(now.date().addDays(days), time);
        if (at > now && isDue(entry, ScheduleChoice::at(at)))
            return at;
    }
    return std::nullopt;
}

} // namespace

std::vector<ScheduleCheck::Due> ScheduleCheck::due(
    const std::vector<ScheduleEntry>& entries, const QDateTime& now)
{
    const ScheduleChoice moment = ScheduleChoice::at(now);
    std::vector<Due> due;
    for (const auto& entry : entries)
        if (isDue(entry, moment))
            due.push_back({ entry, isScript(entry.name) });
    return due;
}

bool ScheduleCheck::isScript(const QString& name)
{
    return name.endsWith(QLatin1StringView("cmd"), Qt::CaseInsensitive);
}

bool ScheduleCheck::canRun(const ScheduleEntry& entry)
{
    return entry.state == StringTable::text(ids::kStateOn)
        && ScheduleChoice::frequencyOf(entry.frequency) != ids::kFrequencyHourly
        && ScheduleChoice::faultOf(entry).isEmpty();
}

std::optional<ScheduleCheck::Next> ScheduleCheck::next(
    const std::vector<ScheduleEntry>& entries, const QDateTime& now)
{
    std::optional<Next> first;
    for (const auto& entry : entries) {
        if (!canRun(entry))
            continue;
        const auto at = nextOf(entry, now);
        if (at && (!first || *at < first->at))
            first = Next { entry, *at };
    }
    return first;
}

} // namespace zelto
