// Measures the distribution: a file set of many entries, one set sent to many local vsftpd
// servers at once, and the memory and threads of many parallel sites. Not a test:
// run_distribution_bench.sh runs it (and lftp beside it) and prints the numbers.
//
//   zelto_bench_distribution --fileset ENTRIES
//       makes ENTRIES small files, lists each (and every tenth twice, and their folder), and
//       times the building of the file set
//   zelto_bench_distribution --serve SERVERS
//       starts SERVERS vsftpd (root only), prints "PORT <port> ROOT <folder>" for each and serves
//       until standard input ends
//   zelto_bench_distribution --fanout SERVERS --source FOLDER [--interval MS]
//       sends every file of FOLDER to SERVERS new vsftpd, one parallel job each, and prints the
//       wall time from the first start to the last end and the CPU time the client took for it
//   zelto_bench_distribution --sites SITES --servers SERVERS --source FOLDER
//       SITES parallel jobs spread over SERVERS vsftpd, each into a folder of its own; prints the
//       wall time, the peak memory, and the threads left once the jobs have ended

#include "TempSettings.h"
#include "TestWait.h"
#include "Vsftpd.h"
#include "distribution/FileSet.h"
#include "distribution/JobOutcomeSink.h"
#include "distribution/ParallelStarter.h"
#include "distribution/TransferJob.h"
#include "distribution/WorkerThreads.h"
#include "ftp/JobServices.h"
#include "log/LogSink.h"
#include "options/SoundSink.h"
#include "platform/Notifier.h"
#include "platform/TrayIndicator.h"
#include "settings/SettingsStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <pwd.h>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace zelto;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// The jobs report to nobody: only the sending is measured.
class Quiet final : public LogSink, public SoundSink, public TrayIndicator, public Notifier {
public:
    void write(const LogEvent&) override { }
    void play(SoundEvent) override { }
    void setState(TrayState) override { }
    void showMessage(const QString& text, MessageIcon) override
    {
        std::cerr << text.toStdString() << '\n';
    }
    Answer ask(const Question&) override { return Answer::Cancelled; }
};

// Counts the files that did not reach their site.
class Tally final : public JobOutcomeSink {
public:
    void siteFinished(const SiteOutcome& outcome) override
    {
        const JobSite& site = outcome.site;
        for (const FileEntry& file : outcome.files) {
            if (file.result != FileEntry::kSent) {
                if (failed_++ == 0)
                    std::cerr << site.port << ": " << file.message.toStdString() << '\n';
            }
        }
    }
    [[nodiscard]] int failed() const { return failed_; }

private:
    std::atomic<int> failed_ { 0 };
};

double seconds(Clock::time_point since)
{
    return std::chrono::duration<double>(Clock::now() - since).count();
}

// CPU time of this process, all its threads: the client's share, without the servers' (they are
// processes of their own).
double cpuSeconds()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto inSeconds
        = [](const timeval& time) { return double(time.tv_sec) + time.tv_usec / 1e6; };
    return inSeconds(usage.ru_utime) + inSeconds(usage.ru_stime);
}

// The peak resident memory of the process (VmHWM), in KiB.
long peakKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').front().toLong();
    }
    return -1;
}

int threadCount()
{
    return int(QDir(QStringLiteral("/proc/self/task"))
                   .entryList(QDir::Dirs | QDir::NoDotAndDotDot)
                   .size());
}

std::vector<FileEntry> filesOf(const QString& folder)
{
    FileListEntry entry;
    entry.folder = QFileInfo(folder).absolutePath();
    entry.localName = QFileInfo(folder).fileName();
    return FileSet::build({ entry }).files();
}

// The settings of every run: direct access, passive like lftp, rounds of 64 KiB, and files
// written over so that runs can follow each other.
void useBenchSettings()
{
    SettingsStore::set(settings::ftp::kAccessType, QStringLiteral("DirectAccess"));
    SettingsStore::set(settings::ftp::kPassive, QString::fromLatin1(settings::kYes));
    SettingsStore::set(settings::ftp::kReadBuffer, 65536);
    SettingsStore::set(settings::ftp::kWriteBuffer, 65536);
    SettingsStore::set(settings::config::kOverwrite, QString::fromLatin1(settings::kYes));
}

int fileSet(int entries)
{
    QTemporaryDir dir;
    std::vector<FileListEntry> list;
    for (int i = 0; i < entries; ++i) {
        FileListEntry entry;
        entry.folder = dir.path() + QStringLiteral("/d%1").arg(i / 1000);
        entry.localName = QStringLiteral("file%1.txt").arg(i);
        QDir().mkpath(entry.folder);
        QFile file(entry.localPath());
        if (!file.open(QIODevice::WriteOnly) || file.write("x") != 1)
            return 1;
        list.push_back(entry);
        if (i % 10 == 0)
            list.push_back(entry);
    }
    FileListEntry folder;
    folder.folder = dir.path();
    folder.localName = QStringLiteral("d0");
    list.push_back(folder);

    const auto started = Clock::now();
    const FileSet set = FileSet::build(list);
    const double wall = seconds(started);
    std::printf(
        "fileset %zu entries -> %zu files: %.3f s\n", list.size(), set.files().size(), wall);
    return set.files().size() == std::size_t(entries) ? 0 : 1;
}

int serve(int count)
{
    std::vector<std::unique_ptr<test::Vsftpd>> servers;
    for (int i = 0; i < count; ++i) {
        servers.push_back(std::make_unique<test::Vsftpd>());
        std::cout << "PORT " << servers.back()->port() << " ROOT "
                  << servers.back()->root().toStdString() << std::endl;
    }
    for (std::string line; std::getline(std::cin, line);) { }
    return 0;
}

// A folder of its own under "pub" that the anonymous sessions may write to.
bool makeSiteFolder(const test::Vsftpd& server, const QString& name)
{
    const QString path = server.root() + u'/' + test::Vsftpd::uploadFolder() + u'/' + name;
    const auto* session = ::getpwnam("ftp");
    return QDir().mkpath(path) && session
        && ::chown(QFile::encodeName(path).constData(), session->pw_uid, session->pw_gid) == 0;
}

// Sends `files` to `sites` parallel jobs spread over `serverCount` new servers.
int sendParallel(int serverCount, int siteCount, const QString& source,
    std::chrono::milliseconds interval, bool ownFolders)
{
    std::vector<std::unique_ptr<test::Vsftpd>> servers;
    for (int i = 0; i < serverCount; ++i)
        servers.push_back(std::make_unique<test::Vsftpd>());
    std::vector<JobSite> sites;
    for (int i = 0; i < siteCount; ++i) {
        const auto& server = *servers[i % serverCount];
        QString folder = test::Vsftpd::uploadFolder();
        if (ownFolders) {
            folder += QStringLiteral("/s%1").arg(i);
            if (!makeSiteFolder(server, QStringLiteral("s%1").arg(i)))
                return 1;
        }
        sites.push_back({ test::Vsftpd::host(), test::Vsftpd::user(), test::Vsftpd::password(),
            server.port(), folder, 0, {} });
    }
    const auto files = filesOf(source);
    qint64 bytes = 0;
    for (const FileEntry& file : files)
        bytes += file.size;

    Quiet quiet;
    JobServices services { quiet, quiet, quiet, quiet };
    Tally tally;
    const int threadsBefore = threadCount();
    std::vector<std::shared_ptr<TransferJob>> jobs;
    const auto started = Clock::now();
    const double cpuAtStart = cpuSeconds();
    {
        WorkerThreads threads;
        ParallelStarter starter(
            threads, sites.size(),
            [&](std::size_t index) {
                TransferJob::Setup setup;
                setup.sites = { sites[index] };
                setup.files = files;
                jobs.push_back(TransferJob::create(std::move(setup), services, tally, threads));
                jobs.back()->start();
            },
            interval);
        starter.start();
        const bool ended = test::waitUntil(
            [&] {
                if (!starter.finished())
                    return false;
                for (const auto& job : jobs) {
                    if (!job->done())
                        return false;
                }
                return true;
            },
            30min);
        const double wall = seconds(started);
        const double cpu = cpuSeconds() - cpuAtStart;
        const bool threadsEnded = threads.waitAll(10s);
        std::printf(
            "%d sites on %d servers, %zu files, %lld bytes each: %.2f s, client CPU %.2f s, "
            "%.1f MB/s in all, peak RSS %.1f MiB, threads %d before, %d after%s\n",
            siteCount, serverCount, files.size(), static_cast<long long>(bytes), wall, cpu,
            double(bytes) * siteCount / wall / 1e6, peakKiB() / 1024.0, threadsBefore,
            threadCount(), threadsEnded ? "" : " (workers still running)");
        if (!ended || tally.failed() > 0) {
            std::cerr << tally.failed() << " files failed\n";
            return 1;
        }
    }
    return 0;
}

int usage()
{
    std::cerr << "usage: zelto_bench_distribution --fileset ENTRIES\n"
                 "       zelto_bench_distribution --serve SERVERS\n"
                 "       zelto_bench_distribution --fanout SERVERS --source FOLDER "
                 "[--interval MS]\n"
                 "       zelto_bench_distribution --sites SITES --servers SERVERS "
                 "--source FOLDER\n";
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    auto args = app.arguments().mid(1);
    // The bench's settings live in a temporary folder, never in the user's own.
    test::TempSettings settings;
    useBenchSettings();

    int fileset = 0;
    int serveCount = 0;
    int fanout = 0;
    int sites = 0;
    int servers = 1;
    int interval = 0;
    QString source;
    while (!args.isEmpty()) {
        const auto option = args.takeFirst();
        const auto number = [&] { return args.isEmpty() ? 0 : args.takeFirst().toInt(); };
        if (option == "--fileset")
            fileset = number();
        else if (option == "--serve")
            serveCount = number();
        else if (option == "--fanout")
            fanout = number();
        else if (option == "--sites")
            sites = number();
        else if (option == "--servers")
            servers = number();
        else if (option == "--interval")
            interval = number();
        else if (option == "--source" && !args.isEmpty())
            source = args.takeFirst();
        else
            return usage();
    }
    if (fileset > 0)
        return fileSet(fileset);
    if (serveCount > 0)
        return serve(serveCount);
    if (source.isEmpty() || servers < 1)
        return usage();
    if (const auto reason = test::Vsftpd::unavailableReason()) {
        std::cerr << reason->toStdString() << '\n';
        return 2;
    }
    if (fanout > 0)
        return sendParallel(fanout, fanout, source, std::chrono::milliseconds(interval), false);
    if (sites > 0)
        return sendParallel(servers, sites, source, std::chrono::milliseconds(interval), true);
    return usage();
}
