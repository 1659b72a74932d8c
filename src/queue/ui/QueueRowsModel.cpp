#include "QueueRowsModel.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <algorithm>
#include <array>

namespace zelto {
namespace {

constexpr std::array<int, QueueRowsModel::kColumns> kHeaders
    = { ids::kColumnId, ids::kColumnRetries, ids::kColumnFile, ids::kColumnRemoteFileName,
          ids::kColumnSource, ids::kColumnDestination, ids::kColumnReason, ids::kColumnStatus };

// Negative, zero or positive, as the column orders the two items.
int compare(const QueueItem& a, const QueueItem& b, int column)
{
    switch (column) {
    case QueueRowsModel::Id:
        return a.position - b.position;
    case QueueRowsModel::Retries:
        return a.numTimes < b.numTimes ? -1 : int(a.numTimes > b.numTimes);
    case QueueRowsModel::Status:
        return a.status < b.status ? -1 : int(a.status > b.status);
    default:
        return QueueRowsModel::text(a, column).compare(
            QueueRowsModel::text(b, column), Qt::CaseInsensitive);
    }
}

} // namespace

void QueueRowsModel::setItems(std::vector<QueueItem> items)
{
    beginResetModel();
    items_ = std::move(items);
    endResetModel();
}

void QueueRowsModel::makeAllIdle()
{
    for (QueueItem& item : items_)
        item.status = QueueItem::kIdle;
    if (!items_.empty())
        Q_EMIT dataChanged(index(0, Status), index(rowCount() - 1, Status));
}

int QueueRowsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(items_.size());
}

int QueueRowsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : kColumns;
}

QString QueueRowsModel::text(const QueueItem& item, int column)
{
    switch (column) {
    case Id:
        return QString::number(item.position);
    case Retries:
        return QString::number(item.numTimes);
    case File:
        return item.localName;
    case RemoteFile:
        return item.remoteName;
    case Source:
        return item.source;
    case Destination:
        return item.destination;
    case Reason:
        return item.reason;
    case Status:
        return item.status != QueueItem::kIdle ? tr("SENDING") : tr("IDLE");
    default:
        return {};
    }
}

QVariant QueueRowsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || std::size_t(index.row()) >= items_.size())
        return {};
    const QueueItem& item = items_[std::size_t(index.row())];
    if (role == Qt::DisplayRole)
        return text(item, index.column());
    // A long reason is read whole in its tip.
    if (role == Qt::ToolTipRole && index.column() == Reason && !item.reason.isEmpty())
        return item.reason;
    return {};
}

QVariant QueueRowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0
        || section >= kColumns)
        return {};
    return StringTable::text(kHeaders[std::size_t(section)]);
}

void QueueRowsModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= kColumns)
        return;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<std::size_t> ranked(items_.size());
    for (std::size_t i = 0; i < ranked.size(); ++i)
        ranked[i] = i;
    std::stable_sort(ranked.begin(), ranked.end(), [&](std::size_t a, std::size_t b) {
        const int result = compare(items_[a], items_[b], column);
        return order == Qt::AscendingOrder ? result < 0 : result > 0;
    });
    std::vector<QueueItem> sorted;
    sorted.reserve(items_.size());
    std::vector<int> newRow(items_.size());
    for (std::size_t i = 0; i < ranked.size(); ++i) {
        sorted.push_back(std::move(items_[ranked[i]]));
        newRow[ranked[i]] = int(i);
    }
    items_ = std::move(sorted);
    QModelIndexList after;
    for (const QModelIndex& index : before)
        after.append(this->index(newRow[std::size_t(index.row())], index.column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

} // namespace zelto
