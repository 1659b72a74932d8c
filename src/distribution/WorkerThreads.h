#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <stop_token>
#include <thread>

namespace zelto {

// The worker threads of the program. A window never waits for its worker, so the threads belong
// here, not to the windows: the program stops and joins them once, at its end. No thread is ever
// killed or left behind: every wait of a worker gives way to its stop request (the pause gate,
// the copy pipe, libcurl's callbacks, a question put to the user), so a join after a stop
// returns. Safe to use from any thread.
class WorkerThreads final {
public:
    // Transfer workers run this many nice steps below the thread that starts them, so that the
    // windows' timers stay prompt on a machine of two cores that ten transfers keep busy.
    static constexpr int kTransferNice = 5;

    enum class Priority {
        Normal, // work the user waits for (a file set being built)
        Transfer, // jobs and scripts, which may take long
    };

    // `transferNice` 0 runs transfers at the priority of the thread that starts them.
    explicit WorkerThreads(int transferNice = kTransferNice);
    // Stops and joins every worker.
    ~WorkerThreads();
    WorkerThreads(const WorkerThreads&) = delete;
    WorkerThreads& operator=(const WorkerThreads&) = delete;

    // Runs `work` on a thread of its own; returns the thread's stop source. The work finds the
    // same stop request through workerStop().
    std::stop_source launch(
        std::function<void(std::stop_token)> work, Priority priority = Priority::Normal);

    [[nodiscard]] std::size_t running() const;
    // Waits until no worker runs or `deadline` has passed; true when none runs.
    bool waitAll(std::chrono::milliseconds deadline);
    // Asks every worker to stop and joins each; a job's end (its bookkeeping) runs before its
    // thread leaves. The stop hooks run first, on the calling thread.
    void stopAll();

    // A hook that stopAll runs before it stops anything, so that work not yet launched (the
    // jobs a parallel send has still to start) can be launched and stopped with the rest, and
    // hand its files to the bookkeeping. Set and dropped on the thread that calls stopAll.
    void setStopHook(const void* owner, std::function<void()> hook);
    void dropStopHook(const void* owner);

private:
    struct Worker {
        std::jthread thread;
        bool ended = false; // guarded by mutex_
    };

    // Joins the threads that have ended (at once, since their work is done).
    void reap();

    const int transferNice_;
    mutable std::mutex mutex_;
    std::condition_variable ended_;
    std::size_t running_ = 0; // guarded by mutex_
    std::list<Worker> workers_; // guarded by mutex_
    std::map<const void*, std::function<void()>> stopHooks_;
};

} // namespace zelto
