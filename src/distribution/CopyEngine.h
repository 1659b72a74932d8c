#pragma once

#include "distribution/EngineOptions.h"
#include "distribution/FileEntry.h"
#include "ftp/FtpResult.h"
#include "ftp/JobSite.h"

#include <vector>

namespace zelto {

class CTransferSession;

// The copy engine of one job, from one server to another (or to the same server over a second
// login): connects `source` to `sourceSite`, then `target` to `targetSite`, each with its own log
// events and sounds, and copies the files in order through copyFile. Each entry names its source
// by its local folder and name (a folder of the source server; empty: the source connection's
// folder) and its target by its remote folder and name (empty: the target connection's folder).
// FTPDirTree re-creates the source folder on the target as a put re-creates a local folder, and
// the missing target folders are made; names are not shortened. Logs ids::kLogMakeDirectoryOk and
// ids::kLogMakeDirectoryFailed (target folders) and ids::kLogFtpTransferComplete (each file copied)
// and plays the transfer sounds.
//
// Returns success when both connected and it went through the files, otherwise the first connect
// that failed (nothing is then copied). The caller disconnects both sessions.
[[nodiscard]] FtpResult runCopyEngine(CTransferSession& source, CTransferSession& target,
    const JobSite& sourceSite, const JobSite& targetSite, std::vector<FileEntry>& files,
    const EngineOptions& options);

} // namespace zelto
