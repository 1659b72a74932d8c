#include "BackgroundWork.h"

#include "app/ProgramServices.h"
#include "scripts/ScriptProgress.h"
#include "scripts/ScriptRun.h"
#include "settings/DataFolders.h"

#include <QDir>
#include <QTimer>

namespace zelto {

BackgroundWork::BackgroundWork(ProgramServices& services, Scheduler::Clock clock)
    : services_(services)
    , bookkeeping_(services.log(), services.jobs().notifier)
    , sender_(services.jobs(), services.threads(), bookkeeping_)
    , resendTimer_(sender_)
    // A script named without a folder is one of the data folder's.
    , scheduler_(
          { [this](const QString& path) { runScript(QDir(DataFolders::base()).filePath(path)); },
              [this](const QString& name) { runLink(name); } },
          std::move(clock))
{
}

BackgroundWork::~BackgroundWork() = default;

void BackgroundWork::start()
{
    resendTimer_.start();
    if (Scheduler::onInSettings())
        scheduler_.setScheduler(true);
}

void BackgroundWork::runLink(const QString& name)
{
    auto link = std::make_unique<LinkDistribution>(
        services_.jobs(), services_.threads(), bookkeeping_, nullptr);
    link->setJobStarting(linkJobStarting_);
    const LinkDistribution* running = link.get();
    // The end comes from inside the run's own call; the run is dropped after it has returned.
    link->start(name, [this, running](LinkDistribution::End end) {
        if (end != LinkDistribution::End::NoSites && linkEnded_)
            linkEnded_(running->summary());
        QTimer::singleShot(0, &context_, [this, running] { linkEnded(running); });
    });
    links_.push_back(std::move(link));
}

void BackgroundWork::linkEnded(const LinkDistribution* link)
{
    std::erase_if(links_, [link](const auto& kept) { return kept.get() == link; });
}

bool BackgroundWork::busy() const
{
    return services_.threads().running() > 0 || sender_.starting() || !links_.empty();
}

void BackgroundWork::stopAll()
{
    services_.threads().stopAll();
}

std::shared_ptr<ScriptProgress> BackgroundWork::runScript(const QString& path)
{
    dropEndedScripts();
    auto progress = std::make_shared<ScriptProgress>();
    auto run = std::make_shared<ScriptRun>(services_.jobs(), services_.threads(), progress);
    run->start(path);
    scripts_.push_back({ progress, run });
    if (scriptStarting_)
        scriptStarting_(path, std::move(run), progress);
    return progress;
}

std::size_t BackgroundWork::runningScripts()
{
    dropEndedScripts();
    return scripts_.size();
}

void BackgroundWork::dropEndedScripts()
{
    // Dropping a run stops it, so only those that have ended go.
    std::erase_if(
        scripts_, [](const Script& script) { return script.progress->outcome().has_value(); });
}

} // namespace zelto
