#include "FolderDownload.h"

#include "ftp/BrowserSession.h"
#include "profiles/NameCasing.h"

#include <QDir>

#include <algorithm>
#include <deque>

namespace zelto {

FolderDownload FolderDownload::plan(BrowserSession& session, const QString& remoteFolder,
    const QStringList& names, const QString& localFolder, DirTree placement, const QString& casing)
{
    FolderDownload download;
    // Folders to list, relative to `remoteFolder`.
    std::deque<QStringList> pending;
    for (const auto& name : names) {
        if (RemoteEntry::isPlainName(name))
            pending.push_back({ name });
    }
    const QDir local(localFolder);
    while (!pending.empty()) {
        const QStringList parts = std::move(pending.front());
        pending.pop_front();
        const QString relative = parts.join(u'/');
        const QString remote = BrowserSession::join(remoteFolder, relative);
        const auto listed = session.list(remote);
        if (!listed.ok()) {
            download.unlisted.append(remote);
            continue;
        }
        if (placement != DirTree::FullPath)
            download.localFolders.append(local.filePath(relative));
        const QString parent = placement == DirTree::FullPath
            ? localFolder
            : local.filePath(parts.mid(0, parts.size() - 1).join(u'/'));
        for (const auto& entry : listed.value.entries()) {
            if (!RemoteEntry::isPlainName(entry.name))
                continue;
            if (entry.isFolder()) {
                if (parts.size() < kMaxDepth)
                    pending.push_back(parts + QStringList { entry.name });
                continue;
            }
            FileEntry file;
            file.localFolder = QDir::cleanPath(parent);
            file.localName = casedName(entry.name, casing);
            file.remoteName = entry.name;
            file.remoteFolder = remote;
            file.size = std::max<qint64>(entry.size, 0);
            download.files.push_back(std::move(file));
        }
    }
    std::sort(download.localFolders.begin(), download.localFolders.end());
    return download;
}

} // namespace zelto
