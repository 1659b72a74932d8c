#include "PutEngine.h"

#include "distribution/EngineRun.h"
#include "distribution/RemoteFinder.h"
#include "distribution/RemotePlacement.h"
#include "ftp/CTransferSession.h"
#include "ftp/TransferRoutines.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

namespace zelto {
namespace {

class PutRun final {
public:
    PutRun(CTransferSession& session, EngineRun& run, const EngineOptions& options)
        : session_(session)
        , run_(run)
        , options_(options)
        , finder_(*session.connection(), run.startFolder())
    {
    }

    void send(FileEntry& entry)
    {
        const auto localPath = RemotePlacement::localPath(entry.localFolder, entry.localName);
        const auto name
            = run_.shortNames() ? RemotePlacement::shortName(entry.remoteName) : entry.remoteName;
        const auto placement
            = RemotePlacement::onServer(entry.localFolder, entry.remoteFolder, name, run_.mode());
        run_.showPaths(localPath, placement.path);

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

        if (!options_.overwriteAllowed && finder_.contains(placement.folder, name)) {
            run_.fileFailed(entry, ids::kCannotOverwrite, StringTable::text(ids::kCannotOverwrite));
            return;
        }

        const auto sent = putFile(session_, localPath, placement.path, true, entry.size,
            run_.jobStart(), options_.keepSource);
        if (sent.ok()) {
            finder_.stored(placement.folder, name);
            run_.log(
                ids::kLogFtpTransferComplete, run_.localMachine(), run_.host(), placement.path);
            run_.fileSent(entry);
            return;
        }
        finder_.forget(placement.folder);
        // A resend goes where this attempt went.
        const auto folder = placement.path.chopped(name.size());
        entry.remoteFolder = folder.isEmpty() ? session_.connection()->currentFolder() : folder;
        run_.fileFailed(entry, sent.code, sent.text());
    }

private:
    CTransferSession& session_;
    EngineRun& run_;
    const EngineOptions& options_;
    RemoteFinder finder_;
};

} // namespace

int runPutEngine(CTransferSession& session, const JobSite& site, std::vector<FileEntry>& files,
    const EngineOptions& options)
{
    EngineRun run(session, options);
    if (const auto connected = run.connect(site, files); !connected.ok())
        return connected.code;
    PutRun put(session, run, options);
    for (auto& entry : files) {
        if (run.stopRequested())
            break;
        put.send(entry);
    }
    run.finish();
    return kEngineRan;
}

} // namespace zelto
