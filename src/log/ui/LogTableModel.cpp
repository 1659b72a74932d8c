#include "LogTableModel.h"

#include "platform/StringTable.h"

#include <array>

namespace zelto {
namespace {

// The fields' meaning belongs to the callers that log, so their headers stay neutral.
constexpr std::array<const char*, LogTableModel::ColumnCount> kHeaders { "Event", "No.", "Time",
    "Date", "Field 1", "Field 2", "Field 3", "Detail" };

} // namespace

LogTableModel::LogTableModel(QIcon success, QIcon failure, LogFilter filter, QObject* parent)
    : QAbstractTableModel(parent)
    , success_(std::move(success))
    , failure_(std::move(failure))
    , filter_(filter)
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
        if (index.column() == Message)
            return record.succeeded() ? success_ : failure_;
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
