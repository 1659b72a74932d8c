#pragma once

#include "ftp/TransferRoutines.h"

#include <atomic>

namespace zelto {

// How the caller runs an engine over one site's files.
struct EngineOptions {
    // Whether an existing target file may be replaced (see overwriteSetting()).
    bool overwriteAllowed = false;
    // A selection sent with its folder: FTPDirTree "NO_PATH" places files as "LAST_DIR".
    bool keepFolder = false;
    // Put: the local file stays after DeletePut. True for a distribution, whose other sites
    // still need the file; false only for a put of the browser's selection.
    bool keepSource = true;
    // The job's cancel-this-job flag: the run stops before the next file once it is set.
    const std::atomic<bool>* cancelJob = nullptr;
    // When the job began, for its rate and time left; none: the start of the engine's run.
    JobStart jobStart;

    // Overwrite in CONFIG: allowed for any value other than "NO". The window reads it when the
    // job starts.
    [[nodiscard]] static bool overwriteSetting();
};

} // namespace zelto
