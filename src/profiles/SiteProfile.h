#pragma once

#include <QString>

namespace zelto {

// A profile's texts as the edit form shows them; the port stays the text the user typed.
struct ProfileFields {
    QString host;
    QString user;
    QString password;
    QString remotePath;
    QString description;
    QString port;

    bool operator==(const ProfileFields&) const = default;
};

// One target site as the sending code needs it.
struct SiteRecord {
    QString host;
    QString user;
    QString password;
    QString remotePath;
    unsigned port = 21;

    bool operator==(const SiteRecord&) const = default;
};

// A site profile file: section "Settings" of "<folder>/<name>.ini". Profiles hold passwords in
// plain text, so a file this class makes is readable by its owner alone.
class SiteProfile final {
public:
    SiteProfile() = delete;

    // The file name for a typed profile name: cut before its first dot unless that dot is the
    // first character ("site.old" is "site.ini", ".hidden" is ".hidden.ini").
    [[nodiscard]] static QString fileNameFor(const QString& typedName);
    // The profile name of a file: its file name less ".ini".
    [[nodiscard]] static QString nameOf(const QString& file);
    [[nodiscard]] static bool isAnonymous(const QString& user);

    // The six values as the edit form reads them (up to 255 characters each); a missing file
    // reads as empty texts.
    [[nodiscard]] static ProfileFields readFields(const QString& file);
    // The site as a target list reads it: texts cut to `bufferSize` - 1 characters (the
    // multiple-put list uses profilefile::kTargetListBuffer, a link run linkfile::kValueBuffer)
    // and the port as an integer, 21 when missing.
    [[nodiscard]] static SiteRecord readSite(const QString& file, int bufferSize);
    // Writes the six keys in their order, in one rewrite. Other keys and sections of an existing
    // file stay as they are.
    [[nodiscard]] static bool write(const QString& file, const ProfileFields& fields);
};

} // namespace zelto
