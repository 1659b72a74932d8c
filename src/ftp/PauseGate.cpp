#include "PauseGate.h"

namespace zelto {

void PauseGate::pause()
{
    const std::lock_guard lock(mutex_);
    paused_.store(true, std::memory_order_release);
}

void PauseGate::resume()
{
    {
        const std::lock_guard lock(mutex_);
        paused_.store(false, std::memory_order_release);
    }
    opened_.notify_all();
}

void PauseGate::pass(std::stop_token stop)
{
    if (!paused())
        return;
    std::unique_lock lock(mutex_);
    opened_.wait(lock, stop, [this] { return !paused(); });
}

} // namespace zelto
