#pragma once

#include <QObject>

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
// in a transfer window, and the side that received files is listed again when it ends.
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

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void get(const QStringList& names);
    void put(const QStringList& paths);
    void localActivated(const QString& path);

    BrowserTransfers& transfers_;
    RemoteHalf* remote_;
    QWidget* local_;
    CDriveTree* drives_;
    CDirView* files_;
};

} // namespace zelto
