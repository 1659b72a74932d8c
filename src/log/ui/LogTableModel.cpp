#include "LogTableModel.h"

#include "platform/StringTable.h"

#include <algorithm>
#include <array>

namespace zelto {
namespace {

// The fields' meaning belongs to the callers that log, so their headers stay neutral.
constexpr std::array<const char*, LogTableModel::ColumnCount> kHeaders { "Event", "No.", "Time",
    "Date", "Field 1", "Field 2", "Field 3", "Detail" };

} // namespace

LogTableModel::LogTableModel(std::vector<QIcon> outcomeIcons, LogFilter filter, QObject* parent)
    : QAbstractTableModel(parent), outcomeIcons_(std::move(outcomeIcons)), filter_(filter)
{
}

int LogTableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int LogTableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant LogTableModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const LogRecord& record = recordAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return cellText(record, index.column());
    case Qt::DecorationRole:
        if (index.column() == Message && record.outcome >= 0
            && std::size_t(record.outcome) < outcomeIcons_.size())
            return outcomeIcons_[std::size_t(record.outcome)];
        return {};
    default:
        return {};
    }
}

QVariant LogTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0
        || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    return QString::fromLatin1(kHeaders[static_cast<std::size_t>(section)]);
}

bool LogTableModel::before(int left, int right) const
{
    const LogRecord& a = records_[std::size_t(left)];
    const LogRecord& b = records_[std::size_t(right)];
    int compared = 0;
    switch (sortColumn_) {
    case Seq:
    case Time:
    case Date:
        break;
    default:
        compared = cellText(a, sortColumn_).compare(cellText(b, sortColumn_), Qt::CaseInsensitive);
        break;
    }
    if (compared == 0)
        compared = a.seq < b.seq ? -1 : (a.seq > b.seq ? 1 : 0);
    if (compared == 0)
        compared = left < right ? -1 : (left > right ? 1 : 0);
    return sortOrder_ == Qt::AscendingOrder ? compared < 0 : compared > 0;
}

void LogTableModel::sortShown()
{
    std::sort(shown_.begin(), shown_.end(), [this](int a, int b) { return before(a, b); });
}

void LogTableModel::sort(int column, Qt::SortOrder order)
{
    if (column < 0 || column >= ColumnCount)
        return;
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> records;
    for (const QModelIndex& index : before)
        records.push_back(shown_[std::size_t(index.row())]);
    sortColumn_ = column;
    sortOrder_ = order;
    sortShown();
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        const auto row = std::find(shown_.begin(), shown_.end(), records[std::size_t(i)]);
        after.append(index(int(row - shown_.begin()), before[i].column()));
    }
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

void LogTableModel::append(const QList<LogRecord>& records)
{
    std::vector<int> added;
    for (const LogRecord& record : records) {
        if (record.shownUnder(filter_))
            added.push_back(static_cast<int>(records_.size()));
        records_.push_back(record);
    }
    if (added.empty())
        return;
    const int first = static_cast<int>(shown_.size());
    beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
    shown_.insert(shown_.end(), added.begin(), added.end());
    endInsertRows();
    // In the order of writing new rows come last; in any other they move to their places.
    if (sortColumn_ != Seq || sortOrder_ != Qt::AscendingOrder)
        sort(sortColumn_, sortOrder_);
}

void LogTableModel::clear()
{
    beginResetModel();
    records_.clear();
    shown_.clear();
    endResetModel();
}

void LogTableModel::setFilter(LogFilter filter)
{
    beginResetModel();
    filter_ = filter;
    shown_.clear();
    for (std::size_t i = 0; i < records_.size(); ++i) {
        if (records_[i].shownUnder(filter))
            shown_.push_back(static_cast<int>(i));
    }
    sortShown();
    endResetModel();
}

QList<LogRecord> LogTableModel::shownRecords() const
{
    QList<LogRecord> records;
    records.reserve(static_cast<qsizetype>(shown_.size()));
    for (const int index : shown_)
        records.append(records_[static_cast<std::size_t>(index)]);
    return records;
}

QString LogTableModel::cellText(const LogRecord& record, int column)
{
    switch (column) {
    case Message:
        return StringTable::text(static_cast<int>(record.messageId));
    case Seq:
        return QString::number(record.seq);
    case Time:
        return record.time;
    case Date:
        return record.date;
    case Field1:
        return record.field1;
    case Field2:
        return record.field2;
    case Field3:
        return record.field3;
    case Detail:
        return record.detail;
    default:
        return {};
    }
}

} // namespace zelto
