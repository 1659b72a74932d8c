#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

namespace zelto {

// The worker threads of the transfer jobs. A window never waits for its worker, so the threads
// belong here, not to the windows: the program waits for them once, at its end, and no thread is
// ever killed. Safe to use from any thread.
class WorkerThreads final {
public:
    // How long the end of the program waits for its workers. A stopped worker leaves at its next
    // block or libcurl callback, well within this.
    static constexpr std::chrono::milliseconds kExitWait { 10'000 };

    WorkerThreads();
    // Stops every worker and waits for them up to kExitWait; one that is still running then is
    // left to end with the process (it is stopped and touches nothing of this object).
    ~WorkerThreads();
    WorkerThreads(const WorkerThreads&) = delete;
    WorkerThreads& operator=(const WorkerThreads&) = delete;

    // Runs `work` on a thread of its own; returns the thread's stop source.
    std::stop_source launch(std::function<void(std::stop_token)> work);

    [[nodiscard]] std::size_t running() const;
    // Waits until no worker runs or `deadline` has passed; true when none runs.
    bool waitAll(std::chrono::milliseconds deadline);
    // Asks every worker to stop, then waits as waitAll does.
    bool stopAll(std::chrono::milliseconds deadline);

private:
    // Shared with the threads, so that a thread left running at the end touches nothing freed.
    struct State {
        std::mutex mutex;
        std::condition_variable ended;
        std::size_t running = 0;
    };
    struct Worker {
        std::jthread thread;
        std::shared_ptr<bool> ended; // guarded by State::mutex
    };

    // Joins the threads that have ended (at once, since their work is done).
    void reap();

    std::shared_ptr<State> state_;
    std::list<Worker> workers_; // guarded by state_->mutex
};

} // namespace zelto
