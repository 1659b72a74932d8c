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
    sounds_.emplace(session_.reporter().services().sounds);
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
    source_ = &source;
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

void EngineRun::sendEach(std::vector<FileEntry>& files, const std::function<void(FileEntry&)>& send)
{
    for (auto entry = files.begin(); entry != files.end() && !stopRequested(); ++entry) {
        if (const auto lost = lostConnection()) {
            for (; entry != files.end(); ++entry) {
                entry->result = lost->code;
                entry->message = lost->text();
            }
            break;
        }
        // Until the file's outcome: which file of how many is under way.
        session_.reporter().setStatus(QStringLiteral("File %1 of %2: %3")
                                          .arg(entry - files.begin() + 1)
                                          .arg(files.size())
                                          .arg(entry->localName));
        send(*entry);
    }
    sounds_->runEnded();
}

bool EngineRun::stopRequested() const
{
    return (options_.cancelJob && options_.cancelJob->load())
        || session_.stopToken().stop_requested();
}

std::optional<FtpResult> EngineRun::lostConnection() const
{
    for (const CTransferSession* session : { source_, &session_ }) {
        if (session && session->connection() && session->connection()->lost())
            return session->connection()->lost();
    }
    return std::nullopt;
}

void EngineRun::showPaths(const QString& localPath, const QString& remotePath) const
{
    if (auto* progress = session_.reporter().progress()) {
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
    session_.reporter().services().log.write(event);
}

void EngineRun::fileSent(FileEntry& entry)
{
    entry.result = FileEntry::kSent;
    entry.message.clear();
    entry.transferred = entry.size;
    sounds_->fileDone(true);
}

void EngineRun::fileFailed(FileEntry& entry, int code, const QString& message)
{
    entry.result = code;
    entry.message = message;
    entry.transferred = 0;
    session_.reporter().setStatus(message);
    sounds_->fileDone(false);
}

} // namespace zelto
