#pragma once

#include "distribution/FileEntry.h"
#include "distribution/RemotePlacement.h"

#include <QStringList>

#include <vector>

namespace zelto {

class BrowserSession;

// Remote folders got whole into a local folder, the mirror of FolderUpload: with "LAST_DIR" (and
// "NO_PATH", read as "LAST_DIR" by a get that keeps its folders) each file's local folder is its
// remote folder's parent within the tree, and the get engine adds the last level; the levels
// above, and empty folders, are made beforehand from `localFolders`. With "FULL_PATH" the engine
// re-creates the whole remote path itself. Names that cannot be used on this computer are left
// out, with everything under them.
struct FolderDownload {
    std::vector<FileEntry> files;
    // To make on the local disk before the get, parents before children.
    QStringList localFolders;
    // Folders that could not be listed, as remote paths.
    QStringList unlisted;

    // Lists the folders `names` of `remoteFolder` and all below them (at most kMaxDepth levels,
    // so that a server's folder that contains itself ends); local names are cased by `casing`
    // (FileCasingGet).
    [[nodiscard]] static FolderDownload plan(BrowserSession& session, const QString& remoteFolder,
        const QStringList& names, const QString& localFolder, DirTree placement,
        const QString& casing);

    static constexpr int kMaxDepth = 32;
};

} // namespace zelto
