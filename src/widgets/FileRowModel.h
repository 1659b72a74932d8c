#pragma once

#include "widgets/FileRow.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>

#include <vector>

namespace zelto {

// The rows of a file list in the order they were given, with the type text and icon of each,
// looked up once per extension so that a folder of 10,000 files costs a few lookups.
class FileRowModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { File, Size, FileType, Modified, ColumnCount };

    explicit FileRowModel(QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(
        int section, Qt::Orientation orientation, int role) const override;
    // Rows drag out to the other lists and trees; without the flag the view never starts a drag.
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

    [[nodiscard]] const std::vector<FileRow>& rows() const { return rows_; }
    [[nodiscard]] const FileRow& row(int row) const { return rows_[std::size_t(row)]; }
    [[nodiscard]] const QString& typeText(int row) const;

    void setRows(std::vector<FileRow> rows);
    void addRow(const FileRow& row);
    // The first row of that exact name; -1 when there is none.
    [[nodiscard]] int find(const QString& name) const;
    void removeRowAt(int row);
    void replaceRowAt(int row, const FileRow& replacement);
    // How the Modified column writes a date, from the TimeType word ("MM/DD", "DD/MM", "MON/DD",
    // "DD/MON"; any other word is "MM/DD"); one choice for every list of the program.
    static void setDateOrder(const QString& timeType);
    [[nodiscard]] static QString dateText(const QDateTime& modified);

    // The title of the first column; empty gives the usual "File".
    void setFileTitle(const QString& title);
    [[nodiscard]] QString fileTitle() const;

private:
    struct FileKind {
        QString text;
        QIcon icon;
    };
    [[nodiscard]] int kindOf(const FileRow& row);

    std::vector<FileRow> rows_;
    // Index into kinds_ for each row.
    std::vector<int> rowKinds_;
    std::vector<FileKind> kinds_;
    // Kinds by lower-cased extension (or whole name without one); folders have their own key.
    QHash<QString, int> kindByKey_;
    QString fileTitle_;
};

} // namespace zelto
