#pragma once

#include "ftp/JobSite.h"
#include "profiles/SiteProfile.h"

namespace zelto {

// The server of a stored site profile, as a job logs in to it; `name` is the profile's, for the
// windows' titles.
JobSite jobSiteOf(const SiteRecord& record, const QString& name);

// The site of the profile file `path`.
JobSite jobSiteOfProfile(const QString& path);

} // namespace zelto
