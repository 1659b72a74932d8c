#pragma once

#include "profiles/FileListEntry.h"

#include <QSet>
#include <QString>

#include <optional>
#include <vector>

namespace zelto {

class Notifier;

// The entries of a file list in memory, as the file-list views show and edit them, with the
// list's stored formats: "flist.ini" and the older release's ".fls" file. Entries are unique by
// folder and local name, ignoring case. The changed flag is set by every edit and cleared by
// loading and saving.
class FileList final {
public:
    enum class ServerFileLoad { Refused, Cancelled, Replaced, Appended };

    [[nodiscard]] const std::vector<FileListEntry>& entries() const { return entries_; }
    [[nodiscard]] bool isEmpty() const { return entries_.empty(); }
    [[nodiscard]] bool changed() const { return changed_; }
    [[nodiscard]] bool contains(const QString& folder, const QString& localName) const;

    // Adds the entry unless one with its folder and local name is held; sets the changed flag.
    bool add(const FileListEntry& entry);
    // The view's wildcard add: each plain file of `folder` whose name matches `pattern` ("*" and
    // "?", ignoring case), in name order. Returns how many were added.
    int addMatching(const QString& folder, const QString& pattern);
    // Empties the list (opening another list starts with this).
    void clear();

    // The entries stored in a "flist.ini" file, as they stand: the first NumItems entries that
    // the file holds, with their stored sizes. A missing file holds none.
    [[nodiscard]] static std::vector<FileListEntry> readStored(const QString& listFile);
    // Adds the entries of a "flist.ini" file: an entry already held is skipped, a wildcard entry
    // adds the files it matches instead of itself. Clears the changed flag.
    void load(const QString& listFile);
    // Writes the list to a "flist.ini" file in one rewrite; an empty list writes nothing.
    // Sections of a longer list saved before stay in the file (the count bounds what is read).
    // False when the file could not be written.
    [[nodiscard]] bool save(const QString& listFile);

    // Loads an ".fls" file: after its header line, one full local path per line ended by a line
    // feed, taken as it stands (a carriage return stays part of the path; a last line without a
    // line feed is not read). Paths that match nothing on disk are skipped; a path with wildcards
    // takes its first match. Into an empty list it replaces; otherwise it asks "Append", "Replace"
    // or "Cancel". When it replaced and `listFile` is given, the list is saved there at once;
    // appended entries stay unsaved. A file without the header shows "File was not a valid FTP
    // server file!" and leaves the list as it was.
    ServerFileLoad loadServerFile(
        const QString& flsFile, const QString& listFile, Notifier& notifier);

    // The view's delete command over the selected rows: asks for each ("Yes", "All" when more
    // than one, "Cancel"); with none selected shows "Please select a file!". No file on disk is
    // touched. Returns how many were removed.
    int remove(const std::vector<int>& rows, Notifier& notifier);
    // The row whose remote name can be changed: exactly one must be selected, otherwise the user
    // is told so.
    [[nodiscard]] std::optional<int> rowToRename(
        const std::vector<int>& rows, Notifier& notifier) const;
    // After the user confirmed the name dialog with `answer`: unless it is the local name, asks
    // to confirm and then makes it the remote name (the local name when empty). Sets the changed
    // flag in any case, since the dialog was confirmed. Returns whether the name changed.
    bool changeRemoteName(int row, const QString& answer, Notifier& notifier);

private:
    // Folder and local name, folded for the comparison that ignores case.
    [[nodiscard]] static QString keyOf(const QString& folder, const QString& localName);

    std::vector<FileListEntry> entries_;
    // The keys of the entries: a list of many thousand files is built in linear time.
    QSet<QString> keys_;
    bool changed_ = false;
};

} // namespace zelto
