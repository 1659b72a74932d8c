#include "CDriveTree.h"

#include <QAction>
#include <QDir>
#include <QFileIconProvider>
#include <QHeaderView>

namespace zelto {
namespace {

constexpr int kPathRole = Qt::UserRole;
// Set once an item's sub-folders have been read.
constexpr int kListedRole = Qt::UserRole + 1;

bool isSameOrBelow(const QString& folder, const QString& root)
{
    if (folder == root)
        return true;
    const QString withSeparator = root.endsWith(u'/') ? root : root + u'/';
    return folder.startsWith(withSeparator);
}

} // namespace

CDriveTree::CDriveTree(QWidget* parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setColumnCount(1);
    setUniformRowHeights(true);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setStretchLastSection(false);

    const QFileIconProvider icons;
    const QString root = QDir::rootPath();
    const QString home = QDir::cleanPath(QDir::homePath());
    addFolderItem(nullptr, root, QDir::toNativeSeparators(root))
        ->setIcon(0, icons.icon(QFileIconProvider::Drive));
    if (home != root)
        addFolderItem(nullptr, home, QDir::toNativeSeparators(home))
            ->setIcon(0, icons.icon(QFileInfo(home)));

    connect(this, &QTreeWidget::itemExpanded, this, &CDriveTree::listChildren);
    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* current) {
        if (current)
            Q_EMIT folderSelected(folderOf(current));
    });

    auto* refreshAction = new QAction(tr("&Refresh"), this);
    refreshAction->setShortcut(QKeySequence::Refresh);
    refreshAction->setShortcutContext(Qt::WidgetShortcut);
    connect(refreshAction, &QAction::triggered, this, &CDriveTree::refresh);
    addAction(refreshAction);
}

QString CDriveTree::currentFolder() const
{
    return currentItem() ? folderOf(currentItem()) : QString();
}

QString CDriveTree::folderOf(const QTreeWidgetItem* item)
{
    return item->data(0, kPathRole).toString();
}

QTreeWidgetItem* CDriveTree::addFolderItem(
    QTreeWidgetItem* parent, const QString& path, const QString& label)
{
    auto* item = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(this);
    item->setText(0, label);
    item->setData(0, kPathRole, path);
    // Whether it has sub-folders is known only once it is opened.
    item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    return item;
}

void CDriveTree::listChildren(QTreeWidgetItem* item)
{
    if (item->data(0, kListedRole).toBool())
        return;
    item->setData(0, kListedRole, true);
    const QDir folder(folderOf(item));
    const QFileInfoList subfolders
        = folder.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
    const QIcon icon = QFileIconProvider().icon(QFileIconProvider::Folder);
    for (const QFileInfo& info : subfolders)
        addFolderItem(item, info.absoluteFilePath(), info.fileName())->setIcon(0, icon);
    item->setChildIndicatorPolicy(subfolders.isEmpty()
            ? QTreeWidgetItem::DontShowIndicator
            : QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

bool CDriveTree::selectFolder(const QString& folder)
{
    const QString wanted = QDir::cleanPath(folder);
    // The deepest root that holds the folder: home rather than the path down from the root.
    QTreeWidgetItem* item = nullptr;
    for (int at = 0; at < topLevelItemCount(); ++at) {
        QTreeWidgetItem* root = topLevelItem(at);
        if (isSameOrBelow(wanted, folderOf(root))
            && (!item || folderOf(root).size() > folderOf(item).size()))
            item = root;
    }
    while (item && folderOf(item) != wanted) {
        listChildren(item);
        QTreeWidgetItem* next = nullptr;
        for (int at = 0; at < item->childCount() && !next; ++at) {
            if (isSameOrBelow(wanted, folderOf(item->child(at))))
                next = item->child(at);
        }
        item = next;
    }
    if (!item)
        return false;
    for (QTreeWidgetItem* above = item->parent(); above; above = above->parent())
        above->setExpanded(true);
    setCurrentItem(item);
    scrollToItem(item);
    return true;
}

void CDriveTree::refresh()
{
    QTreeWidgetItem* item = currentItem();
    if (!item)
        return;
    const bool open = item->isExpanded();
    qDeleteAll(item->takeChildren());
    item->setData(0, kListedRole, false);
    item->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    if (open)
        listChildren(item);
}

} // namespace zelto
