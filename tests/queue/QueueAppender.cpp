// A second process for the queue tests: appends COUNT failed items named TAG-<n> to the queue
// file FILE, one change at a time, as a cron run beside the windowed program would.
// Usage: queue_appender FILE TAG COUNT. Exit status 1 when an append was not written.

#include "queue/QueueStore.h"

#include <QCoreApplication>
#include <QStringList>

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() != 4)
        return 2;
    zelto::QueueStore store(args[1]);
    const int count = args[3].toInt();
    int status = 0;
    for (int n = 0; n < count; ++n) {
        zelto::QueueItem item;
        item.localName = QStringLiteral("%1-%2").arg(args[2]).arg(n);
        item.destination = QStringLiteral("host");
        if (!store.appendFailed(item))
            status = 1;
    }
    return status;
}
