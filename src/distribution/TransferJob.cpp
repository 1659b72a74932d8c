#include "TransferJob.h"

#include "distribution/CopyEngine.h"
#include "distribution/EngineOptions.h"
#include "distribution/GetEngine.h"
#include "distribution/JobOutcomeSink.h"
#include "distribution/PutEngine.h"
#include "distribution/WorkerThreads.h"
#include "ftp/CTransferSession.h"
#include "log/LogSink.h"
#include "platform/StringIds.h"

#include <numeric>

namespace zelto {
namespace {

// Passes the session's log on and notes whether the site is connected: "Only this one" does
// something else for a site that has logged in than for one that has not.
class ConnectionWatch final : public LogSink {
public:
    ConnectionWatch(LogSink& log, std::atomic<bool>& connected) : log_(log), connected_(connected)
    {
    }

    void write(const LogEvent& event) override
    {
        if (event.messageId == ids::kLogFtpConnectionOk)
            connected_.store(true, std::memory_order_release);
        else if (event.messageId == ids::kLogFtpConnectionClosed)
            connected_.store(false, std::memory_order_release);
        log_.write(event);
    }

private:
    LogSink& log_;
    std::atomic<bool>& connected_;
};

} // namespace

std::shared_ptr<TransferJob> TransferJob::create(
    Setup setup, JobServices& services, JobOutcomeSink& outcomes, WorkerThreads& threads)
{
    return std::shared_ptr<TransferJob>(
        new TransferJob(std::move(setup), services, outcomes, threads));
}

TransferJob::TransferJob(
    Setup setup, JobServices& services, JobOutcomeSink& outcomes, WorkerThreads& threads)
    : setup_(std::move(setup))
    , services_(services)
    , outcomes_(outcomes)
    , threads_(threads)
    , overwrite_(EngineOptions::overwriteSetting())
{
    const qint64 total = std::accumulate(setup_.files.begin(), setup_.files.end(), qint64(0),
        [](qint64 sum, const FileEntry& file) { return sum + file.size; });
    for (JobSite& site : setup_.sites)
        site.totalBytes = total;
    if (setup_.target)
        setup_.target->totalBytes = total;
    if (!setup_.sites.empty())
        current_ = setup_.sites.front();
}

void TransferJob::start(std::function<void()> finished)
{
    finished_ = std::move(finished);
    if (setup_.sites.empty()) {
        done_.store(true, std::memory_order_release);
        if (finished_)
            finished_();
        return;
    }
    const std::lock_guard lock(mutex_);
    launchWorker(setup_.sites);
}

void TransferJob::launchWorker(std::vector<JobSite> sites)
{
    auto worker = std::make_shared<Worker>();
    worker->sites = std::move(sites);
    workers_.push_back(worker);
    walker_ = worker;
    // The worker takes mutex_ before it reads its share, so it sees `stop` set.
    worker->stop = threads_.launch(
        [self = shared_from_this(), worker](std::stop_token stop) { self->work(worker, stop); },
        WorkerThreads::Priority::Transfer);
}

QString TransferJob::currentServer() const
{
    const std::lock_guard lock(mutex_);
    return current_.server;
}

QString TransferJob::currentSiteName() const
{
    const std::lock_guard lock(mutex_);
    return current_.name;
}

std::vector<TransferJob::SiteResult> TransferJob::results() const
{
    const std::lock_guard lock(mutex_);
    return results_;
}

void TransferJob::pause()
{
    gate_.pause();
}

void TransferJob::resume()
{
    gate_.resume();
}

void TransferJob::cancel()
{
    {
        const std::lock_guard lock(mutex_);
        for (const auto& worker : workers_) {
            worker->cancelSite.store(true, std::memory_order_release);
            worker->stop.request_stop();
        }
    }
    gate_.resume();
}

void TransferJob::cancelCurrentSite()
{
    if (!setup_.serial) {
        cancel();
        return;
    }
    {
        const std::lock_guard lock(mutex_);
        const auto worker = walker_;
        if (worker && worker->next < worker->sites.size())
            cancelSiteOf(*worker);
    }
    gate_.resume();
}

void TransferJob::cancelSiteOf(Worker& worker)
{
    if (worker.connected.load(std::memory_order_acquire) && worker.session) {
        worker.cancelSite.store(true, std::memory_order_release);
        worker.session->requestCancel();
        return;
    }
    // Not logged in yet: the worker may be anywhere in the connect, so it is stopped and keeps
    // only this site, which it hands to the outcome sink on its way out.
    const auto rest = worker.sites.begin() + std::ptrdiff_t(worker.next) + 1;
    std::vector<JobSite> later(rest, worker.sites.end());
    worker.sites.erase(rest, worker.sites.end());
    worker.cancelSite.store(true, std::memory_order_release);
    worker.stop.request_stop();
    if (!later.empty())
        launchWorker(std::move(later));
}

void TransferJob::work(const std::shared_ptr<Worker>& worker, std::stop_token stop)
{
    for (;;) {
        JobSite site;
        {
            const std::lock_guard lock(mutex_);
            if (worker->next >= worker->sites.size())
                break;
            site = worker->sites[worker->next];
            if (walker_ == worker)
                current_ = site;
        }
        gate_.pass(stop);
        if (stop.stop_requested())
            break;
        auto result = runSite(*worker, site, stop);
        const std::lock_guard lock(mutex_);
        results_.push_back({ site, std::move(result) });
        ++worker->next;
    }
    // Stopped: the sites of its share that never ran go to the outcome sink untried.
    for (;;) {
        JobSite site;
        {
            const std::lock_guard lock(mutex_);
            if (worker->next >= worker->sites.size())
                break;
            site = worker->sites[worker->next++];
            results_.push_back({ site, std::nullopt });
        }
        outcomes_.siteFinished(outcomeOf(site, setup_.files));
    }
    endWorker(worker);
}

FtpResult TransferJob::runSite(Worker& worker, const JobSite& site, std::stop_token stop)
{
    worker.cancelSite.store(false, std::memory_order_release);
    worker.connected.store(false, std::memory_order_release);
    std::vector<FileEntry> files = setup_.files;
    ConnectionWatch watch(services_.log, worker.connected);
    JobServices services { watch, services_.sounds, services_.tray, services_.notifier };
    CTransferSession session(services, &progress_, stop);
    session.setPauseGate(&gate_);
    // A copy's target has a session of its own on this thread, under the same stop request.
    std::optional<CTransferSession> target;
    if (setup_.mode == TransferMode::Copy) {
        target.emplace(services, &progress_, stop);
        target->setPauseGate(&gate_);
    }
    {
        const std::lock_guard lock(mutex_);
        worker.session = &session;
    }
    auto result = runEngine(session, target ? &*target : nullptr, site, files, worker.cancelSite);
    {
        const std::lock_guard lock(mutex_);
        worker.session = nullptr;
    }
    outcomes_.siteFinished(outcomeOf(site, files));
    session.disconnectJob();
    if (target)
        target->disconnectJob();
    return result;
}

FtpResult TransferJob::runEngine(CTransferSession& session, CTransferSession* target,
    const JobSite& site, std::vector<FileEntry>& files, const std::atomic<bool>& cancelSite) const
{
    EngineOptions options;
    options.overwriteAllowed = overwrite_;
    options.keepFolder = setup_.keepFolder;
    // Only a put of the browser's selection may delete its sources: a distribution's other sites
    // still need them.
    options.keepSource = setup_.mode != TransferMode::Put;
    options.cancelJob = &cancelSite;
    if (setup_.mode == TransferMode::Get)
        return runGetEngine(session, site, files, options);
    if (target)
        return runCopyEngine(
            session, *target, site, setup_.target.value_or(JobSite {}), files, options);
    return runPutEngine(session, site, files, options);
}

SiteOutcome TransferJob::outcomeOf(const JobSite& site, const std::vector<FileEntry>& files) const
{
    return { setup_.mode, site, setup_.target ? &*setup_.target : nullptr, files };
}

void TransferJob::endWorker(const std::shared_ptr<Worker>& worker)
{
    bool last = false;
    {
        const std::lock_guard lock(mutex_);
        std::erase(workers_, worker);
        last = workers_.empty();
        if (last)
            done_.store(true, std::memory_order_release);
    }
    if (last && finished_)
        finished_();
}

} // namespace zelto
