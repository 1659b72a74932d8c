// Transfer jobs against three fixture servers: what reaches each site, what each site's end
// reports, and every way a window can cancel.

#include "distribution/TransferJob.h"

#include "DistributionFixture.h"
#include "distribution/WorkerThreads.h"
#include "ftp/FtpErrors.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <array>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 20s;

class TransferJobTest : public DistributionFixture {
protected:
    void TearDown() override
    {
        // No worker may outlive its job.
        EXPECT_TRUE(threads_.waitAll(kDeadline));
        EXPECT_EQ(threads_.running(), 0u);
    }

    std::shared_ptr<TransferJob> makeJob(
        std::vector<JobSite> sites, bool serial, JobOutcomeSink& outcomes)
    {
        TransferJob::Setup setup;
        setup.serial = serial;
        setup.sites = std::move(sites);
        setup.files = fileSet();
        return TransferJob::create(std::move(setup), recorder_.services, outcomes, threads_);
    }

    [[nodiscard]] static bool ended(const std::shared_ptr<TransferJob>& job)
    {
        return waitUntil([&] { return job->done(); }, kDeadline);
    }
    [[nodiscard]] std::vector<int> all(int result) const
    {
        return std::vector<int>(fileSet().size(), result);
    }
    // The first file cancelled in its transfer, the others never tried.
    [[nodiscard]] std::vector<int> firstCancelled() const
    {
        auto results = all(FileEntry::kNotTried);
        results.front() = ids::kPutCanceled;
        return results;
    }

    WorkerThreads threads_;
};

TEST_F(TransferJobTest, ParallelAndSerialServeEveryWorkingSiteAlike)
{
    FtpFaults refused;
    refused.refuseLogin = { QStringLiteral("*") };
    servers_[2]->setFaults(refused);

    std::array<std::array<QMap<QString, QByteArray>, kServers>, 2> trees;
    for (const bool serial : { false, true }) {
        SCOPED_TRACE(serial ? "serial" : "parallel");
        clearServers();
        RecordingOutcomes outcomes;
        std::vector<std::shared_ptr<TransferJob>> jobs;
        if (serial)
            jobs.push_back(makeJob({ site(0), site(1), site(2) }, true, outcomes));
        for (int i = 0; !serial && i < kServers; ++i)
            jobs.push_back(makeJob({ site(i) }, false, outcomes));
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
        jobs.push_back(makeJob({ site(i) }, false, outcomes_));
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

// A serial job over the three sites, held by server 0 at a command until the window acts. Every
// site is handed to the sink, whatever the answer.
TEST_F(TransferJobTest, CancelOfASerialJob)
{
    const struct {
        const char* what;
        const char* stalled;
        bool all; // "All", otherwise "Only this one"
    } cases[] = {
        { "All, while sending", "STOR", true },
        { "Only this one, before the login", "USER", false },
        { "Only this one, while sending: the file ends with 237", "STOR", false },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        clearServers();
        stall(0, c.stalled);
        const std::array<int, kServers> logins { count(0, "USER"), count(1, "USER"),
            count(2, "USER") };
        const int before = count(0, c.stalled);
        RecordingOutcomes outcomes;
        const auto job = makeJob({ site(0), site(1), site(2) }, true, outcomes);
        job->start();
        ASSERT_TRUE(commandSeen(0, c.stalled, before));
        job->pause();
        EXPECT_EQ(job->currentServer(), FtpServer::host());
        if (c.all)
            job->cancel();
        else
            job->cancelCurrentSite();

        ASSERT_TRUE(ended(job));
        ASSERT_EQ(outcomes.count(), 3u);
        const bool sending = c.stalled == std::string_view("STOR");
        EXPECT_EQ(resultsOf(outcomes.of(site(0).port).files),
            sending ? firstCancelled() : all(FileEntry::kNotTried));
        const auto results = job->results();
        ASSERT_EQ(results.size(), 3u);
        for (int later : { 1, 2 }) {
            if (c.all) {
                EXPECT_EQ(
                    resultsOf(outcomes.of(site(later).port).files), all(FileEntry::kNotTried));
                EXPECT_EQ(count(later, "USER"), logins[later]) << "no later site tried";
            } else {
                EXPECT_TRUE(served(later));
            }
        }
        // The new worker may finish a site before the stopped one has left its connect.
        for (const auto& result : results) {
            if (result.site.port != site(0).port) {
                EXPECT_EQ(result.result && result.result->ok(), !c.all) << result.site.port;
                EXPECT_EQ(result.result.has_value(), !c.all) << "after All no later site runs";
            } else if (!c.all) {
                ASSERT_TRUE(result.result);
                EXPECT_EQ(!result.result->ok(), !sending)
                    << "only a stopped connect fails the site";
            }
        }
    }
}

} // namespace
} // namespace zelto::test
