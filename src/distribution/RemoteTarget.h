#pragma once

#include "distribution/FileEntry.h"
#include "distribution/RemoteFinder.h"
#include "ftp/FtpResult.h"

#include <QString>

#include <functional>

namespace zelto {

class CTransferSession;
class EngineRun;

// The server end of a put or a copy: where each file lands under FTPDirTree, the folders it
// needs, the overwrite rule, and what the transfer's outcome leaves in the entry. The folder that
// FTPDirTree re-creates is the entry's local folder: a folder of this machine for a put, of the
// source server for a copy.
class RemoteTarget final {
public:
    // Moves the file to `targetPath` on the run's server.
    using Transfer = std::function<FtpResult(const QString& targetPath)>;

    // `session` is the run's, connected.
    RemoteTarget(CTransferSession& session, EngineRun& run, bool overwriteAllowed);
    RemoteTarget(const RemoteTarget&) = delete;
    RemoteTarget& operator=(const RemoteTarget&) = delete;

    // Places `entry` as `name` under its remote folder, shows `sourcePath` beside the target,
    // makes the missing folders (ids::kLogMakeDirectoryOk; ids::kLogMakeDirectoryFailed and
    // ids::kCannotCreateFolder when one cannot be made), refuses an existing file with
    // ids::kCannotOverwrite when overwriting is forbidden, and otherwise runs `transfer`. Sent:
    // ids::kLogFtpTransferComplete with `from` and the target path. Failed: the entry keeps the
    // code, the text and the folder the file was meant for, so that a resend goes to the same
    // place.
    void send(FileEntry& entry, const QString& sourcePath, const QString& name, const QString& from,
        const Transfer& transfer);

private:
    CTransferSession& session_;
    EngineRun& run_;
    bool overwriteAllowed_;
    RemoteFinder finder_;
};

} // namespace zelto
