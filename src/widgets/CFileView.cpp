#include "CFileView.h"

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "widgets/ReportList.h"

#include <QApplication>
#include <QHeaderView>

#include <algorithm>

namespace zelto {

void CFileView::readDateOrder()
{
    FileRowModel::setDateOrder(SettingsStore::get(settings::config::kTimeType));
    for (QWidget* widget : QApplication::allWidgets()) {
        if (auto* view = qobject_cast<CFileView*>(widget))
            view->viewport()->update();
    }
}

CFileView::CFileView(QWidget* parent) : QTreeView(parent), order_(model_)
{
    setModel(&order_);
    setUpReportList(*this);
    setSortingEnabled(true);
    sortByColumn(FileRowModel::File, Qt::AscendingOrder);
    header()->setSectionsMovable(true);
    header()->setSortIndicatorShown(true);
    // Wide enough for a usual name, a size in the gigabytes and a date with its time.
    const int em = fontMetrics().horizontalAdvance(u'M');
    header()->resizeSection(FileRowModel::File, 16 * em);
    header()->resizeSection(FileRowModel::Size, 8 * em);
    header()->resizeSection(FileRowModel::FileType, 10 * em);
    header()->resizeSection(FileRowModel::Modified, 10 * em);
    connect(this, &QAbstractItemView::activated, this,
        [this](const QModelIndex& index) { Q_EMIT rowActivated(rowAt(index)); });
}

void CFileView::setRows(std::vector<FileRow> rows)
{
    model_.setRows(std::move(rows));
}

void CFileView::addRow(const FileRow& row)
{
    model_.addRow(row);
}

bool CFileView::removeRow(const QString& name)
{
    const int row = model_.find(name);
    if (row < 0)
        return false;
    model_.removeRowAt(row);
    return true;
}

bool CFileView::replaceRow(const QString& name, const FileRow& replacement)
{
    const int row = model_.find(name);
    if (row < 0)
        return false;
    model_.replaceRowAt(row, replacement);
    return true;
}

void CFileView::setFileTitle(const QString& title)
{
    model_.setFileTitle(title);
}

std::vector<FileRow> CFileView::selectedRows() const
{
    QModelIndexList shown = selectionModel()->selectedRows();
    std::sort(shown.begin(), shown.end(),
        [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    std::vector<FileRow> rows;
    rows.reserve(std::size_t(shown.size()));
    for (const QModelIndex& index : shown)
        rows.push_back(rowAt(index));
    return rows;
}

std::optional<FileRow> CFileView::currentRow() const
{
    const QModelIndex current = currentIndex();
    if (!current.isValid())
        return std::nullopt;
    return rowAt(current);
}

bool CFileView::selectRow(const QString& name)
{
    const int row = model_.find(name);
    if (row < 0)
        return false;
    const QModelIndex shown = order_.mapFromSource(model_.index(row, 0));
    selectionModel()->setCurrentIndex(
        shown, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(shown);
    return true;
}

FileRow CFileView::rowAt(const QModelIndex& index) const
{
    if (!index.isValid())
        return {};
    return model_.row(order_.mapToSource(index).row());
}

} // namespace zelto
