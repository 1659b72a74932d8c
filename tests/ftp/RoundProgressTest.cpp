#include "ftp/RoundProgress.h"

#include "FtpTestKit.h"
#include "ftp/ProgressText.h"
#include "ftp/SessionReporter.h"
#include "ftp/TransferCounters.h"

#include <gtest/gtest.h>

namespace zelto {
namespace {

using namespace std::chrono_literals;
using Clock = RoundProgress::Clock;
using Text = JobProgress::Text;

// Files of jobs, one after the other on one session: each file's rounds, one a second from its
// start, and the seconds the running-time total gains by them. A file that starts late in its
// job adds only its own seconds; a new job starts its count again.
TEST(RoundProgress, EachFileAddsItsOwnSecondsToTheRunningTime)
{
    test::Recorder recorder;
    JobProgress progress;
    SessionReporter reporter(recorder.services, &progress);
    reporter.startBatch(1000);
    const Clock::time_point job = Clock::now();
    const Clock::time_point laterJob = job + 30s;

    const struct {
        const char* what;
        Clock::time_point jobStart;
        std::chrono::seconds fileStart; // from the job's start
        int rounds;
        double gained;
    } files[] = {
        { "first file", job, 0s, 5, 5 },
        { "second file of the job", job, 5s, 5, 5 },
        { "a file after a pause in the job", job, 20s, 3, 13 },
        { "a new job", laterJob, 0s, 3, 3 },
    };
    for (const auto& f : files) {
        const double before = TransferCounters::instance().snapshot().transferSeconds;
        RoundProgress round(
            reporter, 100, f.jobStart, RoundProgress::Total::Transfer, f.jobStart + f.fileStart);
        round.start();
        for (int i = 1; i <= f.rounds; ++i)
            round.round(10, f.jobStart + f.fileStart + std::chrono::seconds(i));
        round.finish(f.jobStart + f.fileStart + std::chrono::seconds(f.rounds));
        EXPECT_DOUBLE_EQ(TransferCounters::instance().snapshot().transferSeconds - before, f.gained)
            << f.what;
    }
}

// A new file's figures are its own from its first moment: the rate and time left of the file
// before do not stand under it until its first texts are due.
TEST(RoundProgress, ANewFileStartsWithItsOwnFigures)
{
    test::Recorder recorder;
    JobProgress progress;
    SessionReporter reporter(recorder.services, &progress);
    reporter.startBatch(3000);
    const Clock::time_point start = Clock::now();

    RoundProgress first(reporter, 1000, start, RoundProgress::Total::Transfer, start);
    first.start();
    for (int i = 1; i <= 10; ++i)
        first.round(100, start + std::chrono::seconds(i));
    first.finish(start + 10s);
    ASSERT_FALSE(progress.snapshot().text(Text::FileRate).isEmpty());
    EXPECT_EQ(progress.snapshot().fileBar, 100) << "a whole file fills its bar";
    EXPECT_EQ(progress.snapshot().text(Text::FileBytes), ProgressText::bytesText(1000, 1000));

    RoundProgress second(reporter, 2000, start, RoundProgress::Total::Transfer, start + 10s);
    second.start();
    const auto shown = progress.snapshot();
    EXPECT_EQ(shown.text(Text::FileBytes), ProgressText::bytesText(0, 2000));
    EXPECT_EQ(shown.text(Text::FileRate), QString());
    EXPECT_EQ(shown.text(Text::FileTimeLeft), QString());
    EXPECT_EQ(shown.fileBar, 0);
    EXPECT_EQ(shown.fileDone, 0);
    EXPECT_EQ(shown.fileTotal, 2000);
    // The job's figures go on from where the first file left them.
    EXPECT_EQ(shown.jobDone, 1000);
}

} // namespace
} // namespace zelto
