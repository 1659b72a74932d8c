#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace zelto {

class IniDocument;

// Private initialisation (.ini) files: sections and keys matched without regard to case, no cache
// (every read opens the file), every write an atomic rewrite (temporary file + rename), writes to
// one file serialised inside the process and, through a FileLock, with other processes. A missing
// file reads as defaults and is made by the first write.
class PrivateProfile final {
public:
    PrivateProfile() = delete;

    static constexpr int kValueBuffer = 255;
    static constexpr int kSectionBuffer = 1027;

    // The value of `key`, or `fallback` when the file, section or key is missing; a value longer
    // than bufferSize - 1 characters comes back cut to bufferSize - 1.
    [[nodiscard]] static QString getString(const QString& file, const QString& section,
        const QString& key, const QString& fallback, int bufferSize = kValueBuffer);
    // The leading decimal number of the value (an optional sign, then digits; no digits gives 0),
    // or `fallback` when the key is missing or its value empty (as the platform's integer read
    // does). Numbers beyond the range of int are clamped.
    [[nodiscard]] static int getInt(
        const QString& file, const QString& section, const QString& key, int fallback);

    // Creates the file, section and key as needed. Returns false when the file could not be
    // written. A new file is readable by its owner only, since these files may hold passwords; a
    // rewritten one keeps its permissions. Folders are never created.
    static bool writeString(
        const QString& file, const QString& section, const QString& key, const QString& value);
    // Writes nothing when there is nothing to delete, so a missing file stays missing.
    static bool deleteKey(const QString& file, const QString& section, const QString& key);

    // The section's "key=value" lines in file order, as they would fit a buffer of bufferSize
    // characters (each line plus its terminator, the whole list plus a final terminator).
    [[nodiscard]] static QStringList getSection(
        const QString& file, const QString& section, int bufferSize = kSectionBuffer);
    // Replaces the section's contents with `lines` ("key=value"); an empty list leaves the header.
    static bool writeSection(const QString& file, const QString& section, const QStringList& lines);
    static bool deleteSection(const QString& file, const QString& section);

    // The rules of the two reads, for callers that parsed the file once (see read()): a value cut
    // to what a buffer of bufferSize characters holds, and a value read as an integer.
    [[nodiscard]] static QString cutToBuffer(const QString& value, int bufferSize);
    // A section's lines as a section read into a buffer of bufferSize characters gives them.
    [[nodiscard]] static QStringList cutSection(const QStringList& lines, int bufferSize);
    [[nodiscard]] static int toInt(const std::optional<QString>& value, int fallback);
    // The leading decimal number of a text: an optional sign, then digits; no digits gives 0.
    // Clamped to 64 bits.
    [[nodiscard]] static qint64 leadingNumber(QStringView text);

    // The file parsed once, for a caller that reads many keys at a time (the queue window loads
    // every item): each getString opens and parses the whole file again. A missing file is empty.
    [[nodiscard]] static IniDocument read(const QString& file);

    // One read and one atomic write of the file for several changes, under the file's lock, so that
    // no other writer of this or another process can interleave. `change` returns false to write
    // nothing (and update then returns true). It may read the file but must not write it through
    // this class: the lock is not recursive. A file that exists but cannot be read is never written
    // over.
    static bool update(const QString& file, const std::function<bool(IniDocument&)>& change);
    // Why this thread's last write returned false: the lock, the read or the write of the file.
    [[nodiscard]] static QString lastWriteFailure();
};

} // namespace zelto
