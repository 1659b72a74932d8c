// Transfer jobs against three fixture servers: what reaches each site, what each site's end
// reports, and every way a window can cancel.

#include "distribution/TransferJob.h"

#include "DistributionFixture.h"
#include "distribution/WorkerThreads.h"
#include "platform/StringIds.h"

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

    std::shared_ptr<TransferJob> makeJob(std::vector<JobSite> sites, bool serial,
        std::vector<FileEntry> files, JobOutcomeSink& outcomes)
    {
        TransferJob::Setup setup;
        setup.serial = serial;
        setup.sites = std::move(sites);
        setup.files = std::move(files);
        return TransferJob::create(std::move(setup), recorder_.services, outcomes, threads_);
    }
    std::shared_ptr<TransferJob> makeJob(std::vector<JobSite> sites, bool serial)
    {
        return makeJob(std::move(sites), serial, fileSet(), outcomes_);
    }

    [[nodiscard]] static bool ended(const std::shared_ptr<TransferJob>& job)
    {
        return waitUntil([&] { return job->done(); }, kDeadline);
    }
    [[nodiscard]] bool commandSeen(int server, const char* command) const
    {
        return waitUntil(
            [&] { return servers_[server]->commandCount(QLatin1String(command)) > 0; }, kDeadline);
    }

    void expectServed(int server) const
    {
        for (const FileEntry& file : fileSet()) {
            const QString relative
                = QDir(local_.path()).relativeFilePath(file.localFolder + u'/' + file.localName);
            EXPECT_TRUE(sameBytes(localPath(relative), stored(server, relative)))
                << "server " << server << ": " << relative.toStdString();
        }
    }

    // The results of a site's files, in the set's order.
    [[nodiscard]] static std::vector<int> resultsOf(const RecordingOutcomes::Site& site)
    {
        std::vector<int> results;
        for (const FileEntry& file : site.files)
            results.push_back(file.result);
        return results;
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

    // A serial job over the three sites, held by server 0 at `command` until the window acts.
    [[nodiscard]] std::shared_ptr<TransferJob> stalledAt(const char* command)
    {
        stall(command);
        const auto job = makeJob({ site(0), site(1), site(2) }, true);
        job->start();
        EXPECT_TRUE(commandSeen(0, command));
        job->pause();
        return job;
    }
    void stall(const char* command) const
    {
        FtpFaults stalled;
        stalled.stall[QLatin1String(command)] = FtpFaults::kForever;
        servers_[0]->setFaults(stalled);
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
        for (const auto& server : servers_) {
            QDir(server->home()).removeRecursively();
            QDir().mkpath(server->home());
        }
        RecordingOutcomes outcomes;
        std::vector<int> siteResults;
        if (serial) {
            const auto job = makeJob({ site(0), site(1), site(2) }, true, fileSet(), outcomes);
            job->start();
            ASSERT_TRUE(ended(job));
            for (const auto& result : job->results())
                siteResults.push_back(result.result);
        } else {
            std::vector<std::shared_ptr<TransferJob>> jobs;
            for (int i = 0; i < kServers; ++i) {
                jobs.push_back(makeJob({ site(i) }, false, fileSet(), outcomes));
                jobs.back()->start();
            }
            for (const auto& job : jobs) {
                ASSERT_TRUE(ended(job));
                ASSERT_EQ(job->results().size(), 1u);
                siteResults.push_back(job->results().front().result);
            }
        }
        EXPECT_EQ(siteResults[0], 0);
        EXPECT_EQ(siteResults[1], 0);
        EXPECT_NE(siteResults[2], 0) << "the refused login is the site's result";

        ASSERT_EQ(outcomes.count(), std::size_t(kServers));
        expectServed(0);
        expectServed(1);
        EXPECT_EQ(resultsOf(outcomes.of(site(0).port)), all(FileEntry::kSent));
        const auto refusedSite = outcomes.of(site(2).port);
        EXPECT_EQ(resultsOf(refusedSite), all(FileEntry::kNotTried));
        for (const FileEntry& file : refusedSite.files)
            EXPECT_FALSE(file.message.isEmpty()) << "why the file was not sent";
        EXPECT_TRUE(treeOf(servers_[2]->home()).isEmpty());
        for (int i = 0; i < kServers; ++i)
            trees[serial][i] = treeOf(servers_[i]->home());
    }
    EXPECT_EQ(trees[0], trees[1]);
}

TEST_F(TransferJobTest, CancellingOneParallelJobLeavesTheOthers)
{
    stall("STOR");
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
    EXPECT_EQ(resultsOf(outcomes_.of(site(0).port)), firstCancelled());
    expectServed(1);
    expectServed(2);
}

TEST_F(TransferJobTest, SerialAllHandsTheCurrentAndEveryLaterSiteToTheSink)
{
    const auto job = stalledAt("STOR");
    EXPECT_EQ(job->currentServer(), FtpServer::host());
    job->cancel();

    ASSERT_TRUE(ended(job));
    ASSERT_EQ(outcomes_.count(), 3u);
    EXPECT_EQ(resultsOf(outcomes_.of(site(0).port)), firstCancelled());
    for (int later : { 1, 2 }) {
        EXPECT_EQ(resultsOf(outcomes_.of(site(later).port)), all(FileEntry::kNotTried));
        EXPECT_EQ(servers_[later]->commandCount(QStringLiteral("USER")), 0);
    }
    const auto results = job->results();
    ASSERT_EQ(results.size(), 3u);
    EXPECT_EQ(results[1].result, TransferJob::kNotRun);
    EXPECT_EQ(results[2].result, TransferJob::kNotRun);
}

TEST_F(TransferJobTest, OnlyThisOneBeforeTheLoginServesTheOtherSites)
{
    const auto job = stalledAt("USER");
    job->cancelCurrentSite();

    ASSERT_TRUE(ended(job));
    ASSERT_EQ(outcomes_.count(), 3u);
    EXPECT_EQ(resultsOf(outcomes_.of(site(0).port)), all(FileEntry::kNotTried));
    expectServed(1);
    expectServed(2);
    // The new worker may finish a site before the stopped one has left its connect.
    const auto results = job->results();
    ASSERT_EQ(results.size(), 3u);
    for (const auto& result : results) {
        if (result.site.port == site(0).port)
            EXPECT_NE(result.result, 0) << "the connect was stopped";
        else
            EXPECT_EQ(result.result, 0) << "port " << result.site.port;
    }
}

TEST_F(TransferJobTest, OnlyThisOneWhileConnectedEndsTheFileWith237AndGoesOn)
{
    const auto job = stalledAt("STOR");
    job->cancelCurrentSite();

    ASSERT_TRUE(ended(job));
    EXPECT_EQ(resultsOf(outcomes_.of(site(0).port)), firstCancelled());
    expectServed(1);
    expectServed(2);
    for (const auto& result : job->results())
        EXPECT_EQ(result.result, 0) << "port " << result.site.port;
}

} // namespace
} // namespace zelto::test
