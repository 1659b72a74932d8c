#pragma once

#include <QStringList>
#include <QTreeWidget>

namespace zelto {

class CRemFilesView;

// The connected site's folders: the path from "/" down to the current folder, and the current
// folder's sub-folders below it. A click or Return on a folder chooses it; rows of the remote
// list dropped on a folder are moved into it.
class CRemoteTree final : public QTreeWidget {
    Q_OBJECT
public:
    explicit CRemoteTree(QWidget* parent = nullptr);

    // Shows `folder` (absolute) as current, with `subfolders` below it; a server name heads the
    // tree.
    void showFolder(const QString& server, const QString& folder, const QStringList& subfolders);
    void clearSite();
    // The folder of the current item; empty when none.
    [[nodiscard]] QString currentFolder() const;

Q_SIGNALS:
    void folderChosen(const QString& folder);
    void rowsDropped(zelto::CRemFilesView* source, const QString& folder);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    [[nodiscard]] static QString folderOf(const QTreeWidgetItem* item);
};

} // namespace zelto
