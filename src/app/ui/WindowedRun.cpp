#include "WindowedRun.h"

#include "app/BackgroundWork.h"
#include "app/ProgramServices.h"
#include "app/RunWindows.h"
#include "app/StartupChecks.h"
#include "app/ui/CMainFrame.h"
#include "app/ui/FrameTray.h"
#include "app/ui/MessageBoxNotifier.h"
#include "distribution/ProfileSite.h"
#include "distribution/ui/BrowserTransfers.h"
#include "distribution/ui/CFtpView.h"
#include "distribution/ui/CRunSummaryDlg.h"
#include "distribution/ui/CTransferDlg.h"
#include "distribution/ui/CTransfersDock.h"
#include "distribution/ui/MultiplePut.h"
#include "distribution/ui/RemoteFtpScreen.h"
#include "distribution/ui/RemoteHalf.h"
#include "distribution/ui/StandardFtpScreen.h"
#include "ftp/ui/CStatisticsDlg.h"
#include "log/ui/CLogView.h"
#include "options/ui/CSystemConfigSheet.h"
#include "options/ui/QtSoundPlayer.h"
#include "profiles/ui/CFileListView.h"
#include "profiles/ui/CLinkDlg.h"
#include "profiles/ui/CProfile.h"
#include "profiles/ui/CSite.h"
#include "queue/ui/CQueueDlg.h"
#include "scheduler/ui/CSchedulerDlg.h"
#include "scripts/ui/CScriptProgressDlg.h"
#include "settings/DataFolders.h"
#include "widgets/CHelpWindow.h"

#include <QApplication>
#include <QDateTime>
#include <QFileDialog>
#include <QPointer>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QWindow>

#include <cstdio>

namespace zelto {
namespace {

// For the start-up benchmark, not a user's option: with ZELTO_EXIT_AFTER_SHOW set, the program
// prints the moment (milliseconds since the epoch) at which the main window is first on the
// screen, and ends.
class FirstShowReport final : public QObject {
public:
    static void watch(QWidget& window)
    {
        if (qEnvironmentVariableIsEmpty("ZELTO_EXIT_AFTER_SHOW"))
            return;
        window.winId(); // makes the native window whose exposure tells
        window.windowHandle()->installEventFilter(new FirstShowReport(&window));
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Expose && static_cast<QWindow*>(watched)->isExposed()) {
            watched->removeEventFilter(this);
            // After the exposure has been painted.
            QTimer::singleShot(0, [] {
                std::printf("zelto: main window shown at %lld ms\n",
                    static_cast<long long>(QDateTime::currentMSecsSinceEpoch()));
                std::fflush(stdout);
                QCoreApplication::quit();
            });
        }
        return false;
    }

private:
    using QObject::QObject;
};

// Each job of a link in a transfer window of its own, cascaded as Send Parallel's are. The
// windows are children of `parent`, which ends them when it goes.
LinkDistribution::JobStarting cascadedTransferWindows(Notifier& notifier, QWidget* parent)
{
    return [&notifier, parent, previous = QPointer<CTransferDlg>()](
               const std::shared_ptr<TransferJob>& job) mutable {
        previous = new CTransferDlg(job, notifier, previous.data(), parent);
        previous->show();
    };
}

// Each script in a progress window of its own, a child of `parent`.
BackgroundWork::ScriptStarting scriptWindows(Notifier& notifier, QWidget* parent)
{
    return [&notifier, parent](const QString& path, std::shared_ptr<ScriptRun> run,
               std::shared_ptr<ScriptProgress> progress) {
        (new CScriptProgressDlg(path, std::move(run), std::move(progress), notifier, parent))
            ->show();
    };
}

} // namespace

int WindowedRun::run(int& argc, char** argv, const StartRequest& request)
{
    QApplication app(argc, argv);
    return runWindows(request);
}

int WindowedRun::runWindows(const StartRequest& request)
{
    MessageBoxNotifier notifier;
    // Unattended, the main window is never shown: the work shows its own windows, runs and the
    // program ends with it, not when the user closes a window or a message box that it showed.
    if (request.unattended) {
        QApplication::setQuitOnLastWindowClosed(false);
        QtSoundPlayer player;
        // Never shown: it takes the run's windows with it at the end, and as it covers the screen
        // the first of them opens in the screen's middle.
        QWidget owner;
        if (const QScreen* screen = QGuiApplication::primaryScreen())
            owner.setGeometry(screen->availableGeometry());
        const RunWindows windows { cascadedTransferWindows(notifier, &owner),
            scriptWindows(notifier, &owner) };
        return StartupChecks::runUnattended(request, notifier, player, windows);
    }

    StartupChecks::applyQueueStartRule();
    // The main frame's close ends the program: not the last transfer window that closes while the
    // frame waits in the tray.
    QApplication::setQuitOnLastWindowClosed(false);
    // Made first and gone last: the transfer work reports to the tray until the services end.
    FrameTray tray;
    QtSoundPlayer player;
    ProgramServices services(notifier, player, tray);
    BackgroundWork background(services);
    background.start();
    // The views go into the frame's panes, which keep them for the frame's life.
    auto* sites = new CFtpView;
    auto* files = new CFileListView(notifier);
    MultiplePut multiplePut(
        *sites, *files, services.jobs(), services.threads(), background.bookkeeping());
    BrowserTransfers transfers(services.jobs(), background.bookkeeping(), services.threads());
    StandardFtpScreen standardFtp(services.jobs(), notifier, services.threads(), transfers);
    RemoteFtpScreen remoteFtp(services.jobs(), notifier, services.threads(), transfers);
    FrameViews views;
    views.remoteSite = standardFtp.remotePane();
    views.localFiles = standardFtp.localPane();
    views.connectProfile = [&standardFtp](const QString& profile) {
        standardFtp.remote()->connectTo(jobSiteOfProfile(profile));
    };
    views.firstRemote = remoteFtp.half(0);
    views.secondRemote = remoteFtp.half(1);
    views.log = new CLogView(services.log(), notifier);
    views.sitesList = sites;
    views.fileList = files;
    views.multiplePutActions = multiplePut.actions();
    views.standardFtpActions = standardFtp.transferActions();
    views.showStatistics = &CStatisticsDlg::showOrRaise;
    views.transfers = new CTransfersDock;
    views.runScript = [&background](QWidget* frame) {
        const QString path = QFileDialog::getOpenFileName(frame, QObject::tr("Run FTP Script"),
            DataFolders::base(), QObject::tr("FTP scripts (*.cmd);;All files (*)"));
        if (!path.isEmpty())
            background.runScript(path);
    };
    // The frame lends the screens the events its profile bar listens to.
    const auto openProfiles = [&notifier, &services](QWidget* frame) {
        return CProfile::showOrRaise(
            notifier, static_cast<CMainFrame*>(frame)->profileEvents(), services.threads(), frame);
    };
    views.showProfiles = [openProfiles](QWidget* frame) { openProfiles(frame); };
    views.showLinks = [&notifier](QWidget* frame) {
        CLinkDlg::showOrRaise(notifier, static_cast<CMainFrame*>(frame)->profileEvents(), frame);
    };
    views.showFileLists = [&notifier](QWidget* frame) {
        auto& events = static_cast<CMainFrame*>(frame)->profileEvents();
        CSite* screen = CSite::showOrRaise(frame, notifier, events);
        QObject::connect(screen, &CSite::listsChanged, &events, &ProfileEvents::fileListsChanged,
            Qt::UniqueConnection);
    };
    views.showQueue = [&services, &notifier, &background](QWidget* frame) {
        CQueueDlg window(
            QueueStore(), services.threads(), notifier,
            [&background] { background.queueSender().sendQueue(); },
            [frame] { CHelpWindow::showSection(QStringLiteral("queue-window"), frame); }, frame);
        window.exec();
    };
    views.configureScheduler = [&notifier](QWidget* frame) {
        CSchedulerDlg window(notifier, &QDateTime::currentDateTime, frame);
        window.exec();
    };
    views.showOptions = [&services, &background, &notifier, &player](QWidget* frame) {
        if (auto* open = frame->findChild<CSystemConfigSheet*>()) {
            open->raise();
            open->activateWindow();
            return;
        }
        auto* sheet = new CSystemConfigSheet(player, notifier, frame);
        sheet->setAttribute(Qt::WA_DeleteOnClose);
        // Applied at once; a transfer under way keeps the options it started with.
        QObject::connect(sheet, &CSystemConfigSheet::applied, frame,
            [&services, &background, frame](bool logChanged) {
                static_cast<CMainFrame*>(frame)->optionsChanged();
                if (logChanged)
                    services.log().reloadSettings();
                background.optionsChanged();
            });
        QObject::connect(sheet, &CSystemConfigSheet::helpRequested, frame,
            [frame](const QString& anchor) { CHelpWindow::showSection(anchor, frame); });
        sheet->show();
    };
    CMainFrame frame(services, background, notifier, tray, std::move(views));
    // "Add Site..." with no profiles to choose from leads to the profile screen.
    sites->setNewSiteOpener([&frame, openProfiles] { openProfiles(&frame)->newSite(); });
    // A list saved under a new name from the Multiple FTP Put screen joins the profile bar.
    QObject::connect(
        files, &CFileListView::listSaved, &frame.profileEvents(), &ProfileEvents::fileListsChanged);
    // The sites listed for sending show a profile as it is now.
    QObject::connect(
        &frame.profileEvents(), &ProfileEvents::profilesChanged, sites, &CFtpView::refresh);
    // A link the scheduler starts shows its sites' jobs as Send Parallel does, cascaded.
    background.setLinkJobStarting(cascadedTransferWindows(notifier, &frame));
    // The end of every run to several sites is told in the status bar; a link's report opens
    // over the frame (Multiple Put opens its sends' own).
    const auto tellEnd = [&frame](const RunSummary& summary) {
        frame.statusBar()->showMessage(summary.statusLine());
    };
    QObject::connect(&multiplePut, &MultiplePut::sendEnded, &frame, tellEnd);
    background.setLinkEnded([&frame, tellEnd](const RunSummary& summary) {
        CRunSummaryDlg::open(summary, &frame);
        tellEnd(summary);
    });
    // Every script, from the menu or the scheduler, shows its steps in a window of its own.
    background.setScriptStarting(scriptWindows(notifier, &frame));
    QObject::connect(
        &frame, &CMainFrame::closed, qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    FirstShowReport::watch(frame);
    frame.showAtStart();
    const int status = QApplication::exec();
    // The workers end while the bookkeeping they report to is still here.
    background.stopAll();
    return status;
}

} // namespace zelto
