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
            const QString parent = parentPart(relative);
            const QString remoteParent
                = parent.isEmpty() ? remoteFolder : BrowserSession::join(remoteFolder, parent);
            if (placement != DirTree::FullPath)
                upload.remoteFolders.append(BrowserSession::join(remoteFolder, relative));
            // The listing's own sizes: no second look at each file.
            for (const QFileInfo& file :
                QDir(folder).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name)) {
                FileEntry entry;
                entry.localFolder = folder;
                entry.localName = file.fileName();
                entry.remoteName = casedName(entry.localName, casing);
                entry.remoteFolder = placement == DirTree::FullPath ? QString() : remoteParent;
                entry.size = file.size();
                upload.files.push_back(std::move(entry));
            }
        }
    }
    return upload;
}

} // namespace zelto
