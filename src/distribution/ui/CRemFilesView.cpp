#include "CRemFilesView.h"

#include <QDrag>
#include <QDragEnterEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>

namespace zelto {

CRemFilesView::CRemFilesView(QWidget* parent) : CFileView(parent)
{
    setDragEnabled(true);
    setAcceptDrops(true);
    setDropIndicatorShown(false);
    setDragDropMode(QAbstractItemView::DragDrop);
}

CRemFilesView* CRemFilesView::dragSource(const QDropEvent* event)
{
    if (!event->mimeData()->hasFormat(QLatin1StringView(kMimeType)))
        return nullptr;
    return qobject_cast<CRemFilesView*>(event->source());
}

void CRemFilesView::keyPressEvent(QKeyEvent* event)
{
    if (event->modifiers() == Qt::NoModifier) {
        switch (event->key()) {
        case Qt::Key_F2:
            Q_EMIT renameRequested();
            return;
        case Qt::Key_Delete:
            Q_EMIT deleteRequested();
            return;
        case Qt::Key_Backspace:
            Q_EMIT parentRequested();
            return;
        case Qt::Key_F5:
            Q_EMIT refreshRequested();
            return;
        default:
            break;
        }
    }
    CFileView::keyPressEvent(event);
}

void CRemFilesView::startDrag(Qt::DropActions)
{
    if (selectedRows().empty())
        return;
    auto* data = new QMimeData;
    data->setData(QLatin1StringView(kMimeType), QByteArray());
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    drag->exec(Qt::CopyAction);
}

bool CRemFilesView::accepts(const QDropEvent* event) const
{
    if (const auto* source = dragSource(event))
        return source != this;
    return event->mimeData()->hasUrls();
}

void CRemFilesView::dragEnterEvent(QDragEnterEvent* event)
{
    if (accepts(event))
        event->acceptProposedAction();
    else
        event->ignore();
}

void CRemFilesView::dragMoveEvent(QDragMoveEvent* event)
{
    if (accepts(event))
        event->acceptProposedAction();
    else
        event->ignore();
}

void CRemFilesView::dropEvent(QDropEvent* event)
{
    if (!accepts(event)) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    if (auto* source = dragSource(event)) {
        Q_EMIT remoteRowsDropped(source);
        return;
    }
    QStringList paths;
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    if (!paths.isEmpty())
        Q_EMIT localFilesDropped(paths, event->source() == nullptr);
}

} // namespace zelto
