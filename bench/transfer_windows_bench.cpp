// Measures what the transfer windows cost: the same parallel send of one large file to several
// local vsftpd servers, once with one transfer window per site and once without windows, in
// turn. Prints, for each run, the wall time and throughput of the jobs, the CPU time of the
// process, and how late a 10 ms timer of the window thread came. Not a test.
//
//   zelto_bench_transfer_windows [--sites 10] [--size-mib 1024] [--runs 3] [--servers-nice 0]
//                                [--worker-nice 5]
//
// The servers stand in for remote machines: --servers-nice starts them at that nice value, so
// that they take the cores the client leaves, as remote servers would not take any.
// --worker-nice runs the transfer workers that many nice steps below the window thread (the
// program's own value unless given; 0 runs them beside it).
//
// Needs root (vsftpd chroots its sessions). The servers' folders and the source file are made in
// TMPDIR: point it at memory (/dev/shm), which must hold the source and one copy per site. Runs
// on the offscreen platform unless QT_QPA_PLATFORM says otherwise.

#include "DistributionFixture.h"
#include "FtpTestKit.h"
#include "TempSettings.h"
#include "TestFiles.h"
#include "Vsftpd.h"
#include "distribution/FileSet.h"
#include "distribution/ParallelStarter.h"
#include "distribution/TransferJob.h"
#include "distribution/WorkerThreads.h"
#include "distribution/ui/CTransferDlg.h"
#include "settings/SettingsStore.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>
#include <sys/resource.h>
#include <time.h>
#include <tuple>
#include <vector>

namespace {

using namespace zelto;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

double threadCpuSeconds()
{
    timespec t {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) / 1e9;
}

// How long the calling thread has waited on a run queue for a core, in seconds (Linux).
double runQueueWaitSeconds()
{
    std::ifstream stat("/proc/thread-self/schedstat");
    double onCpuNs = 0;
    double waitNs = 0;
    stat >> onCpuNs >> waitNs;
    return waitNs / 1e9;
}

// A timer of the window thread that should fire every 10 ms: how late each tick came, when, and
// how much of the time since the tick before the thread spent on a core (its own work) and how
// much waiting for one; the rest it was blocked.
class LatenessProbe final {
public:
    static constexpr auto kPeriod = 10ms;

    LatenessProbe()
    {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setInterval(kPeriod);
        QObject::connect(&timer_, &QTimer::timeout, [this] {
            const double now = msSinceStart();
            const double cpu = threadCpuSeconds();
            const double wait = runQueueWaitSeconds();
            ticks_.push_back({ now, std::max(0.0, now - last_ - double(kPeriod.count())),
                (cpu - lastCpu_) * 1e3, (wait - lastWait_) * 1e3 });
            last_ = now;
            lastCpu_ = cpu;
            lastWait_ = wait;
        });
    }
    void start()
    {
        ticks_.clear();
        clock_.start();
        last_ = 0;
        lastCpu_ = threadCpuSeconds();
        lastWait_ = runQueueWaitSeconds();
        timer_.start();
    }
    void stop() { timer_.stop(); }

    [[nodiscard]] double msSinceStart() const { return double(clock_.nsecsElapsed()) / 1e6; }
    [[nodiscard]] std::size_t ticks() const { return ticks_.size(); }
    // The lateness that `share` of the ticks from `fromMs` on did not exceed; 1 gives the worst.
    [[nodiscard]] double lateMs(double share, double fromMs = 0) const
    {
        std::vector<double> late;
        for (const Tick& tick : ticks_) {
            if (tick.atMs >= fromMs)
                late.push_back(tick.lateMs);
        }
        if (late.empty())
            return 0;
        std::sort(late.begin(), late.end());
        return late[std::size_t(share * double(late.size() - 1))];
    }
    // The window thread's time on a core and waiting for one in the interval that ended with
    // the latest tick.
    [[nodiscard]] std::pair<double, double> worstTickCpuAndWaitMs() const
    {
        const auto worst = std::max_element(ticks_.begin(), ticks_.end(),
            [](const Tick& a, const Tick& b) { return a.lateMs < b.lateMs; });
        return worst == ticks_.end() ? std::pair { 0.0, 0.0 }
                                     : std::pair { worst->cpuMs, worst->waitMs };
    }

private:
    struct Tick {
        double atMs;
        double lateMs;
        double cpuMs;
        double waitMs;
    };

    QTimer timer_;
    QElapsedTimer clock_;
    double last_ = 0;
    double lastCpu_ = 0;
    double lastWait_ = 0;
    std::vector<Tick> ticks_;
};

struct RunResult {
    double wall = 0; // seconds, from the first start to the last job's end
    double mbPerSecond = 0;
    double cpu = 0; // seconds of the whole process, user + system
    double uiCpu = 0; // seconds of the window thread alone
    double worstLateMs = 0;
    double worstTickCpuMs = 0;
    double worstTickWaitMs = 0;
    double p99LateMs = 0;
    // Once every job has started (and every window is open).
    double worstLateRunningMs = 0;
    // The longest that building and showing one window took the window thread.
    double slowestOpenMs = 0;
    std::size_t ticks = 0;
    bool ok = false;
};

double cpuSeconds()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds
        = [](const timeval& t) { return double(t.tv_sec) + double(t.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Sends `files` to every site in parallel, started as Send Parallel starts them; with `windows`,
// each job in a transfer window of its own, cascading.
RunResult sendOnce(bool windows, const std::vector<JobSite>& sites,
    const std::vector<FileEntry>& files, qint64 bytesPerSite, int workerNice)
{
    test::Recorder recorder;
    test::RecordingOutcomes outcomes;
    WorkerThreads threads(workerNice);
    std::vector<std::shared_ptr<TransferJob>> jobs;
    std::atomic<qint64> lastEnd { 0 };
    std::vector<QPointer<CTransferDlg>> opened;
    LatenessProbe probe;
    double allStartedMs = 0;
    double slowestOpenMs = 0;

    const double cpuBefore = cpuSeconds();
    const double uiCpuBefore = threadCpuSeconds();
    probe.start();
    const auto started = Clock::now();
    ParallelStarter starter(threads, sites.size(), [&](std::size_t index) {
        TransferJob::Setup setup;
        setup.sites = { sites[index] };
        setup.files = files;
        auto job = TransferJob::create(std::move(setup), recorder.services, outcomes, threads);
        jobs.push_back(job);
        if (windows) {
            const double before = probe.msSinceStart();
            auto* window
                = new CTransferDlg(job, recorder, opened.empty() ? nullptr : opened.back().data());
            window->show();
            opened.push_back(window);
            slowestOpenMs = std::max(slowestOpenMs, probe.msSinceStart() - before);
        }
        if (index + 1 == sites.size())
            allStartedMs = probe.msSinceStart();
        job->start([&lastEnd] {
            const qint64 now = Clock::now().time_since_epoch().count();
            qint64 seen = lastEnd.load();
            while (seen < now && !lastEnd.compare_exchange_weak(seen, now)) { }
        });
    });
    starter.start();

    // A real event loop, as the program has: a loop that slept between looks would itself
    // make the probe late.
    QEventLoop loop;
    QTimer look;
    look.setInterval(50ms);
    QObject::connect(&look, &QTimer::timeout, [&] {
        const bool ended = starter.finished()
            && std::all_of(jobs.begin(), jobs.end(), [](const auto& job) { return job->done(); });
        // Each window closes itself once it has seen its job end.
        const bool closed = std::all_of(
            opened.begin(), opened.end(), [](const auto& window) { return window.isNull(); });
        if (ended && closed)
            loop.quit();
    });
    look.start();
    loop.exec();
    probe.stop();
    const double uiCpu = threadCpuSeconds() - uiCpuBefore;
    threads.stopAll(); // every job has ended: this joins the threads

    RunResult result;
    const Clock::time_point end { Clock::duration(lastEnd.load()) };
    result.wall = std::chrono::duration<double>(end - started).count();
    result.mbPerSecond = double(bytesPerSite) * double(sites.size()) / result.wall / 1e6;
    result.cpu = cpuSeconds() - cpuBefore;
    result.uiCpu = uiCpu;
    result.worstLateMs = probe.lateMs(1.0);
    std::tie(result.worstTickCpuMs, result.worstTickWaitMs) = probe.worstTickCpuAndWaitMs();
    result.p99LateMs = probe.lateMs(0.99);
    result.worstLateRunningMs = probe.lateMs(1.0, allStartedMs);
    result.slowestOpenMs = slowestOpenMs;
    result.ticks = probe.ticks();
    result.ok = outcomes.count() == sites.size();
    for (const auto& site : outcomes.sites()) {
        for (const FileEntry& file : site.files)
            result.ok = result.ok && file.result == FileEntry::kSent;
    }
    return result;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[(values.size() - 1) / 2];
}

int usage()
{
    std::cerr << "usage: zelto_bench_transfer_windows [--sites N] [--size-mib N] [--runs N] "
                 "[--servers-nice N] [--worker-nice N]\n";
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    int siteCount = 10;
    qint64 sizeMib = 1024;
    int runs = 3;
    int serversNice = 0;
    int workerNice = WorkerThreads::kTransferNice;
    auto args = app.arguments().mid(1);
    while (!args.isEmpty()) {
        const auto option = args.takeFirst();
        const int number = args.isEmpty() ? 0 : args.takeFirst().toInt();
        if (option == "--sites")
            siteCount = number;
        else if (option == "--size-mib")
            sizeMib = number;
        else if (option == "--runs")
            runs = number;
        else if (option == "--servers-nice")
            serversNice = number;
        else if (option == "--worker-nice")
            workerNice = number;
        else
            return usage();
    }
    if (siteCount < 1 || sizeMib < 1 || runs < 1)
        return usage();
    if (const auto reason = test::Vsftpd::unavailableReason()) {
        std::cerr << reason->toStdString() << '\n';
        return 2;
    }

    // The bench's settings live in a temporary folder, never in the user's own: passive, rounds
    // of 64 KiB, and files written over.
    test::TempSettings settings;
    SettingsStore::set(settings::ftp::kAccessType, QStringLiteral("DirectAccess"));
    SettingsStore::set(settings::ftp::kPassive, QString::fromLatin1(settings::kYes));
    SettingsStore::set(settings::ftp::kReadBuffer, 65536);
    SettingsStore::set(settings::ftp::kWriteBuffer, 65536);
    SettingsStore::set(settings::config::kOverwrite, QString::fromLatin1(settings::kYes));

    QTemporaryDir source;
    const QString name = QStringLiteral("big.bin");
    const qint64 bytes = sizeMib << 20;
    std::printf("making %lld MiB\n", static_cast<long long>(sizeMib));
    if (!test::makeFile(source.filePath(name), bytes, 1))
        return 1;
    const auto files = FileSet::build({ test::listed(source.path(), name) }).files();

    // A process started by this thread takes the thread's nice value; the sessions that a
    // server forks take the server's. Only root may go back to 0, which the bench is.
    ::setpriority(PRIO_PROCESS, 0, serversNice);
    std::vector<std::unique_ptr<test::Vsftpd>> servers;
    std::vector<JobSite> sites;
    for (int i = 0; i < siteCount; ++i) {
        servers.push_back(std::make_unique<test::Vsftpd>());
        sites.push_back(test::siteOf(*servers.back(), test::Vsftpd::uploadFolder()));
    }
    ::setpriority(PRIO_PROCESS, 0, 0);

    // Per kind (0: no windows, 1: windows), one value per run.
    std::vector<double> rates[2];
    std::vector<double> worst[2];
    std::vector<double> worstRunning[2];
    bool ok = true;
    for (int run = 0; run < runs; ++run) {
        // Each run starts with the other kind, so that neither always meets a warmer machine.
        for (const bool windows : { run % 2 == 1, run % 2 == 0 }) {
            const RunResult r = sendOnce(windows, sites, files, bytes, workerNice);
            std::printf(
                "run %d %-10s %d x %lld MiB: %.2f s, %.1f MB/s; CPU %.2f s, window "
                "thread %.2f s; 10 ms timer late by at most %.1f ms (window thread on a core "
                "%.1f ms of it, waiting for one %.1f ms; %.1f ms once all "
                "had started; 99%%: %.1f ms; %zu ticks); slowest window to open %.1f ms%s\n",
                run + 1, windows ? "windows" : "no windows", siteCount,
                static_cast<long long>(sizeMib), r.wall, r.mbPerSecond, r.cpu, r.uiCpu,
                r.worstLateMs, r.worstTickCpuMs, r.worstTickWaitMs, r.worstLateRunningMs,
                r.p99LateMs, r.ticks, r.slowestOpenMs, r.ok ? "" : " FILES FAILED");
            std::fflush(stdout);
            ok = ok && r.ok;
            rates[windows].push_back(r.mbPerSecond);
            worst[windows].push_back(r.worstLateMs);
            worstRunning[windows].push_back(r.worstLateRunningMs);
            for (const auto& server : servers)
                QFile::remove(server->root() + u'/' + test::Vsftpd::uploadFolder() + u'/' + name);
        }
    }
    const auto most = [](const std::vector<double>& values) {
        return *std::max_element(values.begin(), values.end());
    };
    std::printf("%d runs, workers %d nice steps below the window thread: median throughput "
                "%.1f MB/s without windows, %.1f MB/s with windows (windows / none %.3f); worst "
                "lateness %.1f ms without windows, %.1f ms with windows (once all had started: "
                "%.1f ms and %.1f ms)\n",
        runs, workerNice, median(rates[0]), median(rates[1]), median(rates[1]) / median(rates[0]),
        most(worst[0]), most(worst[1]), most(worstRunning[0]), most(worstRunning[1]));
    return ok ? 0 : 1;
}
