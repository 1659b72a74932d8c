#include "LinkRun.h"

#include "profiles/FileList.h"
#include "profiles/LinkFile.h"
#include "profiles/NameCasing.h"
#include "profiles/StoredFormats.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>
#include <QSet>

namespace zelto {
LinkPlan LinkRun::prepare(const QString& name)
{
    const QString casing = SettingsStore::get(settings::config::kFileCasingPut);
    const Link link = LinkFile::read(DataFolders::linkFile(name));
    LinkPlan plan;
    QSet<QString> taken;
    for (FileListEntry entry : FileList::readStored(link.files)) {
        const QString path = entry.localPath();
        const QFileInfo info(path);
        if (!info.isFile() || taken.contains(path))
            continue;
        taken.insert(path);
        entry.status = -1;
        entry.size = info.size();
        entry.lastWrite = info.lastModified().toMSecsSinceEpoch();
        entry.remoteName
            = casedName(entry.remoteName.isEmpty() ? entry.localName : entry.remoteName, casing);
        plan.totalBytes += entry.size;
        plan.files.push_back(std::move(entry));
    }
    for (const LinkSite& site : link.sites) {
        plan.sites.push_back(SiteProfile::readSite(site.profile, linkfile::kValueBuffer));
        plan.siteNames.push_back(SiteProfile::nameOf(site.profile));
    }
    return plan;
}

} // namespace zelto
