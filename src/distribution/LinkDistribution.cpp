#include "LinkDistribution.h"

#include "distribution/JobOutcomeSink.h"
#include "distribution/ProfileSite.h"
#include "distribution/RunOffThread.h"
#include "distribution/TransferJob.h"
#include "profiles/LinkRun.h"

namespace zelto {

// One site of the run: its job, and what its end reported.
struct LinkDistribution::Site final : JobOutcomeSink {
    Site(LinkDistribution& owner, JobSite target) : run(owner), site(std::move(target)) { }

    // On the job's worker thread; the tally is read on the run's thread once the job has ended.
    void siteFinished(const SiteOutcome& outcome) override
    {
        tally = run.report_->siteFiles(outcome.site, outcome.files);
        run.bookkeeping_.siteFinished(outcome);
    }

    LinkDistribution& run;
    JobSite site;
    std::shared_ptr<TransferJob> job;
    std::chrono::steady_clock::time_point started;
    LinkReport::Tally tally;
};

LinkDistribution::LinkDistribution(JobServices& services, WorkerThreads& threads,
    JobOutcomeSink& bookkeeping, std::FILE* out, std::chrono::milliseconds interval)
    : services_(services)
    , threads_(threads)
    , bookkeeping_(bookkeeping)
    , out_(out)
    , interval_(interval)
{
}

LinkDistribution::~LinkDistribution() = default;

void LinkDistribution::start(const QString& name, Ended ended)
{
    ended_ = std::move(ended);
    report_ = std::make_unique<LinkReport>(name, out_);
    summary_ = RunSummary(QStringLiteral("Link run: %1").arg(name));
    runOffThread(
        threads_, &context_,
        [name] {
            LinkPlan plan = LinkRun::prepare(name);
            if (plan.sites.empty())
                return Plan {};
            return Plan { std::move(plan.sites), std::move(plan.siteNames),
                FileSet::build(plan.files) };
        },
        [this](Plan plan) { prepared(std::move(plan)); });
}

void LinkDistribution::prepared(Plan plan)
{
    if (plan.sites.empty()) {
        report_->noSites();
        if (ended_)
            ended_(End::NoSites);
        return;
    }
    files_ = plan.set.files();
    for (std::size_t i = 0; i < plan.sites.size(); ++i) {
        sites_.push_back(
            std::make_unique<Site>(*this, jobSiteOf(plan.sites[i], plan.siteNames[i])));
    }
    pending_ = int(sites_.size());
    report_->runStarted(sites_.size(), files_.size(), plan.set.totalBytes());
    starter_ = std::make_unique<ParallelStarter>(
        threads_, sites_.size(), [this](std::size_t index) { startSite(index); }, interval_);
    starter_->start();
}

void LinkDistribution::startSite(std::size_t index)
{
    Site& site = *sites_[index];
    TransferJob::Setup setup;
    setup.sites = { site.site };
    setup.files = files_;
    site.job = TransferJob::create(std::move(setup), services_, site, threads_);
    site.started = std::chrono::steady_clock::now();
    if (jobStarting_)
        jobStarting_(site.job);
    // The end comes on the worker's thread; the count is kept on this one.
    site.job->start([this, index, guard = QPointer<QObject>(&context_)] {
        postWhileAlive(guard, [this, index] { siteEnded(index); });
    });
}

void LinkDistribution::siteEnded(std::size_t index)
{
    const Site& site = *sites_[index];
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - site.started;
    const auto results = site.job->results();
    report_->siteEnded(site.site, results.empty() ? std::nullopt : results.front().result,
        site.tally, seconds.count());
    summary_.add({ RunSummary::labelOf(site.site), site.tally, seconds.count() });
    if (--pending_ > 0)
        return;
    report_->runEnded();
    if (ended_)
        ended_(report_->allSent() ? End::AllSent : End::NotAllSent);
}

} // namespace zelto
