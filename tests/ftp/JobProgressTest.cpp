#include "ftp/JobProgress.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace zelto {
namespace {

using Text = JobProgress::Text;

TEST(JobProgress, BarPositionFollowsDirection)
{
    const struct {
        bool countsUp;
        qint64 done;
        qint64 total;
        int position;
    } cases[] = {
        { true, 0, 1000, 0 },
        { true, 999, 1000, 99 }, // whole percent, cut down
        { true, 1000, 1000, 100 },
        { false, 0, 1000, 100 },
        { false, 250, 1000, 75 },
        { false, 1000, 1000, 0 },
        { true, 4LL << 30, 5LL << 30, 80 }, // beyond 32 bits
        { true, 10, 0, 0 },
        { false, 10, 0, 100 },
    };
    JobProgress progress;
    for (const auto& c : cases) {
        progress.setCountsUp(c.countsUp);
        EXPECT_EQ(progress.barPosition(c.done, c.total), c.position)
            << c.countsUp << " " << c.done << "/" << c.total;
    }
}

TEST(JobProgress, ResetClearsEverything)
{
    JobProgress progress;
    progress.setJobBytes(10, 20);
    progress.setFileBytes(3, 4);
    progress.setCountsUp(false);
    progress.setJobBar(50);
    progress.setFileBar(75);
    for (std::size_t i = 0; i < JobProgress::kTextCount; ++i)
        progress.setText(static_cast<Text>(i), QStringLiteral("text %1").arg(i));

    progress.reset();
    const auto s = progress.snapshot();
    EXPECT_EQ(s.jobDone + s.jobTotal + s.fileDone + s.fileTotal, 0);
    EXPECT_EQ(s.jobBar, 0);
    EXPECT_EQ(s.fileBar, 0);
    EXPECT_TRUE(s.countsUp);
    for (const auto& text : s.texts)
        EXPECT_TRUE(text.isEmpty()) << text.toStdString();
}

// A text whose two halves must agree: a reader that saw a mix of two writes would notice.
QString stamped(qint64 round, std::size_t slot)
{
    const QString half = QStringLiteral("%1:%2:").arg(round).arg(slot).repeated(int(round % 7) + 1);
    return half + QLatin1Char('|') + half;
}

bool wellFormed(const QString& text)
{
    const qsizetype bar = text.indexOf(QLatin1Char('|'));
    return bar > 0 && text.left(bar) == text.mid(bar + 1);
}

TEST(JobProgress, ReaderSeesWholeTextsWhileTheWriterRuns)
{
    constexpr qint64 kRounds = 50000;
    JobProgress progress;
    std::atomic<bool> writing { true };

    std::jthread writer([&] {
        for (qint64 round = 1; round <= kRounds; ++round) {
            progress.setJobBytes(round, kRounds);
            progress.setFileBytes(round % 1000, 1000);
            progress.setJobBar(progress.barPosition(round, kRounds));
            for (std::size_t i = 0; i < JobProgress::kTextCount; ++i)
                progress.setText(static_cast<Text>(i), stamped(round, i));
        }
        writing.store(false);
    });

    qint64 reads = 0;
    qint64 lastDone = 0;
    int lastBar = 0;
    bool readAfterEnd = false;
    while (!readAfterEnd) {
        readAfterEnd = !writing.load();
        const auto s = progress.snapshot();
        ++reads;
        ASSERT_GE(s.jobDone, lastDone);
        ASSERT_GE(s.jobBar, lastBar);
        lastDone = s.jobDone;
        lastBar = s.jobBar;
        for (std::size_t i = 0; i < JobProgress::kTextCount; ++i) {
            const QString& text = s.texts[i];
            ASSERT_TRUE(text.isEmpty() || wellFormed(text)) << text.toStdString();
            ASSERT_TRUE(text.isEmpty() || text.section(QLatin1Char(':'), 1, 1).toULongLong() == i)
                << text.toStdString();
        }
    }
    writer.join();
    EXPECT_GT(reads, 0);

    const auto last = progress.snapshot();
    EXPECT_EQ(last.jobDone, kRounds);
    EXPECT_EQ(last.jobTotal, kRounds);
    EXPECT_EQ(last.fileDone, kRounds % 1000);
    EXPECT_EQ(last.jobBar, 100);
    for (std::size_t i = 0; i < JobProgress::kTextCount; ++i)
        EXPECT_EQ(last.texts[i], stamped(kRounds, i));
    EXPECT_EQ(last.text(Text::Status), stamped(kRounds, JobProgress::kTextCount - 1));
}

} // namespace
} // namespace zelto
