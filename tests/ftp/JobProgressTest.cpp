#include "ftp/JobProgress.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace zelto {
namespace {

using Text = JobProgress::Text;

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
        EXPECT_EQ(last.text(Text(i)), stamped(kRounds, i));
}

} // namespace
} // namespace zelto
