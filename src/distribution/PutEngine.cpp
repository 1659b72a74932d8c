#include "PutEngine.h"

#include "distribution/EngineRun.h"
#include "distribution/RemotePlacement.h"
#include "distribution/RemoteTarget.h"
#include "ftp/TransferRoutines.h"

namespace zelto {

int runPutEngine(CTransferSession& session, const JobSite& site, std::vector<FileEntry>& files,
    const EngineOptions& options)
{
    EngineRun run(session, options);
    if (const auto connected = run.connect(site, files); !connected.ok())
        return connected.code;
    RemoteTarget target(session, run, options.overwriteAllowed);
    for (auto& entry : files) {
        if (run.stopRequested())
            break;
        const auto localPath = RemotePlacement::localPath(entry.localFolder, entry.localName);
        const auto name
            = run.shortNames() ? RemotePlacement::shortName(entry.remoteName) : entry.remoteName;
        target.send(entry, localPath, name, run.localMachine(), [&](const QString& remotePath) {
            return putFile(session, localPath, remotePath, true, entry.size, run.jobStart(),
                options.keepSource);
        });
    }
    run.finish();
    return kEngineRan;
}

} // namespace zelto
