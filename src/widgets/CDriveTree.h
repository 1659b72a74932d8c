#pragma once

#include <QTreeWidget>

namespace zelto {

// The local folders as a tree with two roots, the file system's root and the user's home. A
// folder lists its sub-folders when it is first opened, so a deep disk costs nothing up front.
// Hidden folders are left out.
class CDriveTree final : public QTreeWidget {
    Q_OBJECT
public:
    explicit CDriveTree(QWidget* parent = nullptr);

    // The folder of the current item; empty when none is current.
    [[nodiscard]] QString currentFolder() const;
    // Opens the tree down to `folder` (through the home root when it lies below home) and makes
    // it current. False, and the tree as it was, when no item leads there.
    bool selectFolder(const QString& folder);

public Q_SLOTS:
    // Lists the current folder's sub-folders again.
    void refresh();

Q_SIGNALS:
    void folderSelected(const QString& folder);

private:
    QTreeWidgetItem* addFolderItem(
        QTreeWidgetItem* parent, const QString& path, const QString& label);
    void listChildren(QTreeWidgetItem* item);
    [[nodiscard]] static QString folderOf(const QTreeWidgetItem* item);
};

} // namespace zelto
