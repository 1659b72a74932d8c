#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace zelto {

// One target of a link: the profile file named in section "SITE<number>".
struct LinkSite {
    int number = 0;
    QString profile;

    bool operator==(const LinkSite&) const = default;
};

// A link as stored: its sites and the "flist.ini" of its file list (empty: no list).
struct Link {
    std::vector<LinkSite> sites;
    QString files;
};

// A link file: "<data folder>/Links/<name>.ini", with the site count and the list in section
// "LinkItems" and one section per site. Every value is read cut at 126 characters.
class LinkFile final {
public:
    LinkFile() = delete;

    // The file name for a typed link name: cut before its first dot, wherever it stands
    // ("weekly.ini" is "weekly.ini", ".x" is ".ini").
    [[nodiscard]] static QString fileNameFor(const QString& typedName);
    // The link name of a file: its file name less ".ini".
    [[nodiscard]] static QString nameOf(const QString& file);

    // The link's sites in the order of their numbers, 1 to the stored count; a section that is
    // missing is left out. A missing file is a link without sites and list.
    [[nodiscard]] static Link read(const QString& file);

    // The link files of the "Links" folder, sorted; with `withSubFolders` those below it too.
    [[nodiscard]] static QStringList linkFiles(bool withSubFolders = false);
};

} // namespace zelto
