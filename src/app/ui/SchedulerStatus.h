#pragma once

#include "scheduler/ScheduleEntry.h"

#include <QDateTime>
#include <QString>

#include <vector>

namespace zelto {

// What the frame says of the scheduler: the status bar tells whether it is on and how many entries
// it can run (so that "On" over an empty schedule does not pass for work to come), the tray's tip
// which entry runs next.
class SchedulerStatus final {
public:
    SchedulerStatus() = delete;

    [[nodiscard]] static QString statusText(bool on, const std::vector<ScheduleEntry>& entries);
    // Empty when the scheduler is off or nothing will run.
    [[nodiscard]] static QString nextText(
        bool on, const std::vector<ScheduleEntry>& entries, const QDateTime& now);
};

} // namespace zelto
