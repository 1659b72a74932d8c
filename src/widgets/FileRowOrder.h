#pragma once

#include <QSortFilterProxyModel>

namespace zelto {

class FileRowModel;

// The order of a file list: by the clicked column (names and types without regard to letter
// case, sizes and times as numbers), folders ahead of files in either direction, ties by name.
class FileRowOrder final : public QSortFilterProxyModel {
    Q_OBJECT
public:
    explicit FileRowOrder(FileRowModel& rows, QObject* parent = nullptr);

protected:
    [[nodiscard]] bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    FileRowModel& rows_;
};

} // namespace zelto
