// The program's worker threads: the priority a worker runs at, and slow work whose result comes
// back to the thread that started it, or is dropped once that thread's context has gone.

#include "distribution/WorkerThreads.h"

#include "TestWait.h"
#include "distribution/RunOffThread.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <atomic>
#include <optional>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

int niceOfThisThread()
{
    return ::getpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()));
}

TEST(WorkerThreadsTest, TransferWorkersAloneRunBelowTheThreadThatStartsThem)
{
    using Priority = WorkerThreads::Priority;
    const struct {
        const char* what;
        int transferNice;
        Priority priority;
        int below;
    } cases[] = {
        { "a transfer", 5, Priority::Transfer, 5 },
        { "a transfer, lowering off", 0, Priority::Transfer, 0 },
        { "a file set being built", 5, Priority::Normal, 0 },
    };
    const int own = niceOfThisThread();
    for (const auto& c : cases) {
        WorkerThreads threads(c.transferNice);
        std::atomic<int> seen { -100 };
        threads.launch([&](std::stop_token) { seen = niceOfThisThread(); }, c.priority);
        ASSERT_TRUE(threads.waitAll(5s)) << c.what;
        EXPECT_EQ(seen, own + c.below) << c.what;
        // Per thread, not the whole process.
        EXPECT_EQ(niceOfThisThread(), own) << c.what;
    }
}

TEST(WorkerThreadsTest, OffThreadResultsReachTheStartingThreadWhileItsContextLives)
{
    EventLoop loop;
    const std::thread::id here = std::this_thread::get_id();
    for (const bool contextKept : { true, false }) {
        WorkerThreads threads;
        auto context = std::make_unique<QObject>();
        std::optional<std::pair<std::thread::id, std::thread::id>> ran; // worked on, delivered on
        runOffThread(
            threads, context.get(), [] { return std::this_thread::get_id(); },
            [&](std::thread::id worker) {
                ran = { worker, std::this_thread::get_id() };
            });
        // The result is posted before the worker ends.
        ASSERT_TRUE(threads.waitAll(5s));
        if (!contextKept)
            context.reset();
        QCoreApplication::processEvents();
        ASSERT_EQ(ran.has_value(), contextKept);
        if (ran) {
            EXPECT_NE(ran->first, here);
            EXPECT_EQ(ran->second, here);
        }
    }
}

} // namespace
} // namespace zelto::test
