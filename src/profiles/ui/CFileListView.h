#pragma once

#include "profiles/FileListEntry.h"
#include "profiles/ui/FileListModel.h"

#include <QStringList>
#include <QTimer>
#include <QTreeView>

#include <deque>
#include <functional>
#include <optional>
#include <vector>

class QMimeData;

namespace zelto {

class Notifier;

// The entries of a file list, as the multiple-put screen and the file-list screen show them: name,
// folder, remote name and size. Files and folders are added by the file dialogs or dropped from
// the desktop; a folder stays one entry, expanded into its files when a send builds its file set.
// Removing, renaming, loading and saving are the list's own operations, asking through the
// notifier.
//
// A view tied to a list folder (the file-list screen) saves there; a view tied to none (the
// multiple-put screen) asks for a name and saves under the data folder's "Files".
class CFileListView final : public QTreeView {
    Q_OBJECT
public:
    // The dialogs the view opens, replaceable so that tests answer them. An empty answer (or no
    // value) means the user cancelled.
    struct Dialogs {
        std::function<QStringList()> chooseFiles;
        std::function<QString()> chooseFolder;
        std::function<QString()> chooseServerFile;
        // A one-line text prompt, pre-filled with `initial`.
        std::function<std::optional<QString>(const QString& prompt, const QString& initial)>
            askText;
    };

    explicit CFileListView(Notifier& notifier, QWidget* parent = nullptr);

    [[nodiscard]] Dialogs& dialogs() { return dialogs_; }
    [[nodiscard]] const std::vector<FileListEntry>& entries() const
    {
        return model_.list().entries();
    }
    [[nodiscard]] bool changed() const { return model_.list().changed(); }
    // Dropped or chosen paths are still being added.
    [[nodiscard]] bool adding() const { return !pending_.empty(); }
    [[nodiscard]] QString listFolder() const { return listFolder_; }

    // Ties the view to a list folder and shows that list (the file-list screen's selection); an
    // empty folder empties the view and ties it to none.
    void openList(const QString& listFolder);
    // The list the view is tied to moved to `listFolder` (renamed): the entries stay as they are.
    void setListFolder(const QString& listFolder) { listFolder_ = listFolder; }
    // Adds the entries of a stored list ("flist.ini") to the view, which stays tied as it was.
    void loadList(const QString& listFile);

    // Adds the local files and folders named by dropped urls (on the view, or on the frame that
    // hands them on). False when none of them is a local path.
    bool addDropped(const QMimeData& data);
    // Adds files and folders a slice at a time from the event loop, so that thousands of them
    // never freeze the window; addingFinished() follows the last one.
    void addPaths(const QStringList& paths);

public Q_SLOTS:
    void addFiles();
    void addFolder();
    void removeSelected();
    void changeRemoteName();
    void loadServerFile();
    void saveList();

Q_SIGNALS:
    void changedFlagChanged(bool changed);
    void addingFinished();
    // The list was written to the "flist.ini" of this folder (made for a new name).
    void listSaved(const QString& listFolder);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void createActions();
    void setDefaultDialogs();
    void addSlice();
    // The selected rows, top to bottom.
    [[nodiscard]] std::vector<int> selectedRows() const;

    Notifier& notifier_;
    FileListModel model_;
    Dialogs dialogs_;
    QString listFolder_;
    std::deque<QString> pending_;
    QTimer slices_;
};

} // namespace zelto
