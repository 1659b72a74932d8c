#include "SessionReporter.h"

#include "ftp/JobProgress.h"
#include "ftp/JobServices.h"
#include "ftp/JobSite.h"
#include "log/LogSink.h"
#include "options/SoundSink.h"
#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "settings/SettingsStore.h"

#include <QDir>

namespace zelto {

SessionReporter::SessionReporter(JobServices& services, JobProgress* progress)
    : services_(services), progress_(progress)
{
}

SessionReporter::~SessionReporter()
{
    setTray(TrayState::Idle);
}

void SessionReporter::log(int messageId, const QString& field2, const QString& detail) const
{
    LogEvent event;
    event.messageId = messageId;
    event.field1 = server_;
    event.field2 = field2;
    event.detail = detail;
    services_.log.write(event);
}

void SessionReporter::logDeletion(
    const QString& path, const QString& machine, const FtpResult& removed) const
{
    LogEvent event;
    event.messageId = removed.ok() ? ids::kLogDeletionOk : ids::kLogDeletionFailed;
    event.field1 = path;
    event.field2 = machine;
    event.detail = removed.text();
    services_.log.write(event);
}

void SessionReporter::play(SoundEvent event) const
{
    services_.sounds.play(event);
}

void SessionReporter::showStop(const FtpResult& result) const
{
    services_.notifier.showMessage(result.message(), MessageIcon::Stop);
}

void SessionReporter::setStatus(const QString& text) const
{
    if (progress_)
        progress_->setText(JobProgress::Text::Status, text);
}

void SessionReporter::setTray(TrayState state)
{
    if (tray_ == state)
        return;
    tray_ = state;
    services_.tray.setState(state);
}

void SessionReporter::clearProgress() const
{
    if (!progress_)
        return;
    for (const auto text : { JobProgress::Text::JobBytes, JobProgress::Text::JobRate,
             JobProgress::Text::JobTimeLeft, JobProgress::Text::FileBytes,
             JobProgress::Text::FileRate, JobProgress::Text::FileTimeLeft })
        progress_->setText(text, {});
    progress_->setJobBar(0);
    progress_->setFileBar(0);
}

void SessionReporter::startBatch(qint64 total)
{
    batchTotalBytes_ = total;
    batchDoneBytes_ = 0;
    if (!progress_)
        return;
    progress_->setCountsUp(true);
    progress_->setJobBytes(0, total);
    progress_->setJobBar(progress_->barPosition(0, total));
}

RunningTime& SessionReporter::runningTime(RunningTime::Clock::time_point jobStart)
{
    if (!runningTime_ || runningTime_->jobStart() != jobStart)
        runningTime_.emplace(jobStart);
    return *runningTime_;
}

void SessionReporter::keepQuickConnect(const JobSite& site) const
{
    using namespace settings::ftp;
    const bool kept = SettingsStore::setAll({ { kQuickServer, site.server },
        { kQuickLogin, site.user }, { kQuickPasswd, site.password },
        { kQuickDirec, site.remoteFolder }, { kQuickPort, QString::number(site.port) } });
    if (!kept)
        services_.notifier.showMessage(
            QStringLiteral("The connection values could not be kept for the next time in %1.")
                .arg(QDir::toNativeSeparators(SettingsStore::location())),
            MessageIcon::Warning);
}

} // namespace zelto
