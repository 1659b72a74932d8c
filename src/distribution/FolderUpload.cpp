#include "FolderUpload.h"

#include "ftp/BrowserSession.h"
#include "profiles/NameCasing.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace zelto {
namespace {

// The folder part of a relative path ("a/b" gives "a", "a" gives "").
QString parentPart(const QString& relative)
{
    const auto slash = relative.lastIndexOf(u'/');
    return slash < 0 ? QString() : relative.left(slash);
}

} // namespace

FolderUpload FolderUpload::plan(const QStringList& localFolders, const QString& remoteFolder,
    DirTree placement, const QString& casing)
{
    FolderUpload upload;
    for (const auto& top : localFolders) {
        const QDir base = QFileInfo(top).dir();
        QStringList folders { QDir::cleanPath(top) };
        QDirIterator walk(top, QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::NoSymLinks,
            QDirIterator::Subdirectories);
        while (walk.hasNext())
            folders.append(walk.next());
        // Sorted, a folder comes before everything under it.
        std::sort(folders.begin(), folders.end());
        for (const auto& folder : folders) {
            const QString relative = base.relativeFilePath(folder);
            const QString remoteParent = parentPart(relative).isEmpty()
                ? remoteFolder
                : BrowserSession::join(remoteFolder, parentPart(relative));
            if (placement != DirTree::FullPath)
                upload.remoteFolders.append(BrowserSession::join(remoteFolder, relative));
            const QStringList names
                = QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
            for (const auto& name : names) {
                FileEntry entry;
                entry.localFolder = folder;
                entry.localName = name;
                entry.remoteName = casedName(name, casing);
                entry.remoteFolder = placement == DirTree::FullPath ? QString() : remoteParent;
                entry.size = QFileInfo(QDir(folder).filePath(name)).size();
                upload.files.push_back(std::move(entry));
            }
        }
    }
    return upload;
}

} // namespace zelto
