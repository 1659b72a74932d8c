#pragma once

#include "log/LogRecord.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <QList>

#include <vector>

namespace zelto {

// Every log record of the run, in order of writing, and the rows that the current filter shows.
// A row is an index into the records, so a change of filter rebuilds one vector of indices and
// resets the view instead of building a widget item per record.
class LogTableModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Message, Seq, Time, Date, Field1, Field2, Field3, Detail, ColumnCount };

    // `outcomeIcons[n]` marks the rows whose record has outcome n; an outcome past the end has
    // none.
    LogTableModel(std::vector<QIcon> outcomeIcons, LogFilter filter, QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(
        int section, Qt::Orientation orientation, int role) const override;
    // Orders the rows by `column`: numbers by value, the time and date by the order of writing
    // (their texts do not sort), the other texts without regard to case; equal rows keep the
    // order of writing. The rows added later take their place in the same order.
    void sort(int column, Qt::SortOrder order) override;

    // Keeps the records, in the order given, and adds a row for each that passes the filter.
    void append(const QList<LogRecord>& records);
    // Empties the record list along with the rows: a cleared log stays cleared under any filter.
    void clear();

    [[nodiscard]] LogFilter filter() const { return filter_; }
    // Shows, in order of writing, the records that pass `filter`.
    void setFilter(LogFilter filter);

    [[nodiscard]] const LogRecord& recordAt(int row) const { return records_[shown_[row]]; }
    // The records of the rows, in row order.
    [[nodiscard]] QList<LogRecord> shownRecords() const;

    // What a column shows of a record; the event column shows the text of the record's id.
    [[nodiscard]] static QString cellText(const LogRecord& record, int column);

private:
    [[nodiscard]] bool before(int left, int right) const; // records_ indices, in the sort order
    void sortShown();

    std::vector<QIcon> outcomeIcons_;
    LogFilter filter_;
    int sortColumn_ = Seq;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    std::vector<LogRecord> records_;
    std::vector<int> shown_; // indices into records_, ascending
};

} // namespace zelto
