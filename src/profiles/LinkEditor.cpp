#include "LinkEditor.h"

#include "platform/IniDocument.h"
#include "platform/Notifier.h"
#include "platform/Paths.h"
#include "platform/PrivateProfile.h"
#include "platform/StringTable.h"
#include "profiles/FileList.h"
#include "profiles/FileListStore.h"
#include "profiles/LinkFile.h"
#include "profiles/ProfileEvents.h"
#include "profiles/SiteProfile.h"
#include "profiles/StoredFormats.h"
#include "settings/DataFolders.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace zelto {

using namespace linkfile;

LinkEditor::LinkEditor(Notifier& notifier, ProfileEvents& events)
    : notifier_(notifier), events_(events)
{
}

bool LinkEditor::pickProfile(const QString& profileFile)
{
    selectedLink_.clear();
    const QString host = SiteProfile::readFields(profileFile).host;
    if (std::any_of(
            sites_.begin(), sites_.end(), [&](const LinkSiteRow& row) { return row.host == host; }))
        return false;
    sites_.push_back({ host, profileFile });
    return true;
}

void LinkEditor::removeSite(int row)
{
    if (row >= 0 && std::size_t(row) < sites_.size())
        sites_.erase(sites_.begin() + row);
}

void LinkEditor::pickList(const QString& listFolder)
{
    selectedLink_.clear();
    selectedList_ = listFolder;
    addFileRows(FileListStore::listFile(listFolder));
}

void LinkEditor::chooseList(const QString& listFolder)
{
    fileRows_.clear();
    pickList(listFolder);
}

void LinkEditor::pickLink(const QString& linkFile)
{
    selectedLink_ = linkFile;
    const Link link = LinkFile::read(linkFile);
    sites_.clear();
    for (const LinkSite& site : link.sites)
        sites_.push_back({ SiteProfile::readFields(site.profile).host, site.profile });
    fileRows_.clear();
    addFileRows(link.files);
    selectedList_.clear();
    for (const QString& folder : FileListStore::listFolders()) {
        if (FileListStore::listFile(folder).compare(link.files, Qt::CaseInsensitive) == 0) {
            selectedList_ = folder;
            break;
        }
    }
}

void LinkEditor::reset()
{
    name_.clear();
    sites_.clear();
    fileRows_.clear();
    selectedList_.clear();
    selectedLink_.clear();
}

bool LinkEditor::add()
{
    if (name_.isEmpty()) {
        notifier_.showMessage(StringTable::text(ids::kEnterLinkName), MessageIcon::Stop);
        return false;
    }
    if (fileRows_.isEmpty()) {
        notifier_.showMessage(StringTable::text(ids::kNoFilesInLink), MessageIcon::Stop);
        return false;
    }
    const QString file = joinPath(DataFolders::links(), LinkFile::fileNameFor(name_));
    const QString items = QLatin1String(kItemsSection);
    const bool written = PrivateProfile::update(file, [&](IniDocument& document) {
        document.setValue(items, QLatin1String(kSites), QString::number(sites_.size()));
        for (std::size_t i = 0; i < sites_.size(); ++i)
            document.setValue(QLatin1String(kSiteSectionPrefix) + QString::number(i + 1),
                QLatin1String(kSite), sites_[i].profile);
        if (!selectedList_.isEmpty())
            document.setValue(items, QLatin1String(kFiles), FileListStore::listFile(selectedList_));
        return true;
    });
    if (!written)
        return false;
    sites_.clear();
    fileRows_.clear();
    selectedList_.clear();
    name_.clear();
    Q_EMIT events_.linksChanged();
    return true;
}

bool LinkEditor::rename()
{
    if (selectedLink_.isEmpty())
        return false;
    if (name_.isEmpty()) {
        notifier_.showMessage(StringTable::text(ids::kEnterLinkName), MessageIcon::Stop);
        return false;
    }
    if (name_ == LinkFile::nameOf(selectedLink_)) {
        notifier_.showMessage(StringTable::text(ids::kLinkNamesIdentical), MessageIcon::Stop);
        return false;
    }
    const QString newFile = joinPath(DataFolders::links(), LinkFile::fileNameFor(name_));
    if (QFileInfo::exists(newFile) || !QFile::rename(selectedLink_, newFile))
        return false;
    selectedLink_ = newFile;
    Q_EMIT events_.linksChanged();
    return true;
}

bool LinkEditor::remove()
{
    if (selectedLink_.isEmpty()) {
        notifier_.showMessage(StringTable::text(ids::kNoLinkSelected), MessageIcon::Stop);
        return false;
    }
    const bool removed = QFile::remove(selectedLink_);
    selectedLink_.clear();
    Q_EMIT events_.linksChanged();
    return removed;
}

void LinkEditor::addFileRows(const QString& listFile)
{
    for (const FileListEntry& entry : FileList::readStored(listFile)) {
        const QString row = entry.localPath();
        if (!fileRows_.contains(row))
            fileRows_.append(row);
    }
}

} // namespace zelto
