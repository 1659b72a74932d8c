#pragma once

#include "distribution/FileEntry.h"
#include "ftp/JobSite.h"

#include <vector>

namespace zelto {

// Where the end of each site's job reports its files: the queue's bookkeeping, which logs what
// failed and may queue it again. Called on the job's worker thread.
class JobOutcomeSink {
public:
    virtual ~JobOutcomeSink() = default;
    // One site of a distribution (Send Parallel, Send Serial, a link) has ended.
    virtual void siteFinished(const JobSite& site, const std::vector<FileEntry>& files) = 0;
};

} // namespace zelto
