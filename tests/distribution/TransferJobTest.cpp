// Transfer jobs against three fixture servers: what reaches each site and what each site's end
// reports (a serial job's cancel is driven through its window, in the window's tests).

#include "distribution/TransferJob.h"

#include "DistributionFixture.h"
#include "ftp/FtpErrors.h"
#include "platform/StringTable.h"

#include <array>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

using TransferJobTest = DistributionFixture;

TEST_F(TransferJobTest, ParallelAndSerialServeEveryWorkingSiteAlike)
{
    servers_[2]->setFaults({ .refuseLogin = { "*" } });

    std::array<std::array<QMap<QString, QByteArray>, kServers>, 2> trees;
    for (const bool serial : { false, true }) {
        SCOPED_TRACE(serial ? "serial" : "parallel");
        clearServers();
        RecordingOutcomes outcomes;
        std::vector<std::shared_ptr<TransferJob>> jobs;
        if (serial)
            jobs.push_back(makeJob({ site(0), site(1), site(2) }, true, &outcomes));
        for (int i = 0; !serial && i < kServers; ++i)
            jobs.push_back(makeJob({ site(i) }, false, &outcomes));
        for (const auto& job : jobs)
            job->start();
        std::vector<int> siteResults; // the codes; -1 for a site that never ran
        for (const auto& job : jobs) {
            ASSERT_TRUE(ended(job));
            for (const auto& result : job->results())
                siteResults.push_back(result.result ? result.result->code : -1);
        }
        ASSERT_EQ(siteResults.size(), std::size_t(kServers));
        EXPECT_EQ(siteResults[0], 0);
        EXPECT_EQ(siteResults[1], 0);
        EXPECT_EQ(siteResults[2], inet::kLoginFailed) << "the refused login is the site's result";

        ASSERT_EQ(outcomes.count(), std::size_t(kServers));
        EXPECT_TRUE(served(0));
        EXPECT_TRUE(served(1));
        EXPECT_EQ(resultsOf(outcomes.of(site(0).port).files), all(FileEntry::kSent));
        const auto refusedSite = outcomes.of(site(2).port);
        EXPECT_EQ(resultsOf(refusedSite.files), all(FileEntry::kNotTried));
        for (const FileEntry& file : refusedSite.files) // the connect's message and the server's
            EXPECT_TRUE(file.message.startsWith(StringTable::errorMessage(inet::kLoginFailed)))
                << file.message.toStdString();
        EXPECT_TRUE(empty(2));
        for (int i = 0; i < kServers; ++i)
            trees[serial][i] = treeOf(servers_[i]->home());
    }
    EXPECT_EQ(trees[0], trees[1]);
}

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
