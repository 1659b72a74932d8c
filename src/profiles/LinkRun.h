#pragma once

#include "profiles/FileListEntry.h"
#include "profiles/SiteProfile.h"

#include <QString>

#include <vector>

namespace zelto {

// What a link hands to the distribution: the files to send, each once, with their total, and
// the sites to send them to.
struct LinkPlan {
    std::vector<FileListEntry> files;
    qint64 totalBytes = 0;
    std::vector<SiteRecord> sites;
    std::vector<QString> siteNames; // each site's profile name, in the order of `sites`
};

// Prepares the run of a link (from the menu, the scheduler, a script or the command line); the
// transfers themselves are the distribution's work.
class LinkRun final {
public:
    LinkRun() = delete;

    // Reads link `name` of the "Links" folder. Files: the entries of its list that exist on disk
    // as files (folders and missing files are skipped), each full path once, in list order, with
    // status -1, the size and time found on disk, and the remote name (the local name when none
    // is stored) in the case that FileCasingPut asks for. Sites: each profile the link names, read
    // as a link reads (texts cut at 126 characters, port 21 when missing); a missing profile is a
    // site with empty texts. A missing link or list gives no files.
    [[nodiscard]] static LinkPlan prepare(const QString& name);
};

} // namespace zelto
