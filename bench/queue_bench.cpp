// Measures the queue file under load: failed files appended by many jobs and by one large job,
// a large resend that succeeds, and a send of a large queue. Not a test.
//
//   zelto_bench_queue [append | send]
//       prints the wall time of each step (both kinds without an argument); every queue lives in
//       a fresh temporary data folder

#include "FtpTestKit.h"
#include "TempSettings.h"
#include "TestWait.h"
#include "distribution/WorkerThreads.h"
#include "queue/QueueBookkeeping.h"
#include "queue/QueueSender.h"
#include "settings/SettingsStore.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>

namespace {

using namespace zelto;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

double seconds(Clock::time_point since)
{
    return std::chrono::duration<double>(Clock::now() - since).count();
}

std::vector<FileEntry> filesOf(int job, int count, int result)
{
    std::vector<FileEntry> files;
    for (int i = 0; i < count; ++i) {
        FileEntry& file = files.emplace_back();
        file.localFolder = QStringLiteral("/home/me/site/job%1").arg(job);
        file.localName = QStringLiteral("job%1-file%2.html").arg(job).arg(i);
        file.remoteName = file.localName;
        file.remoteFolder = QStringLiteral("/srv/www/job%1").arg(job);
        file.size = 1000 + i;
        file.result = result;
        file.message = result == FileEntry::kSent ? QString() : QStringLiteral("refused");
    }
    return files;
}

// `jobs` jobs of `files` files each end one after the other with `result`.
double endJobs(QueueBookkeeping& bookkeeping, int jobs, int files, int result)
{
    const JobSite site { QStringLiteral("ftp.example.org"), QStringLiteral("me"),
        QStringLiteral("secret"), 21, QStringLiteral("/srv"), 0 };
    const auto start = Clock::now();
    for (int job = 0; job < jobs; ++job) {
        const auto entries = filesOf(job, files, result);
        bookkeeping.siteFinished({ TransferMode::Put, site, nullptr, entries });
    }
    return seconds(start);
}

void appendAndRemove(int jobs, int files)
{
    test::TempSettings settings;
    SettingsStore::set(settings::schedule::kResendFail, 1);
    test::Recorder log;
    QueueBookkeeping bookkeeping(log);
    const double appended = endJobs(bookkeeping, jobs, files, 12003);
    const double counted = endJobs(bookkeeping, jobs, files, 12003);
    const double removed = endJobs(bookkeeping, jobs, files, FileEntry::kSent);
    std::printf("%3d jobs x %5d files: append %.2f s, count up %.2f s, remove %.2f s (left %d)\n",
        jobs, files, appended, counted, removed, QueueStore().count());
}

// A queue of `items` idle uploads to `hosts` hosts (127.0.0.1, 127.0.0.2...) on a port that
// refuses: the jobs fail at their connect and count their items up.
void sendLargeQueue(int items, int hosts)
{
    test::TempSettings settings;
    SettingsStore::set(settings::schedule::kResendFail, 1);
    test::useQuickTimeouts(5);
    test::useDirectAccess();
    const test::RefusingPort port;
    QueueStore store;
    store.update([&](QueueBatch& batch) {
        for (int i = 0; i < items; ++i) {
            QueueItem item;
            item.localName = QStringLiteral("file%1.html").arg(i);
            item.remoteName = item.localName;
            item.locDirFile = QStringLiteral("/home/me/site");
            item.source = QStringLiteral("Local");
            item.destination = QStringLiteral("127.0.0.%1").arg(1 + i % hosts);
            item.port = QString::number(port.port());
            batch.appendFailed(item);
        }
    });
    test::Recorder recorder;
    QueueBookkeeping bookkeeping(recorder);
    WorkerThreads threads;
    QueueSender sender(recorder.services, threads, bookkeeping);
    bool ended = false;
    const auto start = Clock::now();
    sender.sendQueue([&](bool) { ended = true; });
    const double returned = seconds(start);
    (void)test::waitUntil([&] { return !sender.starting(); }, 60s);
    const double started = seconds(start);
    (void)test::waitUntil([&] { return ended; }, 120s);
    std::printf("send %5d items to %2d hosts: returned %.2f s, all jobs started %.2f s, all ended "
                "%.2f s (queue %d, first item's attempts %d)\n",
        items, hosts, returned, started, seconds(start), store.count(),
        store.loadAll()[0].numTimes);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QString only = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    if (only.isEmpty() || only == u"append") {
        appendAndRemove(100, 100);
        appendAndRemove(1, 10'000);
    }
    if (only.isEmpty() || only == u"send") {
        sendLargeQueue(10'000, 1);
        sendLargeQueue(10'000, 10);
    }
    return 0;
}
