#include "CProfTree.h"

#include "profiles/FolderTree.h"
#include "profiles/ProfileStore.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QStyle>

namespace zelto {
namespace {

constexpr int kPathRole = Qt::UserRole + 1;

QString pathOf(const QTreeWidgetItem* item)
{
    return item ? item->data(0, kPathRole).toString() : QString();
}

} // namespace

CProfTree::CProfTree(ProfileStore& store, QWidget* parent) : QTreeWidget(parent), store_(store)
{
    setHeaderHidden(true);
    setColumnCount(1);
    setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
    setAccessibleName(tr("Profile folders"));
    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* item) {
        if (!filling_ && item)
            Q_EMIT folderChosen(pathOf(item));
    });
    connect(this, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
        if (!filling_)
            labelEdited(item);
    });
    refill();
}

QString CProfTree::folder() const
{
    const QTreeWidgetItem* item = currentItem();
    return item ? pathOf(item) : ProfileStore::root();
}

void CProfTree::refill()
{
    const QString kept = currentItem() ? folder() : ProfileStore::root();
    filling_ = true;
    clear();
    auto* root = new QTreeWidgetItem(this, { tr("Profiles") });
    root->setData(0, kPathRole, QDir::cleanPath(ProfileStore::root()));
    root->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
    fill(root, ProfileStore::root());
    expandAll();
    filling_ = false;
    select(kept);
}

void CProfTree::fill(QTreeWidgetItem* item, const QString& folder)
{
    for (const QString& sub : FolderTree::subFolders(folder)) {
        auto* child = new QTreeWidgetItem(item, { QFileInfo(sub).fileName() });
        child->setData(0, kPathRole, QDir::cleanPath(sub));
        child->setFlags(child->flags() | Qt::ItemIsEditable);
        child->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
        fill(child, sub);
    }
}

void CProfTree::select(const QString& folder)
{
    const QString wanted = QDir::cleanPath(folder);
    QTreeWidgetItem* found = topLevelItem(0);
    for (QTreeWidgetItemIterator it(this); *it; ++it) {
        if (pathOf(*it) == wanted)
            found = *it;
    }
    filling_ = true;
    setCurrentItem(found);
    filling_ = false;
    Q_EMIT folderChosen(pathOf(found));
}

void CProfTree::newFolder()
{
    const QString made = store_.newFolder(folder());
    if (made.isEmpty())
        return;
    refill();
    select(made);
    // The user names it at once, as a new folder of a file manager.
    editItem(currentItem());
}

void CProfTree::renameSelected()
{
    QTreeWidgetItem* item = currentItem();
    if (item && item->parent())
        editItem(item);
}

void CProfTree::deleteSelected()
{
    const QString chosen = folder();
    const QString parent = QFileInfo(chosen).path();
    store_.deleteFolder(chosen);
    // Part of a folder may have gone even when the folder stayed.
    refill();
    select(QFileInfo::exists(chosen) ? chosen : parent);
}

void CProfTree::labelEdited(QTreeWidgetItem* item)
{
    const QString oldPath = pathOf(item);
    const QString renamed = store_.renameFolder(oldPath, item->text(0));
    // Changed in place: the edit that brought us here still holds the item.
    filling_ = true;
    if (renamed.isEmpty())
        item->setText(0, QFileInfo(oldPath).fileName());
    else
        rebase(item, QDir::cleanPath(renamed));
    filling_ = false;
    if (!renamed.isEmpty())
        Q_EMIT folderChosen(pathOf(item));
}

void CProfTree::rebase(QTreeWidgetItem* item, const QString& path)
{
    item->setData(0, kPathRole, path);
    for (int child = 0; child < item->childCount(); ++child)
        rebase(item->child(child), path + u'/' + item->child(child)->text(0));
}

void CProfTree::keyPressEvent(QKeyEvent* event)
{
    if (state() != QAbstractItemView::EditingState) {
        switch (event->key()) {
        case Qt::Key_Delete:
            deleteSelected();
            return;
        case Qt::Key_Insert:
            newFolder();
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            Q_EMIT opened();
            return;
        default:
            break;
        }
    }
    QTreeWidget::keyPressEvent(event);
}

} // namespace zelto
