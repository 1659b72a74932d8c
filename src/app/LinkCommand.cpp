#include "LinkCommand.h"

#include "app/StartupChecks.h"
#include "distribution/FailureLogSink.h"
#include "distribution/LinkDistribution.h"
#include "distribution/WorkerThreads.h"
#include "ftp/JobServices.h"
#include "log/LogWriter.h"
#include "options/SoundEvents.h"
#include "platform/TrayIndicator.h"

#include <QCoreApplication>

#include <cstdio>

namespace zelto {
namespace {

// An unattended run has no tray icon.
class NoTray final : public TrayIndicator {
public:
    void setState(TrayState) override { }
};

} // namespace

int LinkCommand::run(const QString& name, Notifier& notifier, SoundPlayer& player)
{
    LogWriter log(notifier);
    SoundEvents sounds(player);
    NoTray tray;
    JobServices services { log, sounds, tray, notifier };
    // Until the queue takes them, the files that failed are logged.
    FailureLogSink failures(log);
    WorkerThreads threads;

    LinkDistribution distribution(services, threads, failures, stdout);
    int status = kExitOk;
    const bool running = distribution.start(
        name, [](bool allSent) { QCoreApplication::exit(allSent ? kExitOk : kExitFailed); });
    if (running)
        status = QCoreApplication::exec();
    // Every site has ended by now; this only waits for the threads to leave.
    threads.stopAll(WorkerThreads::kExitWait);
    return status;
}

} // namespace zelto
