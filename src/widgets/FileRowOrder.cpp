#include "FileRowOrder.h"

#include "widgets/FileRowModel.h"

namespace zelto {
namespace {

int compareNames(const QString& left, const QString& right)
{
    const int folded = left.compare(right, Qt::CaseInsensitive);
    return folded != 0 ? folded : left.compare(right);
}

template <typename T> int compareValues(const T& left, const T& right)
{
    return left < right ? -1 : (right < left ? 1 : 0);
}

} // namespace

FileRowOrder::FileRowOrder(FileRowModel& rows, QObject* parent)
    : QSortFilterProxyModel(parent), rows_(rows)
{
    setSourceModel(&rows);
}

bool FileRowOrder::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const FileRow& a = rows_.row(left.row());
    const FileRow& b = rows_.row(right.row());
    // The sort turns the comparison round for a descending order; folders stay on top anyway.
    if (a.folder != b.folder)
        return sortOrder() == Qt::AscendingOrder ? a.folder : b.folder;
    int order = 0;
    switch (left.column()) {
    case FileRowModel::Size:
        order = compareValues(a.size, b.size);
        break;
    case FileRowModel::FileType:
        order
            = rows_.typeText(left.row()).compare(rows_.typeText(right.row()), Qt::CaseInsensitive);
        break;
    case FileRowModel::Modified:
        order = compareValues(a.modified, b.modified);
        break;
    default:
        break;
    }
    return (order != 0 ? order : compareNames(a.name, b.name)) < 0;
}

} // namespace zelto
