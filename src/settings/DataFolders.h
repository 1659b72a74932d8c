#pragma once

#include <QString>

namespace zelto {

// Where the data files live. An empty `ProfilePath` means the application data folder; its
// "Profiles", "Files" and "Links" sub-folders are made on first use, owner-only, since profiles
// hold passwords.
class DataFolders final {
public:
    DataFolders() = delete;

    [[nodiscard]] static QString appDataFolder();
    // The folder of the queue file and the other data files: DataDir, or the application data
    // folder while DataDir is empty.
    [[nodiscard]] static QString dataFiles();
    [[nodiscard]] static QString base();
    [[nodiscard]] static QString profiles();
    [[nodiscard]] static QString files();
    [[nodiscard]] static QString links();

    // The file of link `name`: <data folder>/Links/<name>.ini (not created).
    [[nodiscard]] static QString linkFile(const QString& name);

    // Stores the profile directory that the user typed. A text that ends in "Profiles" after a
    // separator (one trailing character tolerated) stores the part before it and makes nothing;
    // any other text is stored as typed and its three sub-folders are made.
    static void storeTypedProfileDirectory(const QString& typed);

private:
    [[nodiscard]] static QString subFolder(const char* name);
};

} // namespace zelto
