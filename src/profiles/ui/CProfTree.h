#pragma once

#include <QTreeWidget>

namespace zelto {

class ProfileStore;

// The folders of the site profiles, with "Profiles" as the root. A label edit (F2) renames the
// folder on disk, Delete deletes it after asking, Insert makes a "New Profile" folder below the
// selected one. A folder that cannot be renamed keeps its label; the store says why.
class CProfTree final : public QTreeWidget {
    Q_OBJECT
public:
    explicit CProfTree(ProfileStore& store, QWidget* parent = nullptr);

    // The selected folder, or the root when nothing is selected.
    [[nodiscard]] QString folder() const;
    // Reads the folders from disk again and keeps the selected one where it still exists.
    void refill();

public Q_SLOTS:
    void newFolder();
    void renameSelected();
    void deleteSelected();

Q_SIGNALS:
    void folderChosen(const QString& folder);
    // Return on a folder: the user wants its profiles.
    void opened();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fill(QTreeWidgetItem* item, const QString& folder);
    void select(const QString& folder);
    void labelEdited(QTreeWidgetItem* item);
    // Gives the item and everything below it the paths under `path`.
    void rebase(QTreeWidgetItem* item, const QString& path);

    ProfileStore& store_;
    bool filling_ = false;
};

} // namespace zelto
