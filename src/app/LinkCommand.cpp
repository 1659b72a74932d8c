#include "LinkCommand.h"

#include "app/ProgramServices.h"
#include "app/StartupChecks.h"
#include "distribution/LinkDistribution.h"
#include "queue/QueueBookkeeping.h"

#include <QCoreApplication>

#include <cstdio>

namespace zelto {

int LinkCommand::run(const QString& name, Notifier& notifier, SoundPlayer& player)
{
    ProgramServices services(notifier, player);
    QueueBookkeeping bookkeeping(services.log());
    LinkDistribution distribution(services.jobs(), services.threads(), bookkeeping, stdout);
    int status = kExitOk;
    const bool running = distribution.start(
        name, [](bool allSent) { QCoreApplication::exit(allSent ? kExitOk : kExitFailed); });
    if (running)
        status = QCoreApplication::exec();
    // Every site has ended by now; this only joins the threads.
    services.threads().stopAll();
    return status;
}

} // namespace zelto
