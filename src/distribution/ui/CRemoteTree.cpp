#include "CRemoteTree.h"

#include "distribution/ui/CRemFilesView.h"

#include <QDropEvent>
#include <QHeaderView>
#include <QStyle>

namespace zelto {
namespace {

constexpr int kFolderRole = Qt::UserRole;

} // namespace

CRemoteTree::CRemoteTree(QWidget* parent) : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setAcceptDrops(true);
    setDropIndicatorShown(true);
    setAccessibleName(tr("Remote folders"));
    const auto choose = [this](QTreeWidgetItem* item) {
        if (item)
            Q_EMIT folderChosen(folderOf(item));
    };
    connect(this, &QTreeWidget::itemClicked, this, choose);
    connect(this, &QTreeWidget::itemActivated, this, choose);
}

void CRemoteTree::showFolder(
    const QString& server, const QString& folder, const QStringList& subfolders)
{
    clear();
    const QIcon icon = style()->standardIcon(QStyle::SP_DirIcon);
    auto* item = new QTreeWidgetItem(this, { server });
    item->setIcon(0, style()->standardIcon(QStyle::SP_DriveNetIcon));
    item->setData(0, kFolderRole, QStringLiteral("/"));
    QString path;
    for (const auto& part : folder.split(u'/', Qt::SkipEmptyParts)) {
        path += u'/' + part;
        item = new QTreeWidgetItem(item, { part });
        item->setIcon(0, icon);
        item->setData(0, kFolderRole, path);
    }
    for (const auto& name : subfolders) {
        auto* child = new QTreeWidgetItem(item, { name });
        child->setIcon(0, icon);
        child->setData(0, kFolderRole, (path.isEmpty() ? QString() : path) + u'/' + name);
    }
    expandAll();
    setCurrentItem(item);
}

void CRemoteTree::clearSite()
{
    clear();
}

QString CRemoteTree::currentFolder() const
{
    return currentItem() ? folderOf(currentItem()) : QString();
}

QString CRemoteTree::folderOf(const QTreeWidgetItem* item)
{
    return item->data(0, kFolderRole).toString();
}

void CRemoteTree::dragEnterEvent(QDragEnterEvent* event)
{
    if (CRemFilesView::dragSource(event))
        event->acceptProposedAction();
    else
        event->ignore();
}

void CRemoteTree::dragMoveEvent(QDragMoveEvent* event)
{
    if (CRemFilesView::dragSource(event) && itemAt(event->position().toPoint()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void CRemoteTree::dropEvent(QDropEvent* event)
{
    auto* source = CRemFilesView::dragSource(event);
    const auto* item = itemAt(event->position().toPoint());
    if (!source || !item) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    Q_EMIT rowsDropped(source, folderOf(item));
}

} // namespace zelto
