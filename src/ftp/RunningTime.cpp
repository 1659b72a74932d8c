#include "RunningTime.h"

#include <algorithm>

namespace zelto {
namespace {

qint64 wholeSeconds(RunningTime::Clock::time_point start, RunningTime::Clock::time_point now)
{
    return std::chrono::duration_cast<std::chrono::seconds>(now - start).count();
}

} // namespace

int RunningTime::advance(Clock::time_point now)
{
    const int current = static_cast<int>(wholeSeconds(jobStart_, now) % 60);
    const int amount = current - previous_;
    previous_ = current;
    return amount;
}

qint64 RunningTime::rateSeconds(Clock::time_point start, Clock::time_point now)
{
    return std::max<qint64>(wholeSeconds(start, now), 1);
}

} // namespace zelto
