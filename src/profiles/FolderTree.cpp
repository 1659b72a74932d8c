#include "FolderTree.h"

#include "platform/Notifier.h"
#include "platform/OwnerOnly.h"
#include "platform/Paths.h"
#include "platform/StringTable.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>

namespace zelto {

QStringList FolderTree::subFolders(const QString& folder)
{
    const QDir dir(folder);
    QStringList folders;
    for (const QString& name :
        dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name))
        folders.append(dir.filePath(name));
    return folders;
}

bool FolderTree::isFolderName(const QString& label)
{
    return !label.isEmpty() && label != u'.' && label != QLatin1String("..")
        && !label.contains(u'/') && !label.contains(u'\\');
}

QString FolderTree::makeFolder(const QString& parent, const QString& label, Notifier& notifier)
{
    const QString path = joinPath(parent, label);
    if (isFolderName(label) && QFileInfo(path).isDir())
        return path;
    if (!isFolderName(label) || !QDir().mkdir(path)) {
        notifier.showMessage(StringTable::text(ids::kNoPathToCreateDirectory), MessageIcon::Stop);
        return QString();
    }
    restrictToOwner(path);
    return path;
}

QString FolderTree::renameFolder(const QString& folder, const QString& newLabel, Notifier& notifier)
{
    const QString oldPath = QDir::cleanPath(folder);
    const QString newPath = joinPath(QFileInfo(oldPath).path(), newLabel);
    if (newLabel.isEmpty() || newPath == oldPath)
        return QString();
    int error = 0;
    // A plain rename would replace an empty folder of that name here; a folder that exists
    // already is refused as the rename of the platform refuses it.
    if (!isFolderName(newLabel))
        error = ENOENT;
    else if (QFileInfo::exists(newPath) || QFileInfo(newPath).isSymLink())
        error = EEXIST;
    else if (std::rename(
                 QFile::encodeName(oldPath).constData(), QFile::encodeName(newPath).constData())
        != 0)
        error = errno;
    switch (error) {
    case 0:
        return newPath;
    case ENOENT:
        notifier.showMessage(StringTable::text(ids::kNoPathToCreateDirectory), MessageIcon::Stop);
        break;
    case EACCES:
    case EEXIST:
        notifier.showMessage(StringTable::text(ids::kFolderNotRenamed), MessageIcon::Stop);
        break;
    default:
        break;
    }
    return QString();
}

bool FolderTree::isRoot(const QString& folder, const QString& root)
{
    return QDir::cleanPath(folder) == QDir::cleanPath(root);
}

} // namespace zelto
