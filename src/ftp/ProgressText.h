#pragma once

#include <QString>
#include <QtGlobal>

namespace zelto {

// The texts of transfer progress and of the statistics window. Pure functions of their inputs;
// safe to call from any thread.
class ProgressText final {
public:
    ProgressText() = delete;

    // "Sent <moved> bytes out of <total> (<percent>%)", 64-bit counts. A total of 0 or less shows
    // 0.00 percent instead of dividing by zero.
    [[nodiscard]] static QString bytesText(qint64 moved, qint64 total);

    // Thousands of bytes per second over a span of whole seconds; a span below 1 counts as 1.
    [[nodiscard]] static double rateKbs(qint64 bytes, qint64 elapsedSeconds);
    // "<kbs> kbs" with two decimals.
    [[nodiscard]] static QString rateText(double kbs);

    // Seconds still to go when `done` of `total` bytes took `elapsedSeconds`:
    // (total - done) x (elapsed / done). Nothing done yet gives 0.
    [[nodiscard]] static double remainingSeconds(qint64 total, qint64 done, qint64 elapsedSeconds);
    // "Left: 12.34 secs" up to a minute, "Left: mm:ss" up to an hour, "Left: hh:mm:ss" beyond.
    // Beyond an hour, a remainder of 60 s or less within the hour shows as 0 minutes and that many
    // seconds (so 3660 s is "Left: 01:00:60"): the display has always worked so.
    [[nodiscard]] static QString timeLeftText(double seconds);

    // "59 secs", "59 min 59 secs", "1 hr 2 min 5 secs". Computed in single precision with the
    // single-precision reciprocals of 3600 and 60, so a value just under a whole minute can show
    // the next minute; users compare it with older readings, so it stays that way.
    [[nodiscard]] static QString formatDuration(double seconds);

    // A counter with "," between groups of three digits; 0 gives an empty text.
    [[nodiscard]] static QString formatCount(qint64 value);
};

} // namespace zelto
