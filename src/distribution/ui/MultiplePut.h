#pragma once

#include "distribution/FileSet.h"
#include "distribution/SummarisedRun.h"
#include "distribution/TransferJob.h"
#include "ftp/JobSite.h"

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QPointer>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

class QAction;
class QDialog;

namespace zelto {

class CFileListView;
class CFtpView;
class CTransferDlg;
class JobOutcomeSink;
class WorkerThreads;

// The two commands of the multiple-put screen, Send Parallel and Send Serial, over its sites list
// and its file list. Both refuse an empty sites list or file list, then build the file set on a
// worker while a small window says so, so that a list of many thousand files never holds the
// window. Send Parallel then opens one transfer window and job per site, an interval apart, each
// window cascading from the one before; Send Serial opens one window whose job walks the sites.
// When a send's last site has ended, its report opens over the window with a row per site.
// The views belong to the frame and outlive this object.
class MultiplePut final : public QObject {
    Q_OBJECT
public:
    // The wait window stays up at least this long, so that it is seen.
    static constexpr std::chrono::milliseconds kWaitShown { 1000 };

    // `outcomes` is the queue's bookkeeping, which hears the end of every site.
    MultiplePut(CFtpView& sites, CFileListView& files, JobServices& jobs, WorkerThreads& threads,
        JobOutcomeSink& outcomes, QObject* parent = nullptr);
    ~MultiplePut() override;

    [[nodiscard]] QAction* sendParallelAction() const { return sendParallel_; }
    [[nodiscard]] QAction* sendSerialAction() const { return sendSerial_; }
    // Both, for the frame's menu and tool bar.
    [[nodiscard]] QList<QAction*> actions() const { return { sendParallel_, sendSerial_ }; }
    // A send is building its file set; the commands wait for it.
    [[nodiscard]] bool preparing() const { return preparing_; }

public Q_SLOTS:
    void sendParallel();
    void sendSerial();

Q_SIGNALS:
    // A transfer window was shown and its job started.
    void transferWindowOpened(CTransferDlg* window);
    // A send's last site has ended and its report was opened.
    void sendEnded(const zelto::RunSummary& summary);

private:
    struct Parallel;

    void prepare(bool serial);
    void showWait(const QString& text);
    void prepared(bool serial, const std::vector<JobSite>& sites, std::optional<FileSet> set);
    void start(bool serial, const std::vector<JobSite>& sites, const FileSet& set);
    void startParallel(const std::vector<JobSite>& sites, const FileSet& set);
    [[nodiscard]] SummarisedRun& newRun(const QString& title, std::size_t jobs);
    CTransferDlg* open(SummarisedRun& run, TransferJob::Setup setup, CTransferDlg* anchor);
    void setPreparing(bool preparing);

    CFtpView& sites_;
    CFileListView& files_;
    JobServices& jobs_;
    WorkerThreads& threads_;
    JobOutcomeSink& outcomes_;
    QAction* sendParallel_;
    QAction* sendSerial_;
    bool preparing_ = false;
    QPointer<QDialog> wait_;
    QElapsedTimer waitShown_;
    // The parallel sends whose windows are still being opened, or were last.
    std::vector<std::unique_ptr<Parallel>> parallel_;
    // The sends whose jobs run, or ended last; their jobs report their sites' ends to them.
    std::vector<std::unique_ptr<SummarisedRun>> runs_;
};

} // namespace zelto
