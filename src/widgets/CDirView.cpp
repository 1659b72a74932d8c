#include "CDirView.h"

#include <QAction>
#include <QDir>
#include <QDrag>
#include <QMimeData>
#include <QUrl>

namespace zelto {

CDirView::CDirView(QWidget* parent) : CFileView(parent)
{
    setDragEnabled(true);
    setDragDropMode(QAbstractItemView::DragOnly);
    setDefaultDropAction(Qt::CopyAction);

    auto* refreshAction = new QAction(tr("&Refresh"), this);
    refreshAction->setShortcut(QKeySequence::Refresh);
    refreshAction->setShortcutContext(Qt::WidgetShortcut);
    connect(refreshAction, &QAction::triggered, this, &CDirView::refresh);
    addAction(refreshAction);

    connect(this, &CFileView::rowActivated, this, [this](const FileRow& row) {
        if (row.folder)
            Q_EMIT folderActivated(pathOf(row));
        else
            Q_EMIT fileActivated(pathOf(row));
    });
}

void CDirView::setFolder(const QString& folder)
{
    folder_ = QDir::cleanPath(folder);
    // Hidden files are listed too: a distribution may well need a ".htaccess".
    const QFileInfoList entries = QDir(folder_).entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System, QDir::NoSort);
    std::vector<FileRow> rows;
    rows.reserve(std::size_t(entries.size()));
    for (const QFileInfo& info : entries) {
        const bool isFolder = info.isDir();
        rows.push_back(
            { info.fileName(), isFolder ? 0 : info.size(), isFolder, info.lastModified() });
    }
    setRows(std::move(rows));
}

void CDirView::refresh()
{
    if (folder_.isEmpty())
        return;
    const std::optional<FileRow> current = currentRow();
    setFolder(folder_);
    if (current)
        selectRow(current->name);
}

QString CDirView::pathOf(const FileRow& row) const
{
    return QDir(folder_).filePath(row.name);
}

QStringList CDirView::selectedPaths() const
{
    QStringList paths;
    for (const FileRow& row : selectedRows())
        paths.append(pathOf(row));
    return paths;
}

void CDirView::startDrag(Qt::DropActions supportedActions)
{
    const QStringList paths = selectedPaths();
    if (paths.isEmpty())
        return;
    QList<QUrl> urls;
    for (const QString& path : paths)
        urls.append(QUrl::fromLocalFile(path));
    auto* data = new QMimeData;
    data->setUrls(urls);
    auto* drag = new QDrag(this);
    drag->setMimeData(data);
    drag->exec(
        supportedActions & Qt::CopyAction ? Qt::CopyAction : supportedActions, Qt::CopyAction);
}

} // namespace zelto
