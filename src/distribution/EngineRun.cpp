#include "EngineRun.h"

#include "ftp/CTransferSession.h"
#include "ftp/JobProgress.h"
#include "ftp/JobServices.h"
#include "log/LogSink.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

namespace zelto {
namespace {

// Connects `session`; on failure every file keeps the connect's text as the reason it was not
// sent.
FtpResult connectFor(CTransferSession& session, const JobSite& site, std::vector<FileEntry>& files)
{
    auto connected = session.connectJob(site);
    if (!connected.ok()) {
        const auto text = connected.text();
        for (auto& entry : files)
            entry.message = text;
    }
    return connected;
}

} // namespace

EngineRun::EngineRun(CTransferSession& session, const EngineOptions& options)
    : session_(session), options_(options), localMachine_(StringTable::text(ids::kLocalMachine))
{
}

FtpResult EngineRun::connect(const JobSite& site, std::vector<FileEntry>& files)
{
    host_ = site.server;
    auto connected = connectFor(session_, site, files);
    if (!connected.ok())
        return connected;
    mode_ = RemotePlacement::dirTreeSetting(options_.keepFolder);
    shortNames_ = RemotePlacement::shortNamesSetting();
    sounds_.emplace(session_.services().sounds);
    // A file without a folder goes to the connection's folder; its entry says so from the start,
    // so that a file the run never reaches is logged and queued with its folder as well.
    startFolder_ = session_.connection()->currentFolder();
    for (auto& entry : files)
        if (entry.remoteFolder.isEmpty())
            entry.remoteFolder = startFolder_;
    jobStart_ = options_.jobStart.value_or(RunningTime::Clock::now());
    return connected;
}

FtpResult EngineRun::connect(CTransferSession& source, const JobSite& sourceSite,
    const JobSite& site, std::vector<FileEntry>& files)
{
    if (auto connected = connectFor(source, sourceSite, files); !connected.ok())
        return connected;
    // Said from the start, as for the target's folder: the bookkeeping keeps where each file
    // came from.
    const auto sourceFolder = source.connection()->currentFolder();
    for (auto& entry : files)
        if (entry.localFolder.isEmpty())
            entry.localFolder = sourceFolder;
    return connect(site, files);
}

bool EngineRun::stopRequested() const
{
    return (options_.cancelJob && options_.cancelJob->load())
        || session_.stopToken().stop_requested();
}

void EngineRun::showPaths(const QString& localPath, const QString& remotePath) const
{
    if (auto* progress = session_.progress()) {
        progress->setText(JobProgress::Text::LocalPath, localPath);
        progress->setText(JobProgress::Text::RemotePath, remotePath);
    }
}

void EngineRun::log(int messageId, const QString& field1, const QString& field2,
    const QString& field3, const QString& detail) const
{
    LogEvent event;
    event.messageId = messageId;
    event.field1 = field1;
    event.field2 = field2;
    event.field3 = field3;
    event.detail = detail;
    session_.services().log.write(event);
}

void EngineRun::fileSent(FileEntry& entry)
{
    entry.result = FileEntry::kSent;
    entry.message.clear();
    entry.transferred = entry.size;
    showStatus(StringTable::text(ids::kLogFtpTransferComplete));
    sounds_->fileDone(true);
}

void EngineRun::fileFailed(FileEntry& entry, int code, const QString& message)
{
    entry.result = code;
    entry.message = message;
    entry.transferred = 0;
    showStatus(message);
    sounds_->fileDone(false);
}

void EngineRun::finish()
{
    sounds_->runEnded();
}

void EngineRun::showStatus(const QString& text) const
{
    if (auto* progress = session_.progress())
        progress->setText(JobProgress::Text::Status, text);
}

} // namespace zelto
