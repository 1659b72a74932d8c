#pragma once

#include "profiles/FileListStore.h"

#include <QMainWindow>

namespace zelto {

class CDirView;
class CDriveTree;
class CFileListView;
class CSiteTree;
class Notifier;
class ProfileEvents;
class StoredSplitter;

// The file-list screen: the local folders and their files on the left, the file lists and the
// entries of the chosen one on the right. Files go into the list by dragging them across, by a
// double click or by "Add to List"; the list is saved into its own folder, and the user is asked
// to save a changed list before another is opened or the screen closes.
class CSite final : public QMainWindow {
    Q_OBJECT
public:
    CSite(Notifier& notifier, ProfileEvents& events, QWidget* frame = nullptr);

    // The one screen over the frame: made on the first call, raised on the next ones.
    static CSite* showOrRaise(QWidget* frame, Notifier& notifier, ProfileEvents& events);

    [[nodiscard]] CDriveTree& driveTree() const { return *driveTree_; }
    [[nodiscard]] CDirView& dirView() const { return *dirView_; }
    [[nodiscard]] CSiteTree& siteTree() const { return *siteTree_; }
    [[nodiscard]] CFileListView& filesView() const { return *filesView_; }

public Q_SLOTS:
    // Adds the files and folders selected on the left to the list.
    void addSelected();

Q_SIGNALS:
    // A list was made, renamed or deleted: whatever offers the lists reads them again.
    void listsChanged();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildPanes();
    void buildToolBar();
    void wirePanes();
    void openList(const QString& folder);
    // Asks whether to save the shown list when it has changed; Yes saves it where it belongs.
    void leaveList();
    void listSaved(const QString& folder);
    void saveLayout() const;

    Notifier& notifier_;
    FileListStore store_;
    CDriveTree* driveTree_ = nullptr;
    CDirView* dirView_ = nullptr;
    CSiteTree* siteTree_ = nullptr;
    CFileListView* filesView_ = nullptr;
    QList<StoredSplitter*> splitters_;
    QAction* addAction_ = nullptr;
};

} // namespace zelto
