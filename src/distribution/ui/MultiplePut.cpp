#include "MultiplePut.h"

#include "distribution/ParallelStarter.h"
#include "distribution/RunOffThread.h"
#include "distribution/ui/CFtpView.h"
#include "distribution/ui/CRunSummaryDlg.h"
#include "distribution/ui/CTransferDlg.h"
#include "profiles/ui/CFileListView.h"
#include "widgets/ToolIcons.h"

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>

namespace zelto {
namespace {

// A small captioned window with one line of text and no close button.
QDialog* waitWindow(const QString& text, QWidget* parent)
{
    auto* window = new QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    window->setAttribute(Qt::WA_DeleteOnClose);
    window->setAttribute(Qt::WA_QuitOnClose, false);
    window->setWindowTitle(QCoreApplication::applicationName());
    auto* layout = new QVBoxLayout(window);
    layout->setContentsMargins(24, 18, 24, 18);
    layout->addWidget(new QLabel(text, window));
    return window;
}

} // namespace

// The windows of one Send Parallel, opened one per tick of its starter.
struct MultiplePut::Parallel {
    std::vector<JobSite> sites;
    std::vector<FileEntry> files;
    SummarisedRun* summary = nullptr;
    // The window opened last: the next one's anchor, while it is open.
    QPointer<CTransferDlg> previous;
    std::unique_ptr<ParallelStarter> starter;
};

MultiplePut::MultiplePut(CFtpView& sites, CFileListView& files, JobServices& jobs,
    WorkerThreads& threads, JobOutcomeSink& outcomes, QObject* parent)
    : QObject(parent)
    , sites_(sites)
    , files_(files)
    , jobs_(jobs)
    , threads_(threads)
    , outcomes_(outcomes)
    , sendParallel_(
          new QAction(ToolIcons::icon(ToolIcons::Kind::SendParallel), tr("Send P&arallel"), this))
    , sendSerial_(
          new QAction(ToolIcons::icon(ToolIcons::Kind::SendSerial), tr("Send S&erial"), this))
{
    sendParallel_->setToolTip(tr("Send the files to every site at once, one window per site"));
    sendSerial_->setToolTip(tr("Send the files to the sites one after another, in one window"));
    sendParallel_->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
    sendSerial_->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Return));
    for (QAction* action : actions())
        action->setStatusTip(action->toolTip());
    connect(sendParallel_, &QAction::triggered, this, &MultiplePut::sendParallel);
    connect(sendSerial_, &QAction::triggered, this, &MultiplePut::sendSerial);
}

MultiplePut::~MultiplePut()
{
    if (wait_)
        wait_->close();
}

void MultiplePut::sendParallel()
{
    prepare(false);
}

void MultiplePut::sendSerial()
{
    prepare(true);
}

void MultiplePut::prepare(bool serial)
{
    if (preparing_)
        return;
    // Files still being dropped belong to this send.
    if (files_.adding()) {
        setPreparing(true);
        connect(
            &files_, &CFileListView::addingFinished, this,
            [this, serial] {
                setPreparing(false);
                prepare(serial);
            },
            Qt::SingleShotConnection);
        return;
    }
    // Profiles are read when they are needed: a site edited since it was listed is sent as it
    // is now.
    sites_.refresh();
    std::vector<JobSite> sites = sites_.sites();
    const std::size_t siteCount = sites.size();
    setPreparing(true);

    // The worker reaches back only through events to this thread, dropped once this is gone.
    auto status = [self = QPointer<QObject>(this), this](const QString& text) {
        postWhileAlive(self, [this, text] { showWait(text); });
    };
    runOffThread(
        threads_, this,
        [siteCount, entries = files_.entries(), &notifier = jobs_.notifier, status] {
            return FileSet::prepare(siteCount, entries, notifier, status);
        },
        [this, serial, sites = std::move(sites)](
            std::optional<FileSet> set) { prepared(serial, sites, std::move(set)); });
}

void MultiplePut::showWait(const QString& text)
{
    // The empty text that ends the preparation is left to prepared(), which keeps the window up
    // long enough to be read.
    if (text.isEmpty() || wait_)
        return;
    wait_ = waitWindow(text, sites_.window());
    wait_->show();
    waitShown_.start();
}

void MultiplePut::prepared(
    bool serial, const std::vector<JobSite>& sites, std::optional<FileSet> set)
{
    if (!set) {
        setPreparing(false);
        return;
    }
    const auto shown = std::chrono::milliseconds(waitShown_.isValid() ? waitShown_.elapsed() : 0);
    const auto left = std::max(kWaitShown - shown, std::chrono::milliseconds::zero());
    QTimer::singleShot(
        left, this, [this, serial, sites, set = std::make_shared<const FileSet>(std::move(*set))] {
            if (wait_)
                wait_->close();
            waitShown_.invalidate();
            setPreparing(false);
            start(serial, sites, *set);
        });
}

void MultiplePut::start(bool serial, const std::vector<JobSite>& sites, const FileSet& set)
{
    if (!serial) {
        startParallel(sites, set);
        return;
    }
    TransferJob::Setup setup;
    setup.mode = TransferMode::DistributionPut;
    setup.serial = true;
    setup.sites = sites;
    setup.files = set.files();
    open(newRun(tr("Send Serial"), 1), std::move(setup), nullptr);
}

void MultiplePut::startParallel(const std::vector<JobSite>& sites, const FileSet& set)
{
    std::erase_if(parallel_, [](const auto& send) { return send->starter->finished(); });
    auto send = std::make_unique<Parallel>();
    send->sites = sites;
    send->files = set.files();
    send->summary = &newRun(tr("Send Parallel"), sites.size());
    Parallel& run = *send;
    run.starter = std::make_unique<ParallelStarter>(
        threads_, run.sites.size(), [this, &run](std::size_t i) {
            TransferJob::Setup setup;
            setup.mode = TransferMode::DistributionPut;
            setup.serial = false;
            setup.sites = { run.sites[i] };
            setup.files = run.files;
            run.previous = open(*run.summary, std::move(setup), run.previous.data());
        });
    parallel_.push_back(std::move(send));
    run.starter->start();
}

SummarisedRun& MultiplePut::newRun(const QString& title, std::size_t jobs)
{
    std::erase_if(runs_, [](const auto& run) { return run->ended(); });
    runs_.push_back(std::make_unique<SummarisedRun>(
        title, jobs, jobs_, threads_, outcomes_, [this](const RunSummary& summary) {
            CRunSummaryDlg::open(summary, sites_.window());
            Q_EMIT sendEnded(summary);
        }));
    return *runs_.back();
}

CTransferDlg* MultiplePut::open(SummarisedRun& run, TransferJob::Setup setup, CTransferDlg* anchor)
{
    const std::shared_ptr<TransferJob> job = run.makeJob(std::move(setup));
    auto* window = new CTransferDlg(job, jobs_.notifier, anchor, sites_.window());
    window->show();
    run.start(job);
    Q_EMIT transferWindowOpened(window);
    return window;
}

void MultiplePut::setPreparing(bool preparing)
{
    preparing_ = preparing;
    for (QAction* action : actions())
        action->setEnabled(!preparing);
}

} // namespace zelto
