#pragma once

#include "widgets/FileRow.h"
#include "widgets/FileRowModel.h"
#include "widgets/FileRowOrder.h"

#include <QTreeView>

#include <optional>
#include <vector>

namespace zelto {

// The list base of local and remote file lists: File, Size, File Type and Modified, sorted by
// the clicked header with folders first, whole rows selected, several at a time, headers that
// can be dragged into another order. Owners feed it plain rows; drag and drop and context menus
// belong to the lists built on it.
class CFileView : public QTreeView {
    Q_OBJECT
public:
    using Column = FileRowModel::Column;

    explicit CFileView(QWidget* parent = nullptr);

    // Reads TimeType, the order of the Modified column's dates, and shows every list by it.
    static void readDateOrder();

    // Shows these rows in place of the ones shown, in the current order.
    void setRows(std::vector<FileRow> rows);
    // The rows in the order they were given (not the order shown).
    [[nodiscard]] const std::vector<FileRow>& rows() const { return model_.rows(); }
    void addRow(const FileRow& row);
    // Takes out the row of that exact name; false when there is none.
    bool removeRow(const QString& name);
    // Puts `replacement` in place of the row of that exact name (a rename); false when none.
    bool replaceRow(const QString& name, const FileRow& replacement);

    // The title of the File column, "File (*.zip)" under a filter; empty gives plain "File".
    void setFileTitle(const QString& title);
    [[nodiscard]] QString fileTitle() const { return model_.fileTitle(); }

    // The selected rows, top to bottom as shown.
    [[nodiscard]] std::vector<FileRow> selectedRows() const;
    [[nodiscard]] std::optional<FileRow> currentRow() const;
    // Makes the row of that exact name the current and only selected one.
    bool selectRow(const QString& name);
    // The row shown at `index` of the view's own model.
    [[nodiscard]] FileRow rowAt(const QModelIndex& index) const;

Q_SIGNALS:
    // Double click or Return on a row.
    void rowActivated(const zelto::FileRow& row);

private:
    FileRowModel model_;
    FileRowOrder order_;
};

} // namespace zelto
