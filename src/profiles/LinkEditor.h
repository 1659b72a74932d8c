#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace zelto {

class Notifier;
class ProfileEvents;

// A row of the link dialog's sites list: the host it shows and the profile it stands for.
struct LinkSiteRow {
    QString host;
    QString profile;

    bool operator==(const LinkSiteRow&) const = default;
};

// The link dialog without its widgets: the link being put together (its name, its sites, the
// files of its list and the selections of the three pickers) and the Add, Rename and Delete
// commands. Links live in the "Links" folder of the data folder.
class LinkEditor final {
public:
    LinkEditor(Notifier& notifier, ProfileEvents& events);

    [[nodiscard]] const QString& name() const { return name_; }
    void setName(const QString& name) { name_ = name; }
    [[nodiscard]] const std::vector<LinkSiteRow>& sites() const { return sites_; }
    // Rows of the files list: the folder and the local name of each entry, joined.
    [[nodiscard]] const QStringList& fileRows() const { return fileRows_; }
    // The list folder picked in "File List", or empty.
    [[nodiscard]] const QString& selectedList() const { return selectedList_; }
    // The link file picked in "Link", or empty.
    [[nodiscard]] const QString& selectedLink() const { return selectedLink_; }

    // Adds the profile as a site unless a row shows its host already (two profiles of one host
    // cannot both be added). Clears the "Link" pick. Returns whether a row was added.
    bool pickProfile(const QString& profileFile);
    void removeSite(int row);
    // Adds the entries of the list that are not rows yet, and selects the list. Clears the "Link"
    // pick.
    void pickList(const QString& listFolder);
    // As pickList, but the files shown are that list's alone: choosing in a tree of lists moves
    // from one list to the next, and a link holds one list.
    void chooseList(const QString& listFolder);
    // Shows the link's sites and files, and selects in "File List" the list the link names.
    void pickLink(const QString& linkFile);
    void reset();

    // Saves the link under its name (cut before its first dot): its sites, and the selected
    // list's "flist.ini" when a list is selected (otherwise the stored one stays). A link without
    // sites is allowed; one without files, or without a name, is refused with a message. An
    // existing link is written over. On success the sites, files, list and name are cleared.
    bool add();
    // Gives the selected link the typed name. Refuses an empty name, and the same name with a
    // message; a link of the new name is never written over.
    bool rename();
    // Deletes the selected link at once; with none selected the user is told.
    bool remove();

private:
    void addFileRows(const QString& listFile);

    Notifier& notifier_;
    ProfileEvents& events_;
    QString name_;
    std::vector<LinkSiteRow> sites_;
    QStringList fileRows_;
    QString selectedList_;
    QString selectedLink_;
};

} // namespace zelto
