#include "FileListStore.h"

#include "platform/Notifier.h"
#include "platform/OwnerOnly.h"
#include "platform/Paths.h"
#include "platform/StringTable.h"
#include "profiles/FolderTree.h"
#include "profiles/LinkUpkeep.h"
#include "profiles/ProfileEvents.h"
#include "profiles/StoredFormats.h"
#include "settings/DataFolders.h"

#include <QDir>
#include <QFileInfo>

namespace zelto {

FileListStore::FileListStore(Notifier& notifier, ProfileEvents& events)
    : notifier_(notifier), events_(events)
{
}

QString FileListStore::root()
{
    return DataFolders::files();
}

QStringList FileListStore::listFolders()
{
    return FolderTree::subFolders(root());
}

QString FileListStore::listFile(const QString& listFolder)
{
    return joinPath(listFolder, QLatin1String(listfile::kFileName));
}

std::optional<QString> FileListStore::folderForName(const QString& name)
{
    if (!FolderTree::isFolderName(name))
        return std::nullopt;
    const QString folder = joinPath(root(), name);
    const QFileInfo info(folder);
    if (info.isDir())
        return folder;
    if (info.exists() || !QDir().mkdir(folder))
        return std::nullopt;
    restrictToOwner(folder);
    return folder;
}

QString FileListStore::newFolder()
{
    const QString folder
        = FolderTree::makeFolder(root(), StringTable::text(ids::kNewFolderLabel), notifier_);
    if (!folder.isEmpty())
        Q_EMIT events_.fileListsChanged();
    return folder;
}

QString FileListStore::renameList(const QString& listFolder, const QString& newLabel)
{
    if (FolderTree::isRoot(listFolder, root()))
        return QString();
    const QString newFolder = FolderTree::renameFolder(listFolder, newLabel, notifier_);
    if (newFolder.isEmpty())
        return QString();
    Q_EMIT events_.fileListsChanged();
    LinkUpkeep::listRenamed(listFile(listFolder), listFile(newFolder), events_);
    return newFolder;
}

bool FileListStore::deleteList(const QString& listFolder)
{
    if (FolderTree::isRoot(listFolder, root()) || !QFileInfo(listFolder).isDir())
        return false;
    const Question question { StringTable::text(ids::kDeleteProfileCaption),
        StringTable::text(ids::kDeleteListQuestion), ids::kButtonYes, ids::kButtonAll, true,
        ids::kButtonCancel };
    if (notifier_.ask(question) == Answer::Cancelled)
        return false;
    // A list is one folder and its "flist.ini": the first two buttons mean the same here.
    if (!QDir(listFolder).removeRecursively() && QFileInfo::exists(listFolder)) {
        notifier_.showMessage(StringTable::text(ids::kCannotRemoveFolder), MessageIcon::Stop);
        return false;
    }
    Q_EMIT events_.fileListsChanged();
    LinkUpkeep::listDeleted(listFile(listFolder), events_);
    return true;
}

} // namespace zelto
