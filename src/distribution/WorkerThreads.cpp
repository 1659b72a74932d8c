#include "WorkerThreads.h"

#include "platform/ThreadPriority.h"
#include "platform/WorkerStop.h"

#include <iterator>

namespace zelto {

WorkerThreads::WorkerThreads(int transferNice) : transferNice_(transferNice)
{
}

WorkerThreads::~WorkerThreads()
{
    stopAll();
}

std::stop_source WorkerThreads::launch(std::function<void(std::stop_token)> work, Priority priority)
{
    reap();
    const int nice = priority == Priority::Transfer ? transferNice_ : 0;
    const std::lock_guard lock(mutex_);
    ++running_;
    Worker& worker = workers_.emplace_back();
    // The node stays where it is until its thread is joined, which is after the thread's last
    // touch of it.
    worker.thread
        = std::jthread([this, &worker, nice, work = std::move(work)](std::stop_token stop) {
              setWorkerStop(stop);
              lowerThreadPriority(nice);
              work(stop);
              {
                  const std::lock_guard lock(mutex_);
                  worker.ended = true;
                  --running_;
              }
              ended_.notify_all();
          });
    return worker.thread.get_stop_source();
}

std::size_t WorkerThreads::running() const
{
    const std::lock_guard lock(mutex_);
    return running_;
}

bool WorkerThreads::waitAll(std::chrono::milliseconds deadline)
{
    bool none = false;
    {
        std::unique_lock lock(mutex_);
        none = ended_.wait_for(lock, deadline, [this] { return running_ == 0; });
    }
    reap();
    return none;
}

void WorkerThreads::stopAll()
{
    // A hook may set or drop hooks (a starter that finishes drops its own).
    auto hooks = std::move(stopHooks_);
    stopHooks_.clear();
    for (auto& [owner, hook] : hooks)
        hook();
    // A worker launched meanwhile (a job's rest started on another thread) is taken in the next
    // round.
    for (;;) {
        std::list<Worker> stopping;
        {
            const std::lock_guard lock(mutex_);
            if (workers_.empty())
                return;
            stopping.splice(stopping.end(), workers_);
        }
        for (Worker& worker : stopping)
            worker.thread.request_stop();
        // Joined outside the lock: a thread takes it on its way out.
        for (Worker& worker : stopping)
            worker.thread.join();
    }
}

void WorkerThreads::setStopHook(const void* owner, std::function<void()> hook)
{
    stopHooks_[owner] = std::move(hook);
}

void WorkerThreads::dropStopHook(const void* owner)
{
    stopHooks_.erase(owner);
}

void WorkerThreads::reap()
{
    std::list<Worker> done;
    {
        const std::lock_guard lock(mutex_);
        for (auto it = workers_.begin(); it != workers_.end();) {
            const auto next = std::next(it);
            if (it->ended)
                done.splice(done.end(), workers_, it);
            it = next;
        }
    }
    for (Worker& worker : done)
        worker.thread.join();
}

} // namespace zelto
