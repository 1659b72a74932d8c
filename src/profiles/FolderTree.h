#pragma once

#include <QString>
#include <QStringList>

namespace zelto {

class Notifier;

// The folder work shared by the profile tree and the file-list tree: a tree item is a folder on
// disk, named by its label. Folders made here are owner-only, since profiles hold passwords.
class FolderTree final {
public:
    FolderTree() = delete;

    // The sub-folders of `folder`, sorted by name; hidden ones too.
    [[nodiscard]] static QStringList subFolders(const QString& folder);
    // Whether `label` names one folder of a tree: not empty, not "." or "..", no separator.
    [[nodiscard]] static bool isFolderName(const QString& label);
    // Makes the folder `label` below `parent` and returns its path; an existing folder is reused.
    // Shows "No such path to create directory" and returns nothing when it cannot be made or
    // the label is no folder name.
    [[nodiscard]] static QString makeFolder(
        const QString& parent, const QString& label, Notifier& notifier);
    // Renames `folder` to `newLabel` within its parent and returns the new path, or nothing when
    // it was not renamed. A missing path or a label that is no folder name (which would move the
    // folder elsewhere) shows "No such path to create directory"; a refused
    // rename or a name that exists shows "Folder was not renamed..."; other failures are silent.
    // An empty label, or the one it has, changes nothing.
    [[nodiscard]] static QString renameFolder(
        const QString& folder, const QString& newLabel, Notifier& notifier);
    // Whether `folder` names `root` itself, whatever trailing separators either has.
    [[nodiscard]] static bool isRoot(const QString& folder, const QString& root);
};

} // namespace zelto
