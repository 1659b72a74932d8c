#pragma once

#include "distribution/LinkDistribution.h"
#include "queue/QueueBookkeeping.h"
#include "queue/QueueResendTimer.h"
#include "queue/QueueSender.h"
#include "scheduler/Scheduler.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace zelto {

class ProgramServices;
class ScriptProgress;
class ScriptRun;

// What an interactive run keeps going beside its windows for its whole life: the queue's
// bookkeeping at the end of every job, the queue resend timer, and the scheduler with the scripts
// and links it starts. Lives on the user interface thread; never waits for a job.
class BackgroundWork final {
public:
    explicit BackgroundWork(
        ProgramServices& services, Scheduler::Clock clock = &QDateTime::currentDateTime);
    ~BackgroundWork();
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;

    // Arms the resend timer and switches the scheduler on unless the setting says "NO".
    void start();

    // The options were changed: the resend timer takes a new ResendTime at once.
    void optionsChanged() { resendTimer_.resendTimeChanged(); }

    [[nodiscard]] JobOutcomeSink& bookkeeping() { return bookkeeping_; }
    [[nodiscard]] QueueSender& queueSender() { return sender_; }
    [[nodiscard]] Scheduler& scheduler() { return scheduler_; }

    // Sends a link's files to its sites in parallel, the link read on a worker; a link without
    // sites does nothing.
    void runLink(const QString& name);
    // How the links started here show their jobs (a windowed run opens a transfer window each).
    void setLinkJobStarting(LinkDistribution::JobStarting starting)
    {
        linkJobStarting_ = std::move(starting);
    }
    // Hears the end of each link started here that had sites, with a record per site (a windowed
    // run shows its report).
    using LinkEnded = std::function<void(const RunSummary& summary)>;
    void setLinkEnded(LinkEnded ended) { linkEnded_ = std::move(ended); }
    // How the scripts started here are shown (a windowed run opens a progress window each).
    using ScriptStarting = std::function<void(const QString& path, std::shared_ptr<ScriptRun> run,
        std::shared_ptr<ScriptProgress> progress)>;
    void setScriptStarting(ScriptStarting starting) { scriptStarting_ = std::move(starting); }
    // Runs a command script on a worker of its own; its progress window reads the lines.
    std::shared_ptr<ScriptProgress> runScript(const QString& path);

    // The links started here that have not ended yet, those still being read too.
    [[nodiscard]] std::size_t runningLinks() const { return links_.size(); }
    // Transfers or scripts are under way, or a link or a send of the queue is about to start
    // some: any worker of the program runs.
    [[nodiscard]] bool busy() const;
    // Stops every worker of the program and joins it. Each job hands its files to the
    // bookkeeping on its way out, so those not sent are queued (with ResendFail on).
    void stopAll();
    // The scripts started here that have not ended yet.
    [[nodiscard]] std::size_t runningScripts();

private:
    struct Script {
        std::shared_ptr<ScriptProgress> progress;
        // Shared with the run's window, which may still ask it to stop.
        std::shared_ptr<ScriptRun> run;
    };

    void linkEnded(const LinkDistribution* link);
    void dropEndedScripts();

    ProgramServices& services_;
    QueueBookkeeping bookkeeping_;
    QueueSender sender_;
    QueueResendTimer resendTimer_;
    Scheduler scheduler_;
    LinkDistribution::JobStarting linkJobStarting_;
    LinkEnded linkEnded_;
    ScriptStarting scriptStarting_;
    std::vector<std::unique_ptr<LinkDistribution>> links_;
    std::vector<Script> scripts_;
    // Destroyed first: a link's end that is still posted is dropped with it.
    QObject context_;
};

} // namespace zelto
