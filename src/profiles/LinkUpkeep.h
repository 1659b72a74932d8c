#pragma once

#include <QString>

namespace zelto {

class ProfileEvents;

// Keeps the links consistent when the profiles and file lists they name are renamed or deleted.
// The operations on one profile or one list search the sub-folders of "Links" too; those on a
// profile folder only the files directly in it. Each ends by telling the main frame to reload its
// links. Files that cannot be rewritten or deleted are left as they are, silently.
class LinkUpkeep final {
public:
    LinkUpkeep() = delete;

    // Each site path that holds the old folder (ignoring case, both folders ending in a
    // separator) becomes the new folder followed by the rest of the path, in its own case.
    static void profileFolderRenamed(
        const QString& oldFolder, const QString& newFolder, ProfileEvents& events);
    // Site paths equal to the old file, ignoring case, become the new one.
    static void profileRenamed(
        const QString& oldFile, const QString& newFile, ProfileEvents& events);
    // Deletes every link with a site path equal to the file, ignoring case.
    static void profileDeleted(const QString& file, ProfileEvents& events);
    // Deletes every link with a site path inside the folder (compared upper-cased).
    static void profileFolderDeleted(const QString& folder, ProfileEvents& events);
    // List paths ("flist.ini" files) equal to the old one, ignoring case, become the new one.
    static void listRenamed(
        const QString& oldListFile, const QString& newListFile, ProfileEvents& events);
    // Deletes every link whose list path equals the list's, ignoring case.
    static void listDeleted(const QString& listFile, ProfileEvents& events);
};

} // namespace zelto
