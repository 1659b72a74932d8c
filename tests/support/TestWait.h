#pragma once

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>

namespace zelto::test {

// Waits until `ready()` holds or the deadline has passed, and returns the last answer. It polls
// with a short back-off (1 ms doubling up to 20 ms) and delivers the calling thread's Qt events
// in between, so queued signals reach their receivers while a test waits for them.
template <typename Predicate>
[[nodiscard]] bool waitUntil(Predicate&& ready, std::chrono::milliseconds deadline)
{
    using namespace std::chrono;
    const auto end = steady_clock::now() + deadline;
    auto pause = milliseconds(1);
    while (!ready()) {
        const auto left = duration_cast<milliseconds>(end - steady_clock::now());
        if (left <= milliseconds::zero())
            return ready();
        if (QCoreApplication::instance())
            QCoreApplication::processEvents();
        std::this_thread::sleep_for(std::min(pause, left));
        pause = std::min(pause * 2, milliseconds(20));
    }
    return true;
}

// The application object, for the lifetime of the object, of a test whose code needs this
// thread's event loop (timers, queued calls).
class EventLoop final {
public:
    EventLoop() : app_(argc_, argv_) { }

private:
    int argc_ = 1;
    char name_[5] = "test";
    char* argv_[2] = { name_, nullptr };
    QCoreApplication app_;
};

// Delivers the events posted to this thread so far: the end of a run whose last steps are queued,
// where a test checks what did not happen.
[[nodiscard]] inline bool settle()
{
    const auto reached = std::make_shared<bool>(false);
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [reached] { *reached = true; }, Qt::QueuedConnection);
    return waitUntil([&] { return *reached; }, std::chrono::seconds(10));
}

} // namespace zelto::test
