#pragma once

#include "profiles/LinkEditor.h"
#include "profiles/ui/CPickTree.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;

namespace zelto {

class Notifier;
class ProfileEvents;

// "Profile / File Links": puts a link together from the tree of site profiles and the tree of
// file lists, and adds, renames and deletes links. The trees follow the stores: a profile, list
// or link made, renamed or deleted elsewhere shows here at once.
class CLinkDlg final : public QDialog {
    Q_OBJECT
public:
    CLinkDlg(Notifier& notifier, ProfileEvents& events, QWidget* parent = nullptr);

    // The one dialog: made on the first call, shown and raised on every call.
    static CLinkDlg* showOrRaise(Notifier& notifier, ProfileEvents& events, QWidget* frame);

    [[nodiscard]] QComboBox* links() const { return links_; }
    [[nodiscard]] CPickTree* profiles() const { return profiles_; }
    [[nodiscard]] CPickTree* fileLists() const { return fileLists_; }
    [[nodiscard]] QLineEdit* nameField() const { return name_; }
    [[nodiscard]] QListWidget* sites() const { return sites_; }
    [[nodiscard]] QListWidget* files() const { return files_; }

public Q_SLOTS:
    void addLink();
    void renameLink();
    void deleteLink();
    void reset();
    // Adds the profiles chosen in the tree (a folder: every profile below it) as sites.
    void addSites();
    void removeSites();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fillPickers();
    // Shows the editor's sites, files and picks.
    void showEditor();

    LinkEditor editor_;
    QComboBox* links_;
    CPickTree* profiles_;
    CPickTree* fileLists_;
    QLineEdit* name_;
    QListWidget* sites_;
    QListWidget* files_;
    QLabel* note_;
};

} // namespace zelto
