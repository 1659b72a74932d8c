#pragma once

#include <QString>
#include <QStringList>

namespace zelto {

class Notifier;
class ProfileEvents;

// The site profiles on disk: the tree of folders under "Profiles" and the profile files in them,
// with the operations of the profile screen's tree and list. Messages and questions go through
// the notifier; the main frame hears of changed profiles and links through the events, and the
// links that name a renamed or deleted profile are kept up to date.
class ProfileStore final {
public:
    ProfileStore(Notifier& notifier, ProfileEvents& events);

    // The root of the profile tree: the "Profiles" folder of the data folder.
    [[nodiscard]] static QString root();
    // The profile files directly in `folder` (hidden ones too), sorted.
    [[nodiscard]] static QStringList profilesIn(const QString& folder);
    // Every profile file under the root, sorted.
    [[nodiscard]] static QStringList allProfiles();
    // How a profile is shown where all of them are listed: its folder below the root and its
    // name, "europe/paris".
    [[nodiscard]] static QString shownName(const QString& file);

    // The folder of a new tree item "New Profile" below `parent`; empty when it cannot be made.
    [[nodiscard]] QString newFolder(const QString& parent);

    // Renames a profile to the label the user typed (cut as a saved name is) within its folder
    // and returns the new file, or nothing. A file of that name shows "File was not renamed...".
    [[nodiscard]] QString renameProfile(const QString& file, const QString& newLabel);
    // Deletes profiles, asking for each ("Yes", "All" when more than one, "Cancel"); with none
    // given shows "Please select a file!". Links that name a deleted profile are deleted. Returns
    // how many were deleted.
    int deleteProfiles(const QStringList& files);

    // Renames a tree folder (the root stays) and returns the new path, or nothing; the links
    // that name profiles inside it follow.
    [[nodiscard]] QString renameFolder(const QString& folder, const QString& newLabel);
    // Deletes a tree folder after asking: "Profile only" removes the folder and its profiles but
    // refuses a folder that holds sub-folders, "Yes To All" removes the whole sub-tree. The root
    // is never deleted. A folder that stays shows "Could not remove folder...". Links that name a
    // removed profile are deleted. Returns whether the folder is gone.
    bool deleteFolder(const QString& folder);

    // Imports the profiles of an older release's ".sts" file into `folder`: after the header
    // line, one profile per line of four blank-separated words (host, user, password, remote
    // path; "NONE" for an empty value; missing words are empty, a line without words is skipped),
    // with port 21. Each profile is named for its host, its characters that cannot stand in a
    // saved profile name (dots, separators) made "_", and numbered "_2", "_3" ... when the name
    // is taken: an import never writes over a profile. Shows "File was not a valid FTP server
    // file!" for a file without the header. Returns how many profiles were written.
    int importServerFile(const QString& stsFile, const QString& folder);

private:
    Notifier& notifier_;
    ProfileEvents& events_;
};

} // namespace zelto
