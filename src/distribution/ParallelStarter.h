#pragma once

#include <QTimer>

#include <chrono>
#include <cstddef>
#include <functional>

namespace zelto {

class WorkerThreads;

// Starts the jobs of a parallel send one after another, an interval apart, from the event loop
// of the thread that owns it: the first at once, then one at each tick. The thread never sleeps,
// so the starts still to come can be dropped at any moment. When the program stops its workers
// (a quit), the jobs still to come are started at once, to be stopped with the others: each then
// hands its files to the bookkeeping, and a quit loses none.
class ParallelStarter final {
public:
    // Between two starts of Send Parallel and of a link run.
    static constexpr std::chrono::milliseconds kInterval { 200 };

    using StartOne = std::function<void(std::size_t index)>;

    ParallelStarter(WorkerThreads& threads, std::size_t count, StartOne startOne,
        std::chrono::milliseconds interval = kInterval);
    ~ParallelStarter();
    ParallelStarter(const ParallelStarter&) = delete;
    ParallelStarter& operator=(const ParallelStarter&) = delete;

    void start();
    // Drops the starts still to come; the jobs already started run on.
    void cancel();

    // How many jobs were started; those from this index on never will be once it is finished.
    [[nodiscard]] std::size_t started() const { return started_; }
    [[nodiscard]] bool finished() const { return started_ == count_ || cancelled_; }

private:
    void startNext();
    void startTheRest();

    WorkerThreads& threads_;
    std::size_t count_;
    StartOne startOne_;
    QTimer timer_;
    std::size_t started_ = 0;
    bool cancelled_ = false;
};

} // namespace zelto
