#include "SummarisedRun.h"

#include "distribution/RunOffThread.h"

namespace zelto {

// One job of the run: the sink its sites end in, and when the last of them ended.
struct SummarisedRun::Job final : JobOutcomeSink {
    explicit Job(SummarisedRun& owner) : run(owner) { }

    void siteFinished(const SiteOutcome& outcome) override { run.siteEnded(*this, outcome); }

    SummarisedRun& run;
    std::chrono::steady_clock::time_point mark = std::chrono::steady_clock::now(); // run.mutex_
};

SummarisedRun::SummarisedRun(QString title, std::size_t jobs, JobServices& services,
    WorkerThreads& threads, JobOutcomeSink& bookkeeping, Ended ended)
    : services_(services)
    , threads_(threads)
    , bookkeeping_(bookkeeping)
    , ended_(std::move(ended))
    , pending_(jobs)
    , summary_(std::move(title))
{
}

SummarisedRun::~SummarisedRun() = default;

std::shared_ptr<TransferJob> SummarisedRun::makeJob(TransferJob::Setup setup)
{
    jobs_.push_back(std::make_unique<Job>(*this));
    return TransferJob::create(std::move(setup), services_, *jobs_.back(), threads_);
}

void SummarisedRun::start(const std::shared_ptr<TransferJob>& job)
{
    // The end comes on the job's last worker; the count is kept on this thread.
    job->start([this, guard = QPointer<QObject>(&context_)] {
        postWhileAlive(guard, [this] { jobEnded(); });
    });
}

void SummarisedRun::siteEnded(Job& job, const SiteOutcome& outcome)
{
    const auto now = std::chrono::steady_clock::now();
    {
        const std::lock_guard lock(mutex_);
        const std::chrono::duration<double> seconds = now - job.mark;
        job.mark = now;
        summary_.add({ RunSummary::labelOf(outcome.site), LinkReport::tallyOf(outcome.files),
            seconds.count() });
    }
    bookkeeping_.siteFinished(outcome);
}

void SummarisedRun::jobEnded()
{
    if (pending_ == 0 || --pending_ > 0)
        return;
    RunSummary summary;
    {
        const std::lock_guard lock(mutex_);
        summary = summary_;
    }
    if (ended_)
        ended_(summary);
}

} // namespace zelto
