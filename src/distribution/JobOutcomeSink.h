#pragma once

#include "distribution/FileEntry.h"
#include "distribution/TransferMode.h"
#include "ftp/JobSite.h"

#include <vector>

namespace zelto {

// How one site of a job ended, as the queue's bookkeeping reads it.
struct SiteOutcome {
    TransferMode mode;
    const JobSite& site;
    // The second server of a copy (the files' destination); none for other modes.
    const JobSite* target;
    const std::vector<FileEntry>& files;
};

// Where the end of each site's job reports its files: the queue's bookkeeping, which logs what
// failed and may queue it again. Called on the job's worker thread. A job that must leave the
// queue alone is given a sink that records nothing.
class JobOutcomeSink {
public:
    virtual ~JobOutcomeSink() = default;
    virtual void siteFinished(const SiteOutcome& outcome) = 0;
};

} // namespace zelto
