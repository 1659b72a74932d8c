// Transfer jobs against three fixture servers: the cancel of one parallel job (a serial job's
// cancel is driven through its window, in the window's tests).

#include "distribution/TransferJob.h"

#include "DistributionFixture.h"

namespace zelto::test {
namespace {

using TransferJobTest = DistributionFixture;

TEST_F(TransferJobTest, CancellingOneParallelJobLeavesTheOthers)
{
    stall(0, "STOR");
    std::vector<std::shared_ptr<TransferJob>> jobs;
    for (int i = 0; i < kServers; ++i) {
        jobs.push_back(makeJob({ site(i) }, false));
        jobs.back()->start();
    }
    ASSERT_TRUE(commandSeen(0, "STOR"));
    // The window's Cancel: pause, ask, "Yes".
    jobs[0]->pause();
    jobs[0]->cancel();

    for (const auto& job : jobs)
        ASSERT_TRUE(ended(job));
    EXPECT_EQ(resultsOf(outcomes_.of(site(0).port).files), firstCancelled());
    EXPECT_TRUE(served(1));
    EXPECT_TRUE(served(2));
}

} // namespace
} // namespace zelto::test
