#include "CopyEngine.h"

#include "distribution/EngineRun.h"
#include "distribution/RemotePlacement.h"
#include "distribution/RemoteTarget.h"
#include "ftp/TransferRoutines.h"

namespace zelto {

FtpResult runCopyEngine(CTransferSession& source, CTransferSession& target,
    const JobSite& sourceSite, const JobSite& targetSite, std::vector<FileEntry>& files,
    const EngineOptions& options)
{
    // The run belongs to the target: its folders, its finder, its name in the log.
    EngineRun run(target, options);
    if (auto connected = run.connect(source, sourceSite, targetSite, files); !connected.ok())
        return connected;
    RemoteTarget to(target, run, options.overwriteAllowed);
    run.sendEach(files, [&](FileEntry& entry) {
        const auto sourcePath = RemotePlacement::remotePath(entry.localFolder, entry.localName);
        to.send(
            entry, sourcePath, entry.remoteName, sourceSite.server, [&](const QString& targetPath) {
                return copyFile(source, target,
                    { .from = sourcePath,
                        .to = targetPath,
                        .size = entry.size,
                        .jobStart = run.jobStart() });
            });
    });
    return FtpResult::success();
}

} // namespace zelto
