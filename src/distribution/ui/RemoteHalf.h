#pragma once

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
    // The size of a file of the current folder as listed; 0 when unknown.
    [[nodiscard]] qint64 sizeOf(const QString& name) const;
    // For tests: the prompt in place of the input dialog.
    void setPrompt(Prompt prompt) { prompt_ = std::move(prompt); }

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

Q_SIGNALS:
    // The user asked for these files of the current folder on the local side.
    void getRequested(const QStringList& names);
    // Local files dropped on the list: to be put into the current folder.
    void putRequested(const QStringList& paths);
    // Rows of another half's list dropped on this one: to be copied into the current folder.
    void copyRequested(zelto::RemoteHalf* source, const QStringList& names);
    void busyChanged(bool busy);

private:
    template <typename Work, typename Deliver> void run(Work work, Deliver deliver);
    void buildActions();
    void setBusy(bool busy);
    void showListing(const QString& folder, const RemoteListing& listing);
    void moveRows(CRemFilesView* source, const QString& folder);
    void activated(const FileRow& row);
    void showFailure(const FtpResult& result);
    [[nodiscard]] std::optional<QString> ask(
        const QString& caption, const QString& label, const QString& text);

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
