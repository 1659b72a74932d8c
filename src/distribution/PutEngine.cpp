#include "PutEngine.h"

#include "distribution/EngineRun.h"
#include "distribution/RemotePlacement.h"
#include "distribution/RemoteTarget.h"
#include "ftp/TransferRoutines.h"

namespace zelto {

FtpResult runPutEngine(CTransferSession& session, const JobSite& site,
    std::vector<FileEntry>& files, const EngineOptions& options)
{
    EngineRun run(session, options);
    if (auto connected = run.connect(site, files); !connected.ok())
        return connected;
    RemoteTarget target(session, run, options.overwriteAllowed);
    run.sendEach(files, [&](FileEntry& entry) {
        const auto localPath = RemotePlacement::localPath(entry.localFolder, entry.localName);
        const auto name
            = run.shortNames() ? RemotePlacement::shortName(entry.remoteName) : entry.remoteName;
        target.send(entry, localPath, name, run.localMachine(), [&](const QString& remotePath) {
            return putFile(session,
                { .from = localPath,
                    .to = remotePath,
                    .size = entry.size,
                    .jobStart = run.jobStart(),
                    .keepSource = options.keepSource });
        });
    });
    return FtpResult::success();
}

} // namespace zelto
