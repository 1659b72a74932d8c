#include "QueueCommand.h"

#include "app/ProgramServices.h"
#include "app/StartupChecks.h"
#include "distribution/LinkReport.h"
#include "platform/Notifier.h"
#include "platform/PrivateProfile.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "queue/QueueBookkeeping.h"
#include "queue/QueueSender.h"

#include <QCoreApplication>

#include <atomic>
#include <cstdio>

namespace zelto {
namespace {

// Prints the items of each job as it ends (the lines of a link run), then hands them on.
class ItemLines final : public JobOutcomeSink {
public:
    explicit ItemLines(JobOutcomeSink& bookkeeping) : bookkeeping_(bookkeeping) { }

    void siteFinished(const SiteOutcome& outcome) override
    {
        const LinkReport::Tally tally = lines_.siteFiles(outcome.site, outcome.files);
        sent_ += tally.sent;
        failed_ += tally.failed;
        bookkeeping_.siteFinished(outcome);
    }

    [[nodiscard]] int sent() const { return sent_; }
    [[nodiscard]] int failed() const { return failed_; }

private:
    JobOutcomeSink& bookkeeping_;
    LinkReport lines_ { QString(), stdout };
    std::atomic<int> sent_ { 0 };
    std::atomic<int> failed_ { 0 };
};

void printLine(const QString& line)
{
    std::fputs((line + u'\n').toLocal8Bit().constData(), stdout);
    std::fflush(stdout);
}

} // namespace

int QueueCommand::reset(Notifier& notifier)
{
    QueueStore store;
    if (!store.resetAllIdle()) {
        notifier.showMessage(QStringLiteral("The queue could not be written: %1.")
                                 .arg(PrivateProfile::lastWriteFailure()),
            MessageIcon::Stop);
        return kExitFailed;
    }
    printLine(QStringLiteral("Queue: %1 items waiting to be sent.").arg(store.count()));
    return kExitOk;
}

int QueueCommand::run(Notifier& notifier, SoundPlayer& player)
{
    ProgramServices services(notifier, player);
    QueueStore store;
    QueueBookkeeping bookkeeping(services.log(), notifier, store);
    ItemLines lines(bookkeeping);
    QueueSender sender(services.jobs(), services.threads(), lines, store);
    bool empty = false;
    sender.sendQueue([&empty](bool queueEmpty) {
        empty = queueEmpty;
        QCoreApplication::exit(kExitOk);
    });
    (void)QCoreApplication::exec();
    // Every job has ended by now; this only joins the threads.
    services.threads().stopAll();
    if (empty) {
        printLine(StringTable::text(ids::kQueueEmptyOrSending));
        return kExitOk;
    }
    const int left = store.count();
    printLine(QStringLiteral("Queue: %1 sent, %2 failed, %3 left in the queue.")
                  .arg(lines.sent())
                  .arg(lines.failed())
                  .arg(left));
    // What the queue file could not take was named by the notifier.
    const bool recorded
        = bookkeeping.notRecorded().isEmpty() && services.log().recordsNotWritten() == 0;
    return left == 0 && recorded ? kExitOk : kExitFailed;
}

} // namespace zelto
