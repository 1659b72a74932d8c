// The starter of parallel jobs: one start per tick of the event loop, a cancel that drops the
// starts still to come, and a stop of the workers that makes them at once.

#include "distribution/ParallelStarter.h"

#include "TestWait.h"
#include "distribution/WorkerThreads.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <vector>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

TEST(ParallelStarterTest, StartsInOrderUntilCancelled)
{
    EventLoop loop;

    struct Case {
        const char* what;
        std::size_t count;
        std::size_t cancelAt; // the start that cancels the rest; count: none does
        std::size_t stopAt; // the start that stops the workers (a quit); count: none does
        std::vector<std::size_t> started;
    };
    const Case cases[] = {
        { "every start, in order", 4, 4, 4, { 0, 1, 2, 3 } },
        { "a start cancels the rest", 4, 1, 4, { 0, 1 } },
        { "the first start cancels the rest", 3, 0, 3, { 0 } },
        { "nothing to start", 0, 0, 0, {} },
        // The starts still to come are made at once, so that their jobs are stopped with the
        // others and queue their files.
        { "a quit starts the rest at once", 5, 5, 0, { 0, 1, 2, 3, 4 } },
        { "a quit after a cancel starts nothing", 4, 0, 0, { 0 } },
    };
    for (const Case& c : cases) {
        WorkerThreads threads;
        std::vector<std::size_t> started;
        ParallelStarter* self = nullptr;
        ParallelStarter starter(
            threads, c.count,
            [&](std::size_t index) {
                started.push_back(index);
                if (index == c.cancelAt)
                    self->cancel();
                if (index == c.stopAt)
                    threads.stopAll();
            },
            // Long enough that only a quit makes the rest before the deadline below.
            c.stopAt < c.count ? 1h : 0ms);
        self = &starter;
        starter.start();
        EXPECT_TRUE(waitUntil([&] { return starter.finished(); }, 5s)) << c.what;
        // The timer would have fired again by now, had the cancel not stopped it.
        for (int i = 0; i < 10; ++i)
            QCoreApplication::processEvents();
        EXPECT_EQ(started, c.started) << c.what;
        EXPECT_EQ(starter.started(), c.started.size()) << c.what;
    }
}

} // namespace
} // namespace zelto::test
