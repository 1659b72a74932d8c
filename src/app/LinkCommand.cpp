#include "LinkCommand.h"

#include "app/NoTray.h"
#include "app/StartupChecks.h"
#include "distribution/LinkDistribution.h"
#include "distribution/WorkerThreads.h"
#include "ftp/JobServices.h"
#include "log/LogWriter.h"
#include "options/SoundEvents.h"
#include "queue/QueueBookkeeping.h"

#include <QCoreApplication>

#include <cstdio>

namespace zelto {

int LinkCommand::run(const QString& name, Notifier& notifier, SoundPlayer& player)
{
    LogWriter log(notifier);
    SoundEvents sounds(player);
    NoTray tray;
    JobServices services { log, sounds, tray, notifier };
    QueueBookkeeping bookkeeping(log);
    WorkerThreads threads;

    LinkDistribution distribution(services, threads, bookkeeping, stdout);
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
