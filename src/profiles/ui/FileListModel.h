#pragma once

#include "profiles/FileList.h"

#include <QAbstractTableModel>

#include <vector>

namespace zelto {

class Notifier;

// The rows of a file-list view: the entries of one FileList, edited only through the list's own
// operations, each followed by the notifications the views need. A folder entry stays one row;
// the send expands it.
class FileListModel final : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { Name, Folder, RemoteName, Size, ColumnCount };

    explicit FileListModel(QObject* parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(
        int section, Qt::Orientation orientation, int role) const override;

    [[nodiscard]] const FileList& list() const { return list_; }

    // Appends the entry unless the list holds it already.
    bool add(const FileListEntry& entry);
    // Empties the list and loads a "flist.ini" file.
    void open(const QString& listFile);
    // Adds the entries of a "flist.ini" file to those shown.
    void load(const QString& listFile);
    FileList::ServerFileLoad loadServerFile(
        const QString& flsFile, const QString& listFile, Notifier& notifier);
    int remove(const std::vector<int>& rows, Notifier& notifier);
    bool changeRemoteName(int row, const QString& answer, Notifier& notifier);
    [[nodiscard]] bool save(const QString& listFile);

Q_SIGNALS:
    // The list's changed flag was set or cleared.
    void changedFlagChanged(bool changed);

private:
    // Runs an edit that may reorder or drop rows as one reset of the model.
    template <typename Edit> auto resetAround(Edit&& edit);
    void reportFlag(bool before);
    [[nodiscard]] bool isFolder(int row) const;

    FileList list_;
    // Whether each row names a folder, looked up when the row is first shown: -1 not yet known.
    mutable std::vector<signed char> folders_;
};

} // namespace zelto
