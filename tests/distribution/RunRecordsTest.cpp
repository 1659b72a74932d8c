// The record per site of a run to several sites, with one site that refuses the login: what a link
// run keeps, and what a send of the multiple-put screen keeps while its sites still reach the
// bookkeeping.

#include "RunSummaryFixture.h"
#include "TestWait.h"
#include "distribution/LinkDistribution.h"
#include "distribution/SummarisedRun.h"

#include <optional>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 30s;

using RunRecordsTest = RunSummaryFixture;

TEST_F(RunRecordsTest, LinkRunKeepsARecordPerSiteWithTheRefusedLoginsFilesFailed)
{
    EventLoop loop;
    struct Case {
        const char* link;
        std::vector<int> servers;
        std::vector<Row> rows;
        QString status;
        QString closing;
    };
    const Case cases[] = {
        { "both", { 0, 1 }, { rowSent(0), rowSent(1) },
            QStringLiteral("Sent 8 files to 2 sites, 0 failed"),
            QStringLiteral("Every file reached every site.") },
        { "refused", { 0, 2 }, { rowSent(0), rowRefused(2) },
            QStringLiteral("Sent 4 files to 2 sites, 4 failed"),
            QStringLiteral("4 files not sent, at 1 of 2 sites.") },
    };
    for (const Case& c : cases) {
        writeLinkOf(QString::fromLatin1(c.link), c.servers);
        clearServers();

        LinkDistribution run(recorder_.services, threads_, outcomes_, nullptr, 0ms);
        std::optional<LinkDistribution::End> end;
        run.start(
            QString::fromLatin1(c.link), [&end](LinkDistribution::End ended) { end = ended; });
        ASSERT_TRUE(waitUntil([&] { return end.has_value(); }, kDeadline)) << c.link;

        const RunSummary& summary = run.summary();
        EXPECT_EQ(rowsOf(summary), sorted(c.rows)) << c.link;
        EXPECT_EQ(summary.title(), QStringLiteral("Link run: ") + QString::fromLatin1(c.link));
        EXPECT_EQ(summary.statusLine(), c.status) << c.link;
        EXPECT_EQ(summary.closingLine(), c.closing) << c.link;
    }
}

// Send Parallel's job per site and Send Serial's one job for both: a record per site, the run's
// end told once when its last job has ended, and every site still handed to the bookkeeping.
TEST_F(RunRecordsTest, SendKeepsARecordPerSiteAndEndsWithItsLastJob)
{
    EventLoop loop;
    for (const bool serial : { false, true }) {
        clearServers();
        const std::size_t before = outcomes_.count();
        std::vector<TransferJob::Setup> setups;
        for (int server : { 0, 2 }) {
            if (!serial || setups.empty()) {
                setups.emplace_back();
                setups.back().serial = serial;
                setups.back().files = fileSet();
            }
            setups.back().sites.push_back(namedSite(server));
        }
        std::vector<RunSummary> ended;
        SummarisedRun run(QStringLiteral("Send"), setups.size(), recorder_.services, threads_,
            outcomes_, [&ended](const RunSummary& summary) { ended.push_back(summary); });
        for (TransferJob::Setup& setup : setups)
            run.start(run.makeJob(std::move(setup)));
        ASSERT_TRUE(waitUntil([&] { return !ended.empty(); }, kDeadline)) << serial;
        ASSERT_TRUE(settle());

        EXPECT_TRUE(run.ended());
        ASSERT_EQ(ended.size(), 1u) << serial;
        EXPECT_EQ(rowsOf(ended[0]), sorted({ rowSent(0), rowRefused(2) })) << serial;
        EXPECT_EQ(outcomes_.count(), before + 2) << serial;
        EXPECT_TRUE(served(0)) << serial;
    }
}

} // namespace
} // namespace zelto::test
