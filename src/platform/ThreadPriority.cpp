#include "ThreadPriority.h"

#if defined(__linux__)
#include <cerrno>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace zelto {

bool lowerThreadPriority(int steps)
{
#if defined(__linux__)
    if (steps <= 0)
        return false;
    const auto thread = static_cast<id_t>(::gettid());
    // -1 is a valid nice value: errno tells a failure apart.
    errno = 0;
    const int now = ::getpriority(PRIO_PROCESS, thread);
    if (errno != 0)
        return false;
    return ::setpriority(PRIO_PROCESS, thread, now + steps) == 0;
#else
    (void)steps;
    return false;
#endif
}

} // namespace zelto
