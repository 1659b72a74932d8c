#pragma once

#include "distribution/FileEntry.h"
#include "distribution/FileSet.h"
#include "distribution/LinkReport.h"
#include "distribution/ParallelStarter.h"
#include "distribution/RunSummary.h"
#include "profiles/SiteProfile.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

namespace zelto {

class JobOutcomeSink;
class TransferJob;
class WorkerThreads;
struct JobServices;

// The run of a link: the link is read (LinkRun::prepare) and its files become one file set, on a
// worker, so that a long list never holds the thread that starts the run; then each of its sites
// gets a parallel transfer job, started an interval apart. Every site's end is reported
// (LinkReport) and handed on to the bookkeeping. The run ends when its last site has ended: the
// count of pending sites is kept on the thread that owns the run, which is the application
// object's, and whose event loop must be running.
class LinkDistribution final {
public:
    enum class End {
        NoSites, // nothing ran
        AllSent, // every file reached every site
        NotAllSent,
    };
    using Ended = std::function<void(End end)>;
    // Called on this thread with each site's job just before it starts: a windowed run opens
    // the job's transfer window there.
    using JobStarting = std::function<void(const std::shared_ptr<TransferJob>& job)>;

    LinkDistribution(JobServices& services, WorkerThreads& threads, JobOutcomeSink& bookkeeping,
        std::FILE* out, std::chrono::milliseconds interval = ParallelStarter::kInterval);
    ~LinkDistribution();
    LinkDistribution(const LinkDistribution&) = delete;
    LinkDistribution& operator=(const LinkDistribution&) = delete;

    // Starts link `name`; a run starts once. `ended` is called from the event loop: at once when
    // the link has no sites (which is told on `out`), otherwise once the last site has ended.
    void start(const QString& name, Ended ended);

    void setJobStarting(JobStarting starting) { jobStarting_ = std::move(starting); }

    // The sites whose transfer has not ended yet (PendingLinkSites).
    [[nodiscard]] int pendingSites() const { return pending_; }
    // A record for each site that has ended, complete when `ended` is called.
    [[nodiscard]] const RunSummary& summary() const { return summary_; }

private:
    struct Site;
    struct Plan {
        std::vector<SiteRecord> sites;
        std::vector<QString> siteNames;
        FileSet set;
    };

    void prepared(Plan plan);
    void startSite(std::size_t index);
    void siteEnded(std::size_t index);

    JobServices& services_;
    WorkerThreads& threads_;
    JobOutcomeSink& bookkeeping_;
    std::FILE* out_;
    std::chrono::milliseconds interval_;
    std::unique_ptr<LinkReport> report_;
    RunSummary summary_;
    std::vector<FileEntry> files_;
    std::vector<std::unique_ptr<Site>> sites_;
    std::unique_ptr<ParallelStarter> starter_;
    Ended ended_;
    JobStarting jobStarting_;
    int pending_ = 0;
    // Destroyed first: the preparation and the site ends still posted are dropped with it.
    QObject context_;
};

} // namespace zelto
