#pragma once

#include "distribution/JobOutcomeSink.h"
#include "distribution/RunSummary.h"
#include "distribution/TransferJob.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace zelto {

class WorkerThreads;
struct JobServices;

// A run of transfer jobs to several sites as its summary sees it: Send Parallel's job per site,
// or Send Serial's one job that walks them all. Each site's files are tallied as the site ends,
// with the time since its job started or since the site before it in that job ended, and then
// handed on to the bookkeeping. When the last of the run's jobs has ended, `ended` is called on
// the thread that owns the run, from its event loop, with a record per site. The run outlives the
// workers of its jobs (the program joins them before its windows go).
class SummarisedRun final {
public:
    using Ended = std::function<void(const RunSummary& summary)>;

    // `jobs` is how many jobs the run will start.
    SummarisedRun(QString title, std::size_t jobs, JobServices& services, WorkerThreads& threads,
        JobOutcomeSink& bookkeeping, Ended ended);
    ~SummarisedRun();
    SummarisedRun(const SummarisedRun&) = delete;
    SummarisedRun& operator=(const SummarisedRun&) = delete;

    // The run's next job; its clock starts now.
    [[nodiscard]] std::shared_ptr<TransferJob> makeJob(TransferJob::Setup setup);
    // Starts a job made by makeJob, whose end counts towards the run's.
    void start(const std::shared_ptr<TransferJob>& job);

    // Every job has ended and `ended` was called.
    [[nodiscard]] bool ended() const { return pending_ == 0; }

private:
    struct Job;

    void siteEnded(Job& job, const SiteOutcome& outcome);
    void jobEnded();

    JobServices& services_;
    WorkerThreads& threads_;
    JobOutcomeSink& bookkeeping_;
    Ended ended_;
    std::size_t pending_;
    std::vector<std::unique_ptr<Job>> jobs_;
    // Sites end on the jobs' workers.
    std::mutex mutex_;
    RunSummary summary_; // guarded by mutex_
    // Destroyed first: a job's end still posted is dropped with it.
    QObject context_;
};

} // namespace zelto
