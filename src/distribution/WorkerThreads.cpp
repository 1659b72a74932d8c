#include "WorkerThreads.h"

#include <vector>

namespace zelto {

WorkerThreads::WorkerThreads() : state_(std::make_shared<State>())
{
}

WorkerThreads::~WorkerThreads()
{
    stopAll(kExitWait);
    const std::lock_guard lock(state_->mutex);
    for (Worker& worker : workers_) {
        if (!*worker.ended)
            worker.thread.detach();
    }
}

std::stop_source WorkerThreads::launch(std::function<void(std::stop_token)> work)
{
    reap();
    auto ended = std::make_shared<bool>(false);
    const std::lock_guard lock(state_->mutex);
    ++state_->running;
    Worker& worker = workers_.emplace_back();
    worker.ended = ended;
    worker.thread
        = std::jthread([state = state_, ended, work = std::move(work)](std::stop_token stop) {
              work(stop);
              {
                  const std::lock_guard lock(state->mutex);
                  *ended = true;
                  --state->running;
              }
              state->ended.notify_all();
          });
    return worker.thread.get_stop_source();
}

std::size_t WorkerThreads::running() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->running;
}

bool WorkerThreads::waitAll(std::chrono::milliseconds deadline)
{
    bool none = false;
    {
        std::unique_lock lock(state_->mutex);
        none = state_->ended.wait_for(lock, deadline, [this] { return state_->running == 0; });
    }
    reap();
    return none;
}

bool WorkerThreads::stopAll(std::chrono::milliseconds deadline)
{
    {
        const std::lock_guard lock(state_->mutex);
        for (Worker& worker : workers_)
            worker.thread.request_stop();
    }
    return waitAll(deadline);
}

void WorkerThreads::reap()
{
    std::vector<std::jthread> done;
    {
        const std::lock_guard lock(state_->mutex);
        for (auto it = workers_.begin(); it != workers_.end();) {
            if (*it->ended) {
                done.push_back(std::move(it->thread));
                it = workers_.erase(it);
            } else {
                ++it;
            }
        }
    }
    // Joined outside the lock: a thread that has ended still takes the lock on its way out.
    for (std::jthread& thread : done)
        thread.join();
}

} // namespace zelto
