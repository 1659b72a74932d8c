#pragma once

#include "queue/QueueItem.h"

#include <QAbstractTableModel>

#include <vector>

namespace zelto {

// The queue window's rows: one item of the queue file each, in the eight columns of the window.
// Sorting reorders the rows only; the file follows when the rows are written back.
class QueueRowsModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Id, Retries, File, RemoteFile, Source, Destination, Reason, Status, kColumns };

    using QAbstractTableModel::QAbstractTableModel;

    void setItems(std::vector<QueueItem> items);
    [[nodiscard]] const std::vector<QueueItem>& items() const { return items_; }
    // Every item idle, as the file now has them.
    void makeAllIdle();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(
        int section, Qt::Orientation orientation, int role) const override;
    // Numbers for Id, Retries and Status; the texts without regard to case. Equal rows keep their
    // order.
    void sort(int column, Qt::SortOrder order) override;

    [[nodiscard]] static QString text(const QueueItem& item, int column);

private:
    std::vector<QueueItem> items_;
};

} // namespace zelto
