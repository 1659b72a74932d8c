#pragma once

#include <QList>
#include <QObject>

class QAction;
class QWidget;

namespace zelto {

class BrowserTransfers;
class CDirView;
class CDriveTree;
class Notifier;
class RemoteHalf;
class WorkerThreads;
struct JobServices;

// The two panes of the Standard FTP screen: a remote half and the local disks (the folder tree
// over the files of its current folder). Remote rows dropped on the local side are got into the
// local folder shown; local files dropped on the remote list are put into its folder; each runs
// in a transfer window, and the side that received files is listed again when it ends. Dropped
// folders go whole, with their sub-folders, when DragDropDirs (DragDropSubDirs for a drop from
// outside the program) is "YES"; otherwise they are left out and the user is told once.
class StandardFtpScreen final : public QObject {
    Q_OBJECT
public:
    StandardFtpScreen(JobServices& jobs, Notifier& notifier, WorkerThreads& threads,
        BrowserTransfers& transfers, QObject* parent = nullptr);

    // The frame takes both into its panes and keeps them.
    [[nodiscard]] QWidget* remotePane() const;
    [[nodiscard]] QWidget* localPane() const { return local_; }
    [[nodiscard]] RemoteHalf* remote() const { return remote_; }
    [[nodiscard]] CDirView* localFiles() const { return files_; }
    // FTP Get, FTP Get Wildcard, FTP Put and FTP Put Wildcard, for the frame's FTP menu; enabled
    // while the screen is shown and its site connected and idle.
    [[nodiscard]] QList<QAction*> transferActions() const { return actions_; }

    // Ask for a mask, then get every file of the remote folder (put every file of the local
    // folder) whose name matches it.
    void getMatching();
    void putMatching();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildActions();
    void updateActions();
    void get(const QStringList& names);
    void getFolders(const QStringList& names);
    void put(const QStringList& paths, bool fromShell = false);
    void localActivated(const QString& path);
    // Whether dropped folders go whole; tells the user once when they are left out.
    [[nodiscard]] bool takesFolders(const QStringList& folders, bool fromShell);

    Notifier& notifier_;
    BrowserTransfers& transfers_;
    RemoteHalf* remote_;
    QWidget* local_;
    CDriveTree* drives_;
    CDirView* files_;
    QList<QAction*> actions_;
};

} // namespace zelto
