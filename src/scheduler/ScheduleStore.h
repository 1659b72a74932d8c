#pragma once

#include "scheduler/ScheduleEntry.h"

#include <vector>

namespace zelto {

// The schedule entries in the settings store: section "SCHEDULE", "NumTimers" and one value
// "Timer%d" per entry, numbered from 0 without gaps. Read and written whole, never cached.
class ScheduleStore final {
public:
    ScheduleStore() = delete;

    // Timer0 up to "NumTimers" - 1, stopping at the first value that is absent, whatever the
    // count says.
    [[nodiscard]] static std::vector<ScheduleEntry> readEntries();
    // Replaces the entries: deletes Timer0, Timer1, ... up to the first absent one, sets the
    // count to 0, writes one value per row and then the count.
    static void writeEntries(const std::vector<ScheduleEntry>& rows);
};

} // namespace zelto
