#include "ScriptRun.h"

#include "distribution/WorkerThreads.h"
#include "ftp/JobServices.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scripts/ScriptInterpreter.h"
#include "scripts/ScriptProgressSink.h"
#include "scripts/ScriptReader.h"
#include "scripts/ScriptReport.h"

namespace zelto {

ScriptRun::ScriptRun(
    JobServices& services, WorkerThreads& threads, std::shared_ptr<ScriptProgressSink> sink)
    : services_(services), threads_(threads), shared_(std::make_shared<Shared>())
{
    shared_->sink = std::move(sink);
}

ScriptRun::~ScriptRun()
{
    stop();
}

void ScriptRun::start(const QString& path)
{
    if (started_.exchange(true))
        return;
    stop_ = threads_.launch(
        [path, &services = services_, shared = shared_](
            std::stop_token stop) { run(path, services, *shared, std::move(stop)); },
        WorkerThreads::Priority::Transfer);
}

void ScriptRun::pause()
{
    shared_->gate.pause();
}

void ScriptRun::resume()
{
    shared_->gate.resume();
}

void ScriptRun::stop()
{
    stop_.request_stop();
}

ScriptState ScriptRun::state() const
{
    {
        const std::lock_guard lock(shared_->mutex);
        if (shared_->finished)
            return ScriptState::Finished;
    }
    if (shared_->gate.paused())
        return ScriptState::Suspended;
    return started_ ? ScriptState::Running : ScriptState::NotStarted;
}

bool ScriptRun::waitFinished(std::chrono::milliseconds deadline) const
{
    std::unique_lock lock(shared_->mutex);
    return shared_->ended.wait_for(lock, deadline, [this] { return shared_->finished; });
}

bool ScriptRun::succeeded() const
{
    const std::lock_guard lock(shared_->mutex);
    return shared_->succeeded;
}

void ScriptRun::run(
    const QString& path, JobServices& services, Shared& shared, std::stop_token stop)
{
    ScriptReport report(*shared.sink, services.log);
    {
        ScriptInterpreter interpreter(services, report, stop, &shared.gate);
        ScriptReader reader(path);
        if (reader.open()) {
            for (;;) {
                shared.gate.pass(stop);
                if (stop.stop_requested())
                    break;
                const auto line = reader.next();
                if (!line)
                    break;
                interpreter.runLine(line->text, line->cut);
            }
        } else {
            report.error(StringTable::text(ids::kScriptOpenFailed) + u' ' + path + u' '
                + reader.errorString());
        }
        interpreter.finish();
    }
    const ScriptTally tally { report.successes(), report.failures(), stop.stop_requested() };
    const bool succeeded = tally.allSucceeded();
    // The sink hears of the end before anyone waiting for it does.
    shared.sink->ended(tally);
    {
        const std::lock_guard lock(shared.mutex);
        shared.finished = true;
        shared.succeeded = succeeded;
    }
    shared.ended.notify_all();
}

} // namespace zelto
