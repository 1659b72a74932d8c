#include "CPickTree.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>
#include <QSignalBlocker>

namespace zelto {
namespace {

constexpr int kPathRole = Qt::UserRole + 1;
constexpr int kLeafRole = Qt::UserRole + 2;

QString pathOf(const QTreeWidgetItem* item)
{
    return item ? item->data(0, kPathRole).toString() : QString();
}

bool isLeaf(const QTreeWidgetItem* item)
{
    return item && item->data(0, kLeafRole).toBool();
}

// Every item of the tree, each folder before what it holds.
QList<QTreeWidgetItem*> allItems(const QTreeWidget& tree)
{
    QList<QTreeWidgetItem*> items;
    QList<QTreeWidgetItem*> toVisit { tree.invisibleRootItem() };
    while (!toVisit.isEmpty()) {
        QTreeWidgetItem* item = toVisit.takeLast();
        if (item != tree.invisibleRootItem())
            items.append(item);
        for (int child = item->childCount() - 1; child >= 0; --child)
            toVisit.append(item->child(child));
    }
    return items;
}

} // namespace

CPickTree::CPickTree(Source source, QWidget* parent)
    : QTreeWidget(parent), source_(std::move(source))
{
    setHeaderHidden(true);
    setColumnCount(1);
    setUniformRowHeights(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    refill();
}

void CPickTree::refill()
{
    const QString current = pathOf(currentItem());
    // A folder the user closed stays closed; a new one opens, so that its leaves show.
    QSet<QString> closed;
    for (const QTreeWidgetItem* item : allItems(*this)) {
        if (!isLeaf(item) && !item->isExpanded())
            closed.insert(pathOf(item));
    }
    const QSignalBlocker quiet(this);
    clear();
    auto* root = new QTreeWidgetItem(this, { source_.rootLabel });
    root->setData(0, kPathRole, QDir::cleanPath(source_.root()));
    root->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
    fill(root, source_.root());
    for (QTreeWidgetItem* item : allItems(*this))
        item->setExpanded(!isLeaf(item) && !closed.contains(pathOf(item)));
    if (QTreeWidgetItem* again = itemOf(current))
        setCurrentItem(again, 0, QItemSelectionModel::NoUpdate);
}

void CPickTree::fill(QTreeWidgetItem* item, const QString& folder)
{
    for (const QString& sub : source_.folders(folder)) {
        auto* child = new QTreeWidgetItem(item, { QFileInfo(sub).fileName() });
        child->setData(0, kPathRole, QDir::cleanPath(sub));
        child->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
        fill(child, sub);
    }
    for (const QString& leaf : source_.leaves(folder)) {
        auto* child = new QTreeWidgetItem(item, { source_.label(leaf) });
        child->setData(0, kPathRole, QDir::cleanPath(leaf));
        child->setData(0, kLeafRole, true);
        child->setToolTip(0, QDir::toNativeSeparators(leaf));
        child->setIcon(0, style()->standardIcon(source_.leafIcon));
    }
}

QStringList CPickTree::chosen() const
{
    // Keys can make an item current without selecting it (Home on the first): then it is chosen.
    const bool noneSelected = selectedItems().isEmpty();
    const auto isChosen = [&](const QTreeWidgetItem* item) {
        for (; item; item = item->parent()) {
            if (noneSelected ? item == currentItem() : item->isSelected())
                return true;
        }
        return false;
    };
    QStringList leaves;
    for (const QTreeWidgetItem* item : allItems(*this)) {
        if (isLeaf(item) && isChosen(item))
            leaves.append(pathOf(item));
    }
    return leaves;
}

QString CPickTree::currentLeaf() const
{
    return isLeaf(currentItem()) ? pathOf(currentItem()) : QString();
}

void CPickTree::showCurrent(const QString& path)
{
    const QSignalBlocker quiet(this);
    QTreeWidgetItem* item = path.isEmpty() ? nullptr : itemOf(QDir::cleanPath(path));
    setCurrentItem(item);
    if (item)
        scrollToItem(item);
}

QTreeWidgetItem* CPickTree::itemOf(const QString& path) const
{
    for (QTreeWidgetItem* item : allItems(*this)) {
        if (pathOf(item) == path)
            return item;
    }
    return nullptr;
}

} // namespace zelto
