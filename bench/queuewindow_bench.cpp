// Measures the queue window over a large queue: from its construction until the rows are shown,
// then a sort by a text column, a delete of one row (the file rewritten under its lock) and a
// reset. Not a test.
//
//   zelto_bench_queuewindow [items] [runs]
//       prints the wall time of each step; runs on the offscreen platform unless another one is
//       chosen, with its queue in a fresh temporary folder

#include "TestNotifier.h"
#include "distribution/WorkerThreads.h"
#include "queue/QueueStore.h"
#include "queue/ui/CQueueDlg.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QItemSelectionModel>
#include <QTemporaryDir>
#include <QTreeView>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace zelto;

double milliseconds(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

// Until the window is idle and has painted what it holds.
void settle(const CQueueDlg& window)
{
    while (window.busy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    QCoreApplication::processEvents();
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int items = argc > 1 ? std::max(1, std::atoi(argv[1])) : 10'000;
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 5;

    QTemporaryDir dir;
    QueueStore store(dir.filePath(QStringLiteral("zeltoQue.ini")));
    // Items as a failed distribution leaves them: long folders, a reason, a site's login.
    (void)store.update([&](QueueBatch& batch) {
        for (int i = 0; i < items; ++i) {
            QueueItem item;
            item.localName = QStringLiteral("page%1.html").arg(i);
            item.remoteName = item.localName;
            item.source = QStringLiteral("Local");
            item.destination = QStringLiteral("ftp%1.example.org").arg(i % 10);
            item.reason = QStringLiteral("421 Service not available, closing control connection.");
            item.locDirFile = QStringLiteral("/home/me/site/section%1").arg(i % 100);
            item.remDirFile = QStringLiteral("/srv/www/section%1").arg(i % 100);
            item.login = QStringLiteral("me");
            item.password = QStringLiteral("secret");
            item.fileSize = QString::number(1000 + i);
            batch.appendFailed(item);
        }
    });

    WorkerThreads threads;
    test::TestNotifier notifier;
    notifier.fallback = Answer::Accepted;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer timer;
        timer.start();
        CQueueDlg window(store, threads, notifier, [] {});
        window.show();
        const double built = milliseconds(timer);
        settle(window);
        const double shown = milliseconds(timer);

        timer.restart();
        window.sortBy(QueueRowsModel::Reason);
        window.sortBy(QueueRowsModel::File);
        QCoreApplication::processEvents();
        const double sorted = milliseconds(timer);

        timer.restart();
        window.list()->selectionModel()->select(window.rows().index(0, 0),
            QItemSelectionModel::Select | QItemSelectionModel::Rows);
        window.deleteSelected();
        settle(window);
        const double deleted = milliseconds(timer);

        timer.restart();
        window.resetAll();
        settle(window);
        const double reset = milliseconds(timer);
        std::printf("run %d, %d items: window built %.1f ms, rows shown %.1f ms, sort %.1f ms, "
                    "delete of one row %.1f ms, reset %.1f ms\n",
            run + 1, int(window.rows().rowCount()) + 1, built, shown, sorted, deleted, reset);
        // The next run starts from the same queue.
        QueueItem gone;
        (void)store.appendFailed(gone);
    }
    return 0;
}
