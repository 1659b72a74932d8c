#include "GetEngine.h"

#include "distribution/EngineRun.h"
#include "distribution/RemotePlacement.h"
#include "ftp/CTransferSession.h"
#include "ftp/TransferRoutines.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace zelto {
namespace {

// A name that stays inside the folder it is joined to.
bool staysInside(const QString& name)
{
    return !name.isEmpty() && name != u"." && name != u".." && !name.contains(u'/')
        && !name.contains(u'\\');
}

void fetch(
    CTransferSession& session, EngineRun& run, const EngineOptions& options, FileEntry& entry)
{
    const auto remotePath = RemotePlacement::remotePath(entry.remoteFolder, entry.remoteName);
    const auto placement = RemotePlacement::onDisk(
        entry.remoteFolder, entry.localFolder, entry.localName, run.mode());
    run.showPaths(placement.path, remotePath);

    const bool inside = staysInside(entry.localName) && staysInside(entry.remoteName)
        && std::all_of(placement.folders.begin(), placement.folders.end(),
            [](const FolderStep& step) { return staysInside(step.name); });
    if (!inside) {
        const auto refused = FtpResult::localFailure(LocalFileError::BadPath, remotePath,
            QStringLiteral("the name would lead out of the local folder"));
        run.fileFailed(entry, refused.code, refused.text());
        return;
    }

    for (const auto& step : placement.folders) {
        if (QFileInfo(step.path).isDir())
            continue;
        if (!QDir(step.parent.isEmpty() ? QStringLiteral(".") : step.parent).mkdir(step.name)) {
            run.log(ids::kLogMakeDirectoryFailed, run.localMachine(), step.path, placement.path);
            run.fileFailed(
                entry, ids::kCannotCreateFolder, StringTable::text(ids::kCannotCreateFolder));
            return;
        }
        run.log(ids::kLogMakeDirectoryOk, run.localMachine(), step.path);
    }

    if (!options.overwriteAllowed && QFileInfo::exists(placement.path)) {
        run.fileFailed(entry, ids::kCannotOverwrite, StringTable::text(ids::kCannotOverwrite));
        return;
    }

    const auto fetched = getFile(session,
        { .from = remotePath,
            .to = placement.path,
            .size = entry.size,
            .jobStart = run.jobStart() });
    if (!fetched.ok()) {
        run.fileFailed(entry, fetched.code, fetched.text());
        return;
    }
    run.log(ids::kLogFtpTransferComplete, run.host(), run.localMachine(), placement.path);
    run.fileSent(entry);
}

} // namespace

FtpResult runGetEngine(CTransferSession& session, const JobSite& site,
    std::vector<FileEntry>& files, const EngineOptions& options)
{
    EngineRun run(session, options);
    if (auto connected = run.connect(site, files); !connected.ok())
        return connected;
    run.sendEach(files, [&](FileEntry& entry) { fetch(session, run, options, entry); });
    return FtpResult::success();
}

} // namespace zelto
