#pragma once

#include "distribution/EngineOptions.h"
#include "distribution/FileEntry.h"
#include "ftp/FtpResult.h"
#include "ftp/JobSite.h"

#include <vector>

namespace zelto {

class CTransferSession;

// The get engine of one site, the mirror of the put engine: connects `session` to `site`, then
// fetches each entry's remote file (remote folder and remote name; the connection's folder when
// the entry has none) into its local folder, where FTPDirTree re-creates the last or every part
// of the remote folder. A name that could lead out of the local folder (one with "/" or "\", or
// "." or "..", as a lying listing may give) is refused for that file and nothing is written.
// Logs ids::kLogMakeDirectoryOk and ids::kLogMakeDirectoryFailed (local folders) and
// ids::kLogFtpTransferComplete (each file fetched) and plays the transfer sounds.
//
// Returns success when it connected and went through the files, otherwise the failed connect.
// The caller disconnects.
[[nodiscard]] FtpResult runGetEngine(CTransferSession& session, const JobSite& site,
    std::vector<FileEntry>& files, const EngineOptions& options);

} // namespace zelto
