#pragma once

#include "ftp/PauseGate.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stop_token>

namespace zelto {

class ScriptProgressSink;
class WorkerThreads;
struct JobServices;

// Where a script run stands, as its progress window shows it.
enum class ScriptState { NotStarted = 0, Running = 1, Suspended = 2, Finished = 3 };

// One run of a command script on a worker thread of its own. The run reads the file line by
// line, runs each line (ScriptInterpreter) and reports to its sink; at the end of the file it
// closes every connection and tells the sink that it has ended.
//
// Suspending and stopping are cooperative: a paused run waits before its next line and at the
// next round of a put under way; a stop ends the line under way at its next libcurl callback,
// runs no further line and closes the connections. The worker belongs to `threads`, so the
// program waits for it at its end; dropping the run object stops the run but never waits for it.
class ScriptRun final {
public:
    // `services` outlive the worker (they are the program's, or the unattended run's).
    ScriptRun(
        JobServices& services, WorkerThreads& threads, std::shared_ptr<ScriptProgressSink> sink);
    ~ScriptRun();
    ScriptRun(const ScriptRun&) = delete;
    ScriptRun& operator=(const ScriptRun&) = delete;

    // Starts the script `path`; a run starts once. A file that cannot be read is reported as an
    // error and the run ends.
    void start(const QString& path);
    // May be called before start(): the run then waits before its first line.
    void pause();
    void resume();
    void stop();

    [[nodiscard]] ScriptState state() const;
    // Waits until the run has ended or the deadline has passed; true when it has ended.
    [[nodiscard]] bool waitFinished(std::chrono::milliseconds deadline) const;
    // Every line succeeded and the run was not stopped; meaningful once it has finished.
    [[nodiscard]] bool succeeded() const;

private:
    // Shared with the worker, which may outlive this object.
    struct Shared {
        PauseGate gate;
        std::shared_ptr<ScriptProgressSink> sink;
        mutable std::mutex mutex;
        mutable std::condition_variable ended;
        bool finished = false; // guarded by mutex
        bool succeeded = false; // guarded by mutex
    };

    static void run(
        const QString& path, JobServices& services, Shared& shared, std::stop_token stop);

    JobServices& services_;
    WorkerThreads& threads_;
    std::shared_ptr<Shared> shared_;
    std::stop_source stop_ { std::nostopstate };
    std::atomic<bool> started_ { false };
};

} // namespace zelto
