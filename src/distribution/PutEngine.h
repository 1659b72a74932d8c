#pragma once

#include "distribution/EngineOptions.h"
#include "distribution/FileEntry.h"
#include "ftp/FtpResult.h"
#include "ftp/JobSite.h"

#include <vector>

namespace zelto {

class CTransferSession;

// The put engine of one site: connects `session` to `site`, then sends the files in order, each
// placed by FTPDirTree and RenameLongFileNames under its remote folder (the connection's folder
// when the entry has none), making the missing remote folders. Every file's outcome lands in its
// entry: result, message, and for a failed transfer the folder it was meant for, so that a later
// resend goes to the same place. Logs ids::kLogMakeDirectoryOk and ids::kLogMakeDirectoryFailed
// (folders) and ids::kLogFtpTransferComplete (each file sent) and plays the transfer sounds; failed
// files are the bookkeeping's to log.
//
// Returns success when it connected and went through the files, whose own results tell how each
// went; otherwise the failed connect (the files then stay not tried, with the connect's text as
// their message). The caller disconnects.
[[nodiscard]] FtpResult runPutEngine(CTransferSession& session, const JobSite& site,
    std::vector<FileEntry>& files, const EngineOptions& options);

} // namespace zelto
