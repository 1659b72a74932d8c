#include "WindowedRun.h"

#include "app/BackgroundWork.h"
#include "app/ProgramServices.h"
#include "app/StartupChecks.h"
#include "app/ui/CMainFrame.h"
#include "app/ui/FrameTray.h"
#include "app/ui/MessageBoxNotifier.h"
#include "distribution/ui/BrowserTransfers.h"
#include "distribution/ui/CFtpView.h"
#include "distribution/ui/CTransferDlg.h"
#include "distribution/ui/MultiplePut.h"
#include "distribution/ui/RemoteFtpScreen.h"
#include "distribution/ui/RemoteHalf.h"
#include "distribution/ui/StandardFtpScreen.h"
#include "ftp/ui/CStatisticsDlg.h"
#include "log/ui/CLogView.h"
#include "options/ui/QtSoundPlayer.h"
#include "profiles/ui/CFileListView.h"
#include "scripts/ui/CScriptProgressDlg.h"
#include "settings/DataFolders.h"

#include <QApplication>
#include <QDateTime>
#include <QFileDialog>
#include <QPointer>
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

} // namespace

int WindowedRun::run(int& argc, char** argv, const StartRequest& request)
{
    QApplication app(argc, argv);
    return runWindows(request);
}

int WindowedRun::runWindows(const StartRequest& request)
{
    MessageBoxNotifier notifier;
    // Unattended, the main window is never shown: the work runs and the program ends with it,
    // not when the user closes a message box that the work showed.
    if (request.unattended) {
        QApplication::setQuitOnLastWindowClosed(false);
        QtSoundPlayer player;
        return StartupChecks::runUnattended(request, notifier, player);
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
    views.firstRemote = remoteFtp.half(0);
    views.secondRemote = remoteFtp.half(1);
    views.log = new CLogView(services.log(), notifier);
    views.sitesList = sites;
    views.fileList = files;
    views.multiplePutActions = multiplePut.actions();
    views.showStatistics = &CStatisticsDlg::showOrRaise;
    views.runScript = [&background](QWidget* frame) {
        const QString path = QFileDialog::getOpenFileName(frame, QObject::tr("Run FTP Script"),
            DataFolders::base(), QObject::tr("FTP scripts (*.cmd);;All files (*)"));
        if (!path.isEmpty())
            background.runScript(path);
    };
    CMainFrame frame(services, background, notifier, tray, std::move(views));
    // A link the scheduler starts shows its sites' jobs as Send Parallel does, cascaded.
    background.setLinkJobStarting([&notifier, &frame, previous = QPointer<CTransferDlg>()](
                                      const std::shared_ptr<TransferJob>& job) mutable {
        previous = new CTransferDlg(job, notifier, previous.data(), &frame);
        previous->show();
    });
    // Every script, from the menu or the scheduler, shows its steps in a window of its own.
    background.setScriptStarting(
        [&notifier, &frame](const QString& path, std::shared_ptr<ScriptRun> run,
            std::shared_ptr<ScriptProgress> progress) {
            (new CScriptProgressDlg(path, std::move(run), std::move(progress), notifier, &frame))
                ->show();
        });
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
