#pragma once

#include "distribution/FileEntry.h"
#include "distribution/RemotePlacement.h"

#include <QStringList>

#include <vector>

namespace zelto {

// Local folders sent whole into a remote folder, with every file and sub-folder under them. The
// put engine keeps each file's folder by its placement rule: with "LAST_DIR" (and "NO_PATH", which
// a put that keeps its folders reads as "LAST_DIR") each file's remote folder is its local
// folder's parent within the tree, so the engine adds the last level; the levels above, and empty
// folders, are made beforehand from `remoteFolders`. With "FULL_PATH" the engine re-creates the
// whole local path itself.
struct FolderUpload {
    std::vector<FileEntry> files;
    // To make on the server before the put, parents before children.
    QStringList remoteFolders;

    // Walks `localFolders` (symbolic links are not followed); remote names are cased by `casing`
    // (FileCasingPut).
    [[nodiscard]] static FolderUpload plan(const QStringList& localFolders,
        const QString& remoteFolder, DirTree placement, const QString& casing);
};

} // namespace zelto
