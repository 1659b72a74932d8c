// The starter of parallel jobs: one start per tick of the event loop, and a cancel that drops
// the starts still to come.

#include "distribution/ParallelStarter.h"

#include "TestWait.h"

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
        std::vector<std::size_t> started;
    };
    const Case cases[] = {
        { "every start, in order", 4, 4, { 0, 1, 2, 3 } },
        { "a start cancels the rest", 4, 1, { 0, 1 } },
        { "the first start cancels the rest", 3, 0, { 0 } },
        { "nothing to start", 0, 0, {} },
    };
    for (const Case& c : cases) {
        std::vector<std::size_t> started;
        ParallelStarter* self = nullptr;
        ParallelStarter starter(
            c.count,
            [&](std::size_t index) {
                started.push_back(index);
                if (index == c.cancelAt)
                    self->cancel();
            },
            0ms);
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
