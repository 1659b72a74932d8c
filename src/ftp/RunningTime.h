#pragma once

#include <QtGlobal>

#include <chrono>

namespace zelto {

// The timing rules of the transfer pump. Time is passed in, so that tests set it.
class RunningTime final {
public:
    using Clock = std::chrono::steady_clock;

    // One per job, kept across its files: the previous value of the rule starts at 0 with the
    // job, so a file that starts late in the job adds only its own rounds, not the whole job so
    // far.
    explicit RunningTime(Clock::time_point jobStart) : jobStart_(jobStart) { }

    [[nodiscard]] Clock::time_point jobStart() const { return jobStart_; }

    // The amount to add to the running-time total after a round ending at `now`: the whole
    // seconds since the job start modulo 60, less the same value at the previous round. When the
    // seconds pass a whole minute the amount is negative once; the totals have always been kept
    // this way and are compared with older ones, so the rule stays as it is.
    [[nodiscard]] int advance(Clock::time_point now);

    // Whole seconds from `start` to `now` for rates and time left; 0 (or less) counts as 1.
    [[nodiscard]] static qint64 rateSeconds(Clock::time_point start, Clock::time_point now);

private:
    Clock::time_point jobStart_;
    int previous_ = 0;
};

} // namespace zelto
