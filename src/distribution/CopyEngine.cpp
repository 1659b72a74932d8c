#include "CopyEngine.h"

#include "distribution/EngineRun.h"
#include "distribution/RemotePlacement.h"
#include "distribution/RemoteTarget.h"
#include "ftp/TransferRoutines.h"

namespace zelto {

int runCopyEngine(CTransferSession& source, CTransferSession& target, const JobSite& sourceSite,
    const JobSite& targetSite, std::vector<FileEntry>& files, const EngineOptions& options)
{
    // The run belongs to the target: its folders, its finder, its name in the log.
    EngineRun run(target, options);
    if (const auto connected = run.connect(source, sourceSite, targetSite, files); !connected.ok())
        return connected.code;
    RemoteTarget to(target, run, options.overwriteAllowed);
    for (auto& entry : files) {
        if (run.stopRequested())
            break;
        const auto sourcePath = RemotePlacement::remotePath(entry.localFolder, entry.localName);
        to.send(
            entry, sourcePath, entry.remoteName, sourceSite.server, [&](const QString& targetPath) {
                return copyFile(source, target, sourcePath, targetPath, entry.size, run.jobStart());
            });
    }
    run.finish();
    return kEngineRan;
}

} // namespace zelto
