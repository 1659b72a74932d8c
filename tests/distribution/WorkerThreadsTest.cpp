// The program's worker threads: the priority a worker runs at.

#include "distribution/WorkerThreads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sys/resource.h>
#include <unistd.h>

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

} // namespace
} // namespace zelto::test
