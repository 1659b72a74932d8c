#pragma once

#include <QChar>
#include <QString>

#include <vector>

namespace zelto {

// How much of a file's source folder is re-created at the target (FTPDirTree).
enum class DirTree { NoPath, LastDir, FullPath };

// One folder a file's placement needs: `name` inside `parent`, reached as `path`.
struct FolderStep {
    QString parent;
    QString name;
    QString path;

    bool operator==(const FolderStep&) const = default;
};

// Where one file goes: the folders to check and make, in order, the folder it lands in and its
// full path there.
struct Placement {
    std::vector<FolderStep> folders;
    QString folder;
    QString path;
};

// The rules that decide where a file of a distribution lands. Pure: nothing here touches a
// server or a disk, so the engines and the transfer window share one set of rules.
//
// Stored local folders may come from Windows ("C:\web\site") or from here ("/home/me/site"), and
// servers may be Unix-like ("/pub") or DOS-like ("\pub"): each side keeps its own separator.
class RemotePlacement final {
public:
    RemotePlacement() = delete;

    // The mode for a FTPDirTree value; an unknown value is NoPath, and a caller that keeps the
    // selection's folder (keepFolder) turns NoPath into LastDir.
    [[nodiscard]] static DirTree dirTreeOf(const QString& value, bool keepFolder);
    // The same from the setting, read now.
    [[nodiscard]] static DirTree dirTreeSetting(bool keepFolder);
    // RenameLongFileNames: on for any value other than "NO".
    [[nodiscard]] static bool shortNamesSetting();

    // "/" when the folder holds one, else "\" when it holds one, else this system's separator.
    [[nodiscard]] static QChar localSeparator(const QString& localFolder);
    // "/" unless the folder holds a "\".
    [[nodiscard]] static QChar remoteSeparator(const QString& remoteFolder);
    // Folder and name with the side's separator between them, unless the folder already ends
    // with it. An empty folder gives the bare name.
    [[nodiscard]] static QString localPath(const QString& localFolder, const QString& name);
    [[nodiscard]] static QString remotePath(const QString& remoteFolder, const QString& name);

    // The 8.3 form of a name longer than 12 characters: its first six characters that are not
    // blanks, "~1", then the text from its first "." on, cut so that the whole is at most 12
    // characters. Shorter names are kept. Two long names may give the same short one.
    [[nodiscard]] static QString shortName(const QString& name);

    // Where a put places a file from `localFolder` under `remoteFolder`. The local folder is split
    // at either separator (runs count as one); the walk stops at a part equal to `remoteName`,
    // and parts with a ":" (drive letters) are skipped. LastDir adds the last part, FullPath every
    // part, each a folder step; NoPath adds none.
    [[nodiscard]] static Placement onServer(const QString& localFolder, const QString& remoteFolder,
        const QString& remoteName, DirTree mode);
    // The mirror for a get: the parts of `remoteFolder` become folders under `localFolder`,
    // joined with this system's separator.
    [[nodiscard]] static Placement onDisk(const QString& remoteFolder, const QString& localFolder,
        const QString& localName, DirTree mode);
};

} // namespace zelto
