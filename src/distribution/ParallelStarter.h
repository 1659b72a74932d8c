#pragma once

#include <QTimer>

#include <chrono>
#include <cstddef>
#include <functional>

namespace zelto {

// Starts the jobs of a parallel send one after another, an interval apart, from the event loop
// of the thread that owns it: the first at once, then one at each tick. The thread never sleeps,
// so the starts still to come can be dropped at any moment.
class ParallelStarter final {
public:
    // Between two starts of Send Parallel and of a link run.
    static constexpr std::chrono::milliseconds kInterval { 200 };

    using StartOne = std::function<void(std::size_t index)>;

    ParallelStarter(
        std::size_t count, StartOne startOne, std::chrono::milliseconds interval = kInterval);
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

    std::size_t count_;
    StartOne startOne_;
    QTimer timer_;
    std::size_t started_ = 0;
    bool cancelled_ = false;
};

} // namespace zelto
