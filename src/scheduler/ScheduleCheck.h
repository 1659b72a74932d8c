#pragma once

#include "scheduler/ScheduleEntry.h"

#include <QDateTime>

#include <optional>
#include <vector>

namespace zelto {

// The due test of the scheduler, for a given "now" (local time). Words are compared exactly,
// letter case included, with the texts of the string table (so they are the words of the user's
// language): only an entry whose state is "On" can be due, and then
//   "Once", "Today": its date is today (DD/MM/YYYY) and its time is now (HH:MM);
//   "Daily":         its time is now;
//   "Weekly":        its date is today's weekday name and its time is now;
//   "Monthly":       its date is today's DD/--/-- and its time is now;
//   "Yearly":        its date is today's DD/MM/-- and its time is now.
// Any other frequency, "Hourly" included, is never due. The test keeps no memory: an entry is
// due in every check that falls in its minute, and "Once" stays on after it fired.
class ScheduleCheck final {
public:
    ScheduleCheck() = delete;

    struct Due {
        ScheduleEntry entry;
        // A command script (the name ends in "cmd", any case); otherwise a link.
        bool script = false;
    };

    // The entries due at `now`, in the entries' order.
    [[nodiscard]] static std::vector<Due> due(
        const std::vector<ScheduleEntry>& entries, const QDateTime& now);
    [[nodiscard]] static bool isScript(const QString& name);
    // The entry is on and has a rule that can make it due: well formed, and not "Hourly".
    [[nodiscard]] static bool canRun(const ScheduleEntry& entry);

    struct Next {
        ScheduleEntry entry;
        QDateTime at;
    };
    // The entry due first after `now` (later minutes only), and when; none when no entry will
    // ever be due again. The first in the entries' order wins a tie.
    [[nodiscard]] static std::optional<Next> next(
        const std::vector<ScheduleEntry>& entries, const QDateTime& now);
};

} // namespace zelto
