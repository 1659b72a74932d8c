#include "LinkUpkeep.h"

#include "platform/IniDocument.h"
#include "platform/Paths.h"
#include "platform/PrivateProfile.h"
#include "profiles/LinkFile.h"
#include "profiles/ProfileEvents.h"
#include "profiles/StoredFormats.h"

#include <QFile>

#include <functional>
#include <optional>

namespace zelto {
namespace {

using namespace linkfile;

bool sameIgnoringCase(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) == 0;
}

QString withSeparator(const QString& folder)
{
    return joinPath(folder, QString());
}

// Whether the path lies in the folder, compared upper-cased. An empty folder holds nothing.
bool inFolder(const QString& path, const QString& folderUpper)
{
    return !folderUpper.isEmpty() && path.toUpper().contains(folderUpper);
}

// Rewrites the site paths for which `change` gives a new value, in one rewrite per link.
void changeSites(bool withSubFolders,
    const std::function<std::optional<QString>(const QString&)>& change, ProfileEvents& events)
{
    for (const QString& file : LinkFile::linkFiles(withSubFolders)) {
        std::vector<LinkSite> changed;
        for (const LinkSite& site : LinkFile::read(file).sites) {
            if (const auto value = change(site.profile))
                changed.push_back({ site.number, *value });
        }
        if (changed.empty())
            continue;
        PrivateProfile::update(file, [&](IniDocument& document) {
            for (const LinkSite& site : changed)
                document.setValue(QLatin1String(kSiteSectionPrefix) + QString::number(site.number),
                    QLatin1String(kSite), site.profile);
            return true;
        });
    }
    Q_EMIT events.linksChanged();
}

// Deletes the links that `names` says name the thing that was deleted.
void deleteLinks(
    bool withSubFolders, const std::function<bool(const Link&)>& names, ProfileEvents& events)
{
    for (const QString& file : LinkFile::linkFiles(withSubFolders)) {
        if (names(LinkFile::read(file)))
            QFile::remove(file);
    }
    Q_EMIT events.linksChanged();
}

bool anySite(const Link& link, const std::function<bool(const QString&)>& test)
{
    return std::any_of(link.sites.begin(), link.sites.end(),
        [&](const LinkSite& site) { return test(site.profile); });
}

} // namespace

void LinkUpkeep::profileFolderRenamed(
    const QString& oldFolder, const QString& newFolder, ProfileEvents& events)
{
    const QString oldPrefix = withSeparator(oldFolder);
    const QString newPrefix = withSeparator(newFolder);
    changeSites(
        false,
        [&](const QString& site) -> std::optional<QString> {
            const qsizetype at = site.indexOf(oldPrefix, 0, Qt::CaseInsensitive);
            if (at < 0)
                return std::nullopt;
            // The rest keeps its own case: file names here are case-sensitive.
            return newPrefix + site.mid(at + oldPrefix.size());
        },
        events);
}

void LinkUpkeep::profileRenamed(
    const QString& oldFile, const QString& newFile, ProfileEvents& events)
{
    changeSites(
        true,
        [&](const QString& site) -> std::optional<QString> {
            if (!sameIgnoringCase(site, oldFile))
                return std::nullopt;
            return newFile;
        },
        events);
}

void LinkUpkeep::profileDeleted(const QString& file, ProfileEvents& events)
{
    deleteLinks(
        true,
        [&](const Link& link) {
            return anySite(link, [&](const QString& site) { return sameIgnoringCase(site, file); });
        },
        events);
}

void LinkUpkeep::profileFolderDeleted(const QString& folder, ProfileEvents& events)
{
    // With its separator, so that deleting "Europe" leaves the links into "Europe2" alone.
    const QString upper = withSeparator(folder).toUpper();
    deleteLinks(
        false,
        [&](const Link& link) {
            return anySite(link, [&](const QString& site) { return inFolder(site, upper); });
        },
        events);
}

void LinkUpkeep::listRenamed(
    const QString& oldListFile, const QString& newListFile, ProfileEvents& events)
{
    const QString items = QLatin1String(kItemsSection);
    for (const QString& file : LinkFile::linkFiles(true)) {
        if (sameIgnoringCase(LinkFile::read(file).files, oldListFile))
            PrivateProfile::writeString(file, items, QLatin1String(kFiles), newListFile);
    }
    Q_EMIT events.linksChanged();
}

void LinkUpkeep::listDeleted(const QString& listFile, ProfileEvents& events)
{
    deleteLinks(
        true, [&](const Link& link) { return sameIgnoringCase(link.files, listFile); }, events);
}

} // namespace zelto
