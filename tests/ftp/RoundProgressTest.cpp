// What the pump publishes per round, with sizes past 4 GiB (the files themselves are moved whole
// by the benchmark; here the arithmetic is checked without moving 5 GiB in a test).

#include "ftp/RoundProgress.h"

#include "FtpTestKit.h"
#include "ftp/CTransferSession.h"
#include "ftp/JobProgress.h"
#include "ftp/TransferCounters.h"

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;
using Text = JobProgress::Text;

constexpr qint64 kGiB = 1024LL * 1024 * 1024;

TEST(RoundProgressTest, SixtyFourBitSizesBarsTextsAndTheRunningTime)
{
    TempSettings settings;
    Recorder recorder;
    struct Case {
        const char* name;
        bool countsUp;
        RoundProgress::Total total;
        int jobBar;
        int fileBar;
    };
    const Case cases[] = {
        { "put or get, bars rising", true, RoundProgress::Total::Transfer, 66, 80 },
        { "copy, bars falling", false, RoundProgress::Total::Copy, 34, 20 },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        JobProgress progress;
        CTransferSession session(recorder.services);
        session.setProgressControls(&progress, c.countsUp);
        session.setBatchBytes(6 * kGiB, 0);
        const auto before = TransferCounters::instance().snapshot();
        // 90 s into the job: 30 s past the minute for the running-time rule.
        const auto t0 = RoundProgress::Clock::now();
        RoundProgress rounds(session, 5 * kGiB, t0 - 90s, c.total, t0);
        rounds.start();
        EXPECT_EQ(progress.snapshot().fileBar, c.countsUp ? 0 : 100);
        EXPECT_EQ(progress.snapshot().fileTotal, 5 * kGiB);

        rounds.round(4 * kGiB + 1, t0);
        auto shown = progress.snapshot();
        EXPECT_EQ(shown.jobDone, 4 * kGiB + 1);
        EXPECT_EQ(session.batchDoneBytes(), 4 * kGiB + 1);
        EXPECT_EQ(shown.jobBar, c.jobBar);
        EXPECT_EQ(shown.fileBar, c.fileBar);
        EXPECT_EQ(shown.text(Text::JobBytes), "Sent 4294967297 bytes out of 6442450944 (66.67%)");
        EXPECT_EQ(shown.text(Text::FileBytes), "Sent 4294967297 bytes out of 5368709120 (80.00%)");
        // Round 0 shows the rates: the job's over 90 s, the file's over its first second.
        EXPECT_EQ(shown.text(Text::JobRate), "47721.86 kbs");
        EXPECT_EQ(shown.text(Text::FileRate), "4294967.30 kbs");
        EXPECT_FALSE(shown.text(Text::JobTimeLeft).isEmpty());

        // Rounds 1 to 4 come within the text interval: numbers and bars move, texts wait.
        for (int round = 1; round < 5; ++round)
            rounds.round(kGiB / 4 - (round == 4 ? 1 : 0), t0 + 1ms * round);
        shown = progress.snapshot();
        EXPECT_EQ(shown.fileDone, 5 * kGiB);
        EXPECT_EQ(shown.fileBar, c.countsUp ? 100 : 0);
        EXPECT_EQ(shown.text(Text::FileBytes), "Sent 4294967297 bytes out of 5368709120 (80.00%)");
        // Round 5, later: the bytes and, being a fifth round, the rates.
        rounds.round(0, t0 + 2s);
        shown = progress.snapshot();
        EXPECT_EQ(shown.text(Text::FileBytes), "Sent 5368709120 bytes out of 5368709120 (100.00%)");
        EXPECT_EQ(shown.text(Text::FileRate), "2684354.56 kbs");
        // Round 6 within the interval, then the end of the file shows it.
        rounds.round(1, t0 + 2s + 1ms);
        EXPECT_EQ(progress.snapshot().text(Text::FileBytes),
            "Sent 5368709120 bytes out of 5368709120 (100.00%)");
        rounds.finish(t0 + 2s + 1ms);
        EXPECT_EQ(progress.snapshot().text(Text::FileBytes),
            "Sent 5368709121 bytes out of 5368709120 (100.00%)");

        // The running time: 30 s at the first round, 2 more by the last.
        const auto after = TransferCounters::instance().snapshot();
        const double transfer = after.transferSeconds - before.transferSeconds;
        const double copy = after.copySeconds - before.copySeconds;
        EXPECT_EQ(c.total == RoundProgress::Total::Copy ? copy : transfer, 32.0);
        EXPECT_EQ(c.total == RoundProgress::Total::Copy ? transfer : copy, 0.0);
    }
}

TEST(RoundProgressTest, WithoutAJobTotalOrStartOnlyTheFileMoves)
{
    TempSettings settings;
    Recorder recorder;
    JobProgress progress;
    CTransferSession session(recorder.services);
    session.setProgressControls(&progress, true);
    const auto before = TransferCounters::instance().snapshot();
    RoundProgress rounds(session, 1000, std::nullopt, RoundProgress::Total::Transfer);
    rounds.start();
    rounds.round(400);
    const auto shown = progress.snapshot();
    EXPECT_EQ(session.batchDoneBytes(), 0);
    EXPECT_EQ(shown.jobBar, 0);
    EXPECT_EQ(shown.fileBar, 0); // the file bar, too, waits for a job total
    EXPECT_EQ(shown.fileDone, 400);
    EXPECT_EQ(shown.text(Text::FileBytes), "Sent 400 bytes out of 1000 (40.00%)");
    EXPECT_TRUE(shown.text(Text::JobRate).isEmpty());
    EXPECT_EQ(TransferCounters::instance().snapshot().transferSeconds, before.transferSeconds);
}

} // namespace
} // namespace zelto::test
