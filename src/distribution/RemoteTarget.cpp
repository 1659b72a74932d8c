#include "RemoteTarget.h"

#include "distribution/EngineRun.h"
#include "distribution/RemotePlacement.h"
#include "ftp/CTransferSession.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

namespace zelto {

RemoteTarget::RemoteTarget(CTransferSession& session, EngineRun& run, bool overwriteAllowed)
    : session_(session)
    , run_(run)
    , overwriteAllowed_(overwriteAllowed)
    , finder_(*session.connection(), run.startFolder())
{
}

void RemoteTarget::send(FileEntry& entry, const QString& sourcePath, const QString& name,
    const QString& from, const Transfer& transfer)
{
    const auto placement
        = RemotePlacement::onServer(entry.localFolder, entry.remoteFolder, name, run_.mode());
    run_.showPaths(sourcePath, placement.path);

    for (const auto& step : placement.folders) {
        const auto outcome = finder_.ensureFolder(step);
        if (outcome.made)
            run_.log(ids::kLogMakeDirectoryOk, run_.host(), step.path);
        if (!outcome.result.ok()) {
            run_.log(ids::kLogMakeDirectoryFailed, run_.host(), step.path, placement.path,
                outcome.result.text());
            run_.fileFailed(
                entry, ids::kCannotCreateFolder, StringTable::text(ids::kCannotCreateFolder));
            return;
        }
    }

    if (!overwriteAllowed_ && finder_.contains(placement.folder, name)) {
        run_.fileFailed(entry, ids::kCannotOverwrite, StringTable::text(ids::kCannotOverwrite));
        return;
    }

    const auto sent = transfer(placement.path);
    if (sent.ok()) {
        finder_.stored(placement.folder, name);
        run_.log(ids::kLogFtpTransferComplete, from, run_.host(), placement.path);
        run_.fileSent(entry);
        return;
    }
    finder_.forget(placement.folder);
    // A resend goes where this attempt went.
    const auto folder = placement.path.chopped(name.size());
    entry.remoteFolder = folder.isEmpty() ? session_.connection()->currentFolder() : folder;
    run_.fileFailed(entry, sent.code, sent.text());
}

} // namespace zelto
