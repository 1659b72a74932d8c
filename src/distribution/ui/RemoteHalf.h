#pragma once

#include "distribution/FileEntry.h"
#include "distribution/FolderDownload.h"
#include "ftp/FtpResult.h"
#include "ftp/JobSite.h"
#include "ftp/RemoteListing.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>

class QLabel;

namespace zelto {

class BrowserSession;
class CRemFilesView;
class CRemoteTree;
class Notifier;
class WorkerThreads;
struct FileRow;
struct JobServices;

// One remote half of the browser: the site's folder tree over the files of its current folder,
// and the connection they share. Every server operation runs on a worker under the connection's
// lock; meanwhile the half shows that it is busy, takes no other command, and the window stays
// responsive. Questions and messages go through the notifier, on the UI thread.
class RemoteHalf final : public QWidget {
    Q_OBJECT
public:
    // Asks for a text: a caption, a label and the text to start from; none when cancelled.
    using Prompt = std::function<std::optional<QString>(
        const QString& caption, const QString& label, const QString& text)>;

    RemoteHalf(JobServices& services, Notifier& notifier, WorkerThreads& threads,
        QWidget* parent = nullptr);
    ~RemoteHalf() override;

    [[nodiscard]] bool isConnected() const { return connected_; }
    [[nodiscard]] bool isBusy() const { return busy_; }
    // The connected site, with the current folder as its remote folder.
    [[nodiscard]] JobSite site() const;
    [[nodiscard]] QString folder() const { return folder_; }
    [[nodiscard]] CRemFilesView* files() const { return files_; }
    [[nodiscard]] CRemoteTree* tree() const { return tree_; }
    // The plain names of the selected files (folders left out); tells the user of any other.
    [[nodiscard]] QStringList selectedFileNames() const;
    // The files of the current folder as listed whose names match `mask` (FileMask), leaving out
    // names that cannot be used on this computer.
    [[nodiscard]] QStringList fileNamesMatching(const QString& mask) const;
    // Whether `name` is listed in the current folder as a folder.
    [[nodiscard]] bool isFolder(const QString& name) const;
    // The size of a file of the current folder as listed; 0 when unknown.
    [[nodiscard]] qint64 sizeOf(const QString& name) const;
    // For tests: the prompt in place of the input dialog.
    void setPrompt(Prompt prompt) { prompt_ = std::move(prompt); }
    // Asks for a text over this half, through the prompt.
    [[nodiscard]] std::optional<QString> ask(
        const QString& caption, const QString& label, const QString& text);

public Q_SLOTS:
    void quickConnect();
    void connectTo(const zelto::JobSite& site);
    void disconnectSite();
    void refresh();
    void openFolder(const QString& folder);
    void parentFolder();
    void filter();
    void renameSelected();
    void deleteSelected();
    void properties();
    void makeFolder();
    void removeFolder();

public:
    // Plans the put of whole local folders into the current folder (FolderUpload, placed as
    // FTPDirTree asks for a put that keeps its folders), makes their folders on the server, and
    // hands the files to `then` on the UI thread; all on the worker, as the half's other work.
    void prepareFolderPut(
        const QStringList& localFolders, std::function<void(std::vector<FileEntry>)> then);
    // Lists the folders `names` of the current folder and all below them (FolderDownload) for a
    // get into `localFolder`, and hands the plan to `then` on the UI thread.
    void prepareFolderGet(const QStringList& names, const QString& localFolder,
        std::function<void(FolderDownload)> then);
    // The plain names of the selected folders.
    [[nodiscard]] QStringList selectedFolderNames() const;

Q_SIGNALS:
    // The user asked for these files and folders of the current folder on the local side.
    void getRequested(const QStringList& names);
    // Local files dropped on the list: to be put into the current folder. `fromShell`: dragged
    // from outside the program.
    void putRequested(const QStringList& paths, bool fromShell = false);
    // Rows of another half's list dropped on this one: to be copied into the current folder.
    void copyRequested(zelto::RemoteHalf* source, const QStringList& names);
    void busyChanged(bool busy);

private:
    template <typename Work, typename Deliver> void run(Work work, Deliver deliver);
    void buildActions();
    void setBusy(bool busy);
    // The host, and the port when it is not FTP's own.
    [[nodiscard]] QString siteName() const;
    void showListing(const QString& folder, const RemoteListing& listing);
    void moveRows(CRemFilesView* source, const QString& folder);
    void activated(const FileRow& row);
    void showFailure(const FtpResult& result);

    JobServices& services_;
    Notifier& notifier_;
    WorkerThreads& threads_;
    std::stop_source stop_;
    std::shared_ptr<BrowserSession> session_;
    CRemoteTree* tree_;
    CRemFilesView* files_;
    QLabel* status_;
    Prompt prompt_;
    JobSite site_;
    QString folder_;
    RemoteListing listing_;
    QString mask_;
    bool connected_ = false;
    bool busy_ = false;
};

} // namespace zelto
