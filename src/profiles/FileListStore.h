#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace zelto {

class Notifier;
class ProfileEvents;

// The file lists on disk: one folder per list under "Files", each holding "flist.ini", with the
// operations of the file-list screen's tree. Lists do not nest. The links that name a renamed or
// deleted list are kept up to date.
class FileListStore final {
public:
    FileListStore(Notifier& notifier, ProfileEvents& events);

    // The root of the file-list tree: the "Files" folder of the data folder.
    [[nodiscard]] static QString root();
    // The list folders, sorted.
    [[nodiscard]] static QStringList listFolders();
    // The "flist.ini" of a list folder.
    [[nodiscard]] static QString listFile(const QString& listFolder);
    // Where a list saved under a typed name goes (the view that belongs to no tree asks for a
    // name): the folder of that name under the root, made when missing and reused when it
    // exists; nothing when a plain file has that name or the name is no folder name.
    [[nodiscard]] static std::optional<QString> folderForName(const QString& name);

    // The folder of a new tree item "New Folder", always below the root; empty when it cannot be
    // made.
    [[nodiscard]] QString newFolder();
    // Renames a list folder (not the root) and returns the new path, or nothing; the links that
    // name its "flist.ini" follow.
    [[nodiscard]] QString renameList(const QString& listFolder, const QString& newLabel);
    // Deletes a list folder (never the root) after asking "Delete profile?"; the links that name
    // the list are deleted. A folder that stays shows "Could not remove folder...". Returns
    // whether it is gone.
    bool deleteList(const QString& listFolder);

private:
    Notifier& notifier_;
    ProfileEvents& events_;
};

} // namespace zelto
