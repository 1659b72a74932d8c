#include "ProfileSite.h"

#include "profiles/StoredFormats.h"

namespace zelto {

JobSite jobSiteOf(const SiteRecord& record, const QString& name)
{
    JobSite site;
    site.server = record.host;
    site.name = name;
    site.user = record.user;
    site.password = record.password;
    site.port = quint16(record.port);
    site.remoteFolder = record.remotePath;
    return site;
}

JobSite jobSiteOfProfile(const QString& path)
{
    // Read as the sites list of the Multiple FTP Put screen reads it, so both log in alike.
    return jobSiteOf(
        SiteProfile::readSite(path, profilefile::kTargetListBuffer), SiteProfile::nameOf(path));
}

} // namespace zelto
