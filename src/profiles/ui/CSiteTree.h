#pragma once

#include <QTreeWidget>

namespace zelto {

class FileListStore;

// The file lists as a tree: the "Files" folder as its root and one item per list below it
// (lists do not nest). Lists are made, renamed in place and deleted here, through the store,
// which keeps the links that name them up to date.
class CSiteTree final : public QTreeWidget {
    Q_OBJECT
public:
    explicit CSiteTree(FileListStore& store, QWidget* parent = nullptr);

    // The folder of the current list; empty when the root (or nothing) is current.
    [[nodiscard]] QString currentList() const;
    // Reads the list folders again, keeping the current one where it still exists.
    void reload();
    // Makes the list of that folder current; an empty folder makes the root current.
    bool selectList(const QString& folder);

    [[nodiscard]] QAction* newAction() const { return newAction_; }
    [[nodiscard]] QAction* renameAction() const { return renameAction_; }
    [[nodiscard]] QAction* deleteAction() const { return deleteAction_; }

public Q_SLOTS:
    // Makes a list "New Folder" and opens its label for the user to name it.
    void newList();
    void renameCurrent();
    void deleteCurrent();

Q_SIGNALS:
    // The current item changed: a list folder, or empty for the root.
    void listChosen(const QString& folder);
    void listMade(const QString& folder);
    void listRenamed(const QString& oldFolder, const QString& newFolder);
    // Told before the item goes, so that whoever shows the list lets go of it first.
    void listDeleted(const QString& folder);

private:
    QTreeWidgetItem* addListItem(const QString& folder);
    void placeInOrder(QTreeWidgetItem* item);
    void labelEdited(QTreeWidgetItem* item);
    [[nodiscard]] QTreeWidgetItem* itemOf(const QString& folder) const;
    [[nodiscard]] static QString folderOf(const QTreeWidgetItem* item);

    FileListStore& store_;
    QTreeWidgetItem* root_;
    QAction* newAction_;
    QAction* renameAction_;
    QAction* deleteAction_;
};

} // namespace zelto
