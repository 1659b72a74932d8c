// Measures the queue file under load: failed files appended by many jobs and by one large job,
// a large resend that succeeds, a send of a large queue, a queue of 100,000 items, and a file
// whose count is huge. Not a test.
//
//   zelto_bench_queue [append | send | large | huge N]
//       prints the wall time of each step (append and send without an argument); every queue
//       lives in a fresh temporary data folder. large and huge also print the process's peak
//       memory so far, so run each in a process of its own.

#include "FtpTestKit.h"
#include "TempSettings.h"
#include "TestWait.h"
#include "distribution/WorkerThreads.h"
#include "queue/QueueBookkeeping.h"
#include "queue/QueueSender.h"
#include "settings/SettingsStore.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <cstdio>
#include <sys/resource.h>

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
        QStringLiteral("secret"), 21, QStringLiteral("/srv"), 0, {} };
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
    QueueBookkeeping bookkeeping(log, log);
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
    QueueBookkeeping bookkeeping(recorder, recorder);
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

// The peak resident memory of this process so far.
double peakMegabytes()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return double(usage.ru_maxrss) / 1024.0;
}

double megabytesOf(const QString& file)
{
    return double(QFileInfo(file).size()) / (1024.0 * 1024.0);
}

// An upload that failed, as the bookkeeping writes it.
QByteArray itemSection(int number, int port)
{
    const QByteArray n = QByteArray::number(number);
    return "[QUEUE" + n + "]\nNumTimes=1\nLocalName=file" + n + ".html\nRemoteName=file" + n
        + ".html\nRemDirFile=/srv/www/site/dir" + n + "\nLocDirFile=/home/me/site/dir" + n
        + "\nReason=550 Permission denied.\nPassword=secret\nLogin=me\nRemDir=/srv/www\n"
          "Source=Local\nDestination=127.0.0.1\nFtpMethod=ZELTO_PUT\nFileSize=12345\nPort="
        + QByteArray::number(port) + "\nStatus=0\n";
}

// Written directly, a section at a time, so that making it costs the bench no memory.
void writeQueueFile(const QByteArray& head, int items, int port)
{
    QFile out(QueueStore::defaultFile());
    if (!out.open(QIODevice::WriteOnly))
        std::abort();
    out.write(head);
    for (int i = 1; i <= items; ++i)
        out.write(itemSection(i, port));
}

// One upload job that ends with one file, as a link run that fails (or sends) a file.
double endOneFile(QueueBookkeeping& bookkeeping, const QString& name, int result)
{
    const JobSite site { QStringLiteral("127.0.0.1"), QStringLiteral("me"),
        QStringLiteral("secret"), 21, QStringLiteral("/srv/www"), 0, {} };
    FileEntry file;
    file.localFolder = QStringLiteral("/home/me/site/dir1");
    file.localName = file.remoteName = name;
    file.remoteFolder = QStringLiteral("/srv/www/site/dir1");
    file.result = result;
    file.message = QStringLiteral("refused");
    const std::vector<FileEntry> files { file };
    const auto start = Clock::now();
    bookkeeping.siteFinished({ TransferMode::Put, site, nullptr, files });
    return seconds(start);
}

// Sends the queue as -q does, to a port that refuses: every job fails at its connect.
double sendAll(QueueBookkeeping& bookkeeping, test::Recorder& recorder)
{
    WorkerThreads threads;
    QueueSender sender(recorder.services, threads, bookkeeping);
    bool ended = false;
    const auto start = Clock::now();
    sender.sendQueue([&](bool) { ended = true; });
    (void)test::waitUntil([&] { return ended; }, 600s);
    return seconds(start);
}

// 100,000 real items: one failed file appended, the queue read whole (the queue window's load),
// the first item sent (every later section moves down one place), and the whole queue sent and
// failed again.
void largeQueue()
{
    constexpr int kItems = 100'000;
    test::TempSettings settings;
    SettingsStore::set(settings::schedule::kResendFail, 1);
    test::useQuickTimeouts(5);
    test::useDirectAccess();
    const test::RefusingPort port;
    writeQueueFile("[QUEUE]\nNumQueues=" + QByteArray::number(kItems) + "\n", kItems, port.port());
    const QString file = QueueStore::defaultFile();
    std::printf("queue of %d items, %.1f MB, peak %.0f MB before\n", kItems, megabytesOf(file),
        peakMegabytes());
    test::Recorder recorder;
    QueueBookkeeping bookkeeping(recorder, recorder);
    const double appended = endOneFile(bookkeeping, QStringLiteral("new.html"), 12003);
    std::printf("  one failed file appended: %.2f s, peak %.0f MB, file %.1f MB\n", appended,
        peakMegabytes(), megabytesOf(file));
    const auto start = Clock::now();
    const std::size_t read = QueueStore().loadAll().size();
    std::printf(
        "  read whole: %.2f s (%zu items), peak %.0f MB\n", seconds(start), read, peakMegabytes());
    const double removed = endOneFile(bookkeeping, QStringLiteral("file1.html"), FileEntry::kSent);
    std::printf("  first item sent: %.2f s, peak %.0f MB, %d left\n", removed, peakMegabytes(),
        QueueStore().count());
    const double sent = sendAll(bookkeeping, recorder);
    std::printf("  all sent and failed again: %.2f s, peak %.0f MB, file %.1f MB\n", sent,
        peakMegabytes(), megabytesOf(file));
}

// A small file whose count is `count` and whose section of that number is there (a header
// alone): a send of the queue (-q), then a link run that fails a file (-l).
void hugeCount(int count)
{
    test::TempSettings settings;
    SettingsStore::set(settings::schedule::kResendFail, 1);
    test::useQuickTimeouts(5);
    test::useDirectAccess();
    const test::RefusingPort port;
    writeQueueFile("[QUEUE]\nNumQueues=" + QByteArray::number(count) + "\n", 1, port.port());
    QFile file(QueueStore::defaultFile());
    if (!file.open(QIODevice::Append))
        std::abort();
    file.write("[QUEUE" + QByteArray::number(count) + "]\n");
    file.close();
    const double before = double(file.size());
    std::printf(
        "count %d, a file of %.0f bytes, peak %.0f MB before\n", count, before, peakMegabytes());
    test::Recorder recorder;
    QueueBookkeeping bookkeeping(recorder, recorder);
    const double sent = sendAll(bookkeeping, recorder);
    std::printf("  send (-q): all jobs ended %.2f s, peak %.0f MB, file %lld bytes, count %d\n",
        sent, peakMegabytes(), QFileInfo(file).size(), QueueStore().count());
    const double appended = endOneFile(bookkeeping, QStringLiteral("new.html"), 12003);
    std::printf("  one failed file (-l): %.2f s, peak %.0f MB, file %lld bytes, count %d\n",
        appended, peakMegabytes(), QFileInfo(file).size(), QueueStore().count());
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
    if (only == u"large")
        largeQueue();
    if (only == u"huge")
        hugeCount(argc > 2 ? QString::fromLocal8Bit(argv[2]).toInt() : 10'000'000);
    return 0;
}
