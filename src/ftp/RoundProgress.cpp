#include "RoundProgress.h"

#include "ftp/JobProgress.h"
#include "ftp/ProgressText.h"
#include "ftp/SessionReporter.h"
#include "ftp/TransferCounters.h"

namespace zelto {
namespace {

using Text = JobProgress::Text;

constexpr qint64 kRateRounds = 5; // rates and times left need a division and a float format

bool due(
    const std::optional<RunningTime::Clock::time_point>& shown, RunningTime::Clock::time_point now)
{
    return !shown || now - *shown >= RoundProgress::kTextInterval;
}

void showRate(
    JobProgress& progress, Text rate, Text left, qint64 done, qint64 total, qint64 elapsed)
{
    progress.setText(rate, ProgressText::rateText(ProgressText::rateKbs(done, elapsed)));
    progress.setText(
        left, ProgressText::timeLeftText(ProgressText::remainingSeconds(total, done, elapsed)));
}

} // namespace

RoundProgress::RoundProgress(SessionReporter& reporter, qint64 fileSize,
    std::optional<Clock::time_point> jobStart, Total total, Clock::time_point fileStart)
    : reporter_(reporter)
    , fileSize_(fileSize)
    , jobStart_(jobStart)
    , fileStart_(fileStart)
    , total_(total)
{
    if (jobStart_)
        runningTime_ = &reporter_.runningTime(*jobStart_);
}

void RoundProgress::start()
{
    if (auto* progress = reporter_.progress()) {
        progress->setFileBar(progress->barPosition(0, fileSize_));
        progress->setFileBytes(0, fileSize_);
        progress->setText(Text::FileBytes, ProgressText::bytesText(0, fileSize_));
        progress->setText(Text::FileRate, {});
        progress->setText(Text::FileTimeLeft, {});
    }
}

void RoundProgress::round(qint64 bytes, Clock::time_point now)
{
    moved_ += bytes;
    if (auto* progress = reporter_.progress()) {
        const qint64 total = reporter_.batchTotalBytes();
        if (total > 0)
            reporter_.addBatchDoneBytes(bytes);
        const qint64 done = reporter_.batchDoneBytes();
        progress->setJobBytes(done, total);
        progress->setFileBytes(moved_, fileSize_);
        if (total > 0) {
            progress->setJobBar(progress->barPosition(done, total));
            progress->setFileBar(progress->barPosition(moved_, fileSize_));
        }
        bytesPending_ = true;
        if (due(bytesShown_, now)) {
            showBytes();
            bytesShown_ = now;
        }
        if (rounds_ % kRateRounds == 0 && due(ratesShown_, now)) {
            showRates(now);
            ratesShown_ = now;
        }
    }

    ++rounds_;
    if (runningTime_) {
        const int seconds = runningTime_->advance(now);
        auto& counters = TransferCounters::instance();
        if (total_ == Total::Copy)
            counters.addCopySeconds(seconds);
        else
            counters.addTransferSeconds(seconds);
    }
}

void RoundProgress::finish(Clock::time_point now)
{
    if (!reporter_.progress() || !bytesPending_)
        return;
    showBytes();
    showRates(now);
}

void RoundProgress::showBytes()
{
    auto& progress = *reporter_.progress();
    progress.setText(Text::JobBytes,
        ProgressText::bytesText(reporter_.batchDoneBytes(), reporter_.batchTotalBytes()));
    progress.setText(Text::FileBytes, ProgressText::bytesText(moved_, fileSize_));
    bytesPending_ = false;
}

void RoundProgress::showRates(Clock::time_point now)
{
    auto& progress = *reporter_.progress();
    if (jobStart_)
        showRate(progress, Text::JobRate, Text::JobTimeLeft, reporter_.batchDoneBytes(),
            reporter_.batchTotalBytes(), RunningTime::rateSeconds(*jobStart_, now));
    showRate(progress, Text::FileRate, Text::FileTimeLeft, moved_, fileSize_,
        RunningTime::rateSeconds(fileStart_, now));
}

} // namespace zelto
