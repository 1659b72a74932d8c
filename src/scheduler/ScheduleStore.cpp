#include "ScheduleStore.h"

#include "settings/SettingsStore.h"

#include <optional>

namespace zelto {
namespace {

const QString& section()
{
    static const auto name = QString::fromLatin1(settings::section::kSchedule);
    return name;
}

QString timerKey(int index)
{
    return QString::fromLatin1(settings::schedule::kTimerPattern).arg(index);
}

// The value of Timer`index`, or none: an absent value reads as its own key name.
std::optional<QString> timerValue(int index)
{
    const auto key = timerKey(index);
    auto value = SettingsStore::getText(section(), key, key);
    if (value == key)
        return std::nullopt;
    return value;
}

} // namespace

std::vector<ScheduleEntry> ScheduleStore::readEntries()
{
    std::vector<ScheduleEntry> entries;
    const int count = SettingsStore::get(settings::schedule::kNumTimers);
    for (int k = 0; k < count; ++k) {
        const auto value = timerValue(k);
        if (!value)
            break;
        entries.push_back(ScheduleEntry::parse(*value));
    }
    return entries;
}

void ScheduleStore::writeEntries(const std::vector<ScheduleEntry>& rows)
{
    for (int k = 0; timerValue(k); ++k)
        SettingsStore::remove(section(), timerKey(k));
    SettingsStore::set(settings::schedule::kNumTimers, 0);
    int k = 0;
    for (const auto& row : rows)
        SettingsStore::writeText(section(), timerKey(k++), row.format());
    SettingsStore::set(settings::schedule::kNumTimers, k);
}

} // namespace zelto
