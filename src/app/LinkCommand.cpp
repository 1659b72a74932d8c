#include "LinkCommand.h"

#include "app/ProgramServices.h"
#include "app/StartupChecks.h"
#include "distribution/LinkDistribution.h"
#include "queue/QueueBookkeeping.h"

#include <QCoreApplication>

#include <cstdio>

namespace zelto {

int LinkCommand::run(const QString& name, Notifier& notifier, SoundPlayer& player,
    const LinkDistribution::JobStarting& window)
{
    ProgramServices services(notifier, player);
    QueueBookkeeping bookkeeping(services.log(), notifier);
    LinkDistribution distribution(services.jobs(), services.threads(), bookkeeping, stdout);
    distribution.setJobStarting(window);
    // A link without sites ends well: it was told so, and nothing failed.
    distribution.start(name, [](LinkDistribution::End end) {
        QCoreApplication::exit(end == LinkDistribution::End::NotAllSent ? kExitFailed : kExitOk);
    });
    const int status = QCoreApplication::exec();
    // Every site has ended by now; this only joins the threads.
    services.threads().stopAll();
    // The notifier has named the files; a cron run must not end well without them.
    const bool recorded
        = bookkeeping.notRecorded().isEmpty() && services.log().recordsNotWritten() == 0;
    return recorded ? status : kExitFailed;
}

} // namespace zelto
