#include "CSiteTree.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "profiles/FileListStore.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QSignalBlocker>
#include <QStyle>

namespace zelto {
namespace {

constexpr int kFolderRole = Qt::UserRole;

QString labelOf(const QString& folder)
{
    return QFileInfo(folder).fileName();
}

// Lists in the order people look for them: by name, whatever the letter case.
bool labelBefore(const QString& a, const QString& b)
{
    return a.compare(b, Qt::CaseInsensitive) < 0;
}

} // namespace

CSiteTree::CSiteTree(FileListStore& store, QWidget* parent)
    : QTreeWidget(parent), store_(store), root_(new QTreeWidgetItem(this))
{
    setHeaderHidden(true);
    setColumnCount(1);
    setUniformRowHeights(true);
    setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    root_->setText(0, tr("Files"));
    root_->setIcon(0, style()->standardIcon(QStyle::SP_DirHomeIcon));
    reload();
    root_->setExpanded(true);

    const auto make = [this](const QString& text, QStyle::StandardPixmap icon,
                          const QKeySequence& keys, void (CSiteTree::*slot)()) {
        auto* action = new QAction(style()->standardIcon(icon), text, this);
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
        return action;
    };
    newAction_ = make(
        tr("&New List"), QStyle::SP_FileDialogNewFolder, QKeySequence::New, &CSiteTree::newList);
    renameAction_ = make(tr("Rena&me List"), QStyle::SP_FileLinkIcon, QKeySequence(Qt::Key_F2),
        &CSiteTree::renameCurrent);
    deleteAction_ = make(
        tr("&Delete List"), QStyle::SP_TrashIcon, QKeySequence::Delete, &CSiteTree::deleteCurrent);
    setContextMenuPolicy(Qt::ActionsContextMenu);

    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* current) {
        // The root is where lists live, not a list: it is never renamed or deleted.
        const bool isList = current && current != root_;
        renameAction_->setEnabled(isList);
        deleteAction_->setEnabled(isList);
        if (current)
            Q_EMIT listChosen(folderOf(current));
    });
    connect(this, &QTreeWidget::itemChanged, this, &CSiteTree::labelEdited);
    renameAction_->setEnabled(false);
    deleteAction_->setEnabled(false);
}

QString CSiteTree::folderOf(const QTreeWidgetItem* item)
{
    return item->data(0, kFolderRole).toString();
}

QString CSiteTree::currentList() const
{
    return currentItem() ? folderOf(currentItem()) : QString();
}

QTreeWidgetItem* CSiteTree::addListItem(const QString& folder)
{
    const QSignalBlocker quiet(this);
    auto* item = new QTreeWidgetItem;
    item->setText(0, labelOf(folder));
    item->setData(0, kFolderRole, folder);
    item->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
    item->setFlags(item->flags() | Qt::ItemIsEditable);
    placeInOrder(item);
    return item;
}

void CSiteTree::placeInOrder(QTreeWidgetItem* item)
{
    int at = 0;
    while (at < root_->childCount() && labelBefore(root_->child(at)->text(0), item->text(0)))
        ++at;
    root_->insertChild(at, item);
}

QTreeWidgetItem* CSiteTree::itemOf(const QString& folder) const
{
    if (folder.isEmpty())
        return root_;
    for (int at = 0; at < root_->childCount(); ++at) {
        if (folderOf(root_->child(at)) == folder)
            return root_->child(at);
    }
    return nullptr;
}

void CSiteTree::reload()
{
    const QString current = currentList();
    {
        const QSignalBlocker quiet(this);
        qDeleteAll(root_->takeChildren());
    }
    for (const QString& folder : FileListStore::listFolders())
        addListItem(folder);
    if (QTreeWidgetItem* again = itemOf(current))
        setCurrentItem(again);
    else
        setCurrentItem(root_);
}

bool CSiteTree::selectList(const QString& folder)
{
    QTreeWidgetItem* item = itemOf(folder);
    if (!item)
        return false;
    setCurrentItem(item);
    scrollToItem(item);
    return true;
}

void CSiteTree::newList()
{
    const QString folder = store_.newFolder();
    if (folder.isEmpty())
        return;
    // "New Folder" may be there already, left unnamed last time: it is reused.
    QTreeWidgetItem* item = itemOf(folder);
    if (!item) {
        item = addListItem(folder);
        Q_EMIT listMade(folder);
    }
    setCurrentItem(item);
    editItem(item);
}

void CSiteTree::renameCurrent()
{
    QTreeWidgetItem* item = currentItem();
    if (item && item != root_)
        editItem(item);
}

void CSiteTree::labelEdited(QTreeWidgetItem* item)
{
    const QString oldFolder = folderOf(item);
    const QString label = item->text(0);
    if (item == root_ || label == labelOf(oldFolder))
        return;
    const QString newFolder = store_.renameList(oldFolder, label);
    {
        // The same list under another name: nothing is chosen anew while its item moves.
        const QSignalBlocker quiet(this);
        if (newFolder.isEmpty()) {
            // The store said why; the tree shows the list as it still is.
            item->setText(0, labelOf(oldFolder));
            return;
        }
        item->setData(0, kFolderRole, newFolder);
        item->setText(0, labelOf(newFolder));
        const bool wasCurrent = currentItem() == item;
        root_->removeChild(item);
        placeInOrder(item);
        if (wasCurrent)
            setCurrentItem(item);
    }
    Q_EMIT listRenamed(oldFolder, newFolder);
}

void CSiteTree::deleteCurrent()
{
    QTreeWidgetItem* item = currentItem();
    if (!item || item == root_)
        return;
    const QString folder = folderOf(item);
    if (!store_.deleteList(folder))
        return;
    Q_EMIT listDeleted(folder);
    delete item;
}

} // namespace zelto
