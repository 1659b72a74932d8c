#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stop_token>

namespace zelto {

// The cooperative form of suspending a worker while its window asks the user what to do. The
// worker passes the gate at its checkpoints (each round of the put pump, each step of libcurl
// during an upload, and between the sites of a job); while the gate is closed it waits there. A
// stop request lets a waiting worker through at once, so a stopped job never stays parked.
//
// A pause longer than the data time-outs may end the file under way with a time-out: libcurl
// counts the parked time as a stalled transfer.
class PauseGate final {
public:
    void pause();
    void resume();
    [[nodiscard]] bool paused() const { return paused_.load(std::memory_order_acquire); }

    // Returns at once while the gate is open; otherwise waits for resume() or a stop request.
    void pass(std::stop_token stop);

private:
    std::atomic<bool> paused_ { false };
    std::mutex mutex_;
    std::condition_variable_any opened_;
};

} // namespace zelto
