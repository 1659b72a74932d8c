#pragma once

#include "distribution/FileEntry.h"
#include "distribution/JobOutcomeSink.h"
#include "distribution/TransferMode.h"
#include "ftp/FtpResult.h"
#include "ftp/JobProgress.h"
#include "ftp/JobServices.h"
#include "ftp/JobSite.h"
#include "ftp/PauseGate.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace zelto {

class CTransferSession;
class WorkerThreads;

// The work behind one transfer window: one site (a single job, as each window of Send Parallel
// has), or a job list that one worker walks in order (Send Serial, the queue). Each site gets a
// fresh copy of the file set, its own session on the worker's thread (a copy a second one, for
// its target), the engine of the mode, and at its end is handed to the outcome sink and
// disconnected.
//
// The window owns a shared pointer and reads progress() and done() on its timer; the workers
// hold the job too, so a window that closes never waits: a stopped worker finishes on its own.
// The threads belong to WorkerThreads, which the program waits for at its end.
//
// Cancel, as the window drives it: pause() the worker, ask the user, then resume(), cancel()
// (parallel "Yes", serial "All") or cancelCurrentSite() (serial "Only this one"). These calls
// may come from any thread.
class TransferJob final : public std::enable_shared_from_this<TransferJob> {
public:
    struct Setup {
        TransferMode mode = TransferMode::DistributionPut;
        // A job list walked by one worker; otherwise `sites` holds the one site of the job.
        bool serial = false;
        std::vector<JobSite> sites;
        // A copy's destination server; `sites` then holds its source. A copy without one fails
        // its connect.
        std::optional<JobSite> target;
        std::vector<FileEntry> files;
        // Set by callers that send a selection with its folder (the engines' keep-folder rule).
        bool keepFolder = false;
    };

    // How one site of the job ended: success when its engine ran (the files tell the rest), the
    // failed connect, or none when it never ran (cancelled before its turn).
    struct SiteResult {
        JobSite site;
        std::optional<FtpResult> result;
    };

    // Reads the overwrite rule (Overwrite, anything but "NO" allows it) now, as the window does
    // when it opens. The sites' total bytes are set to the size of the file set.
    [[nodiscard]] static std::shared_ptr<TransferJob> create(
        Setup setup, JobServices& services, JobOutcomeSink& outcomes, WorkerThreads& threads);
    TransferJob(const TransferJob&) = delete;
    TransferJob& operator=(const TransferJob&) = delete;

    // Starts the worker. `finished` is called once, on the thread of the last worker to end,
    // after every site was handed to the outcome sink.
    void start(std::function<void()> finished = {});

    [[nodiscard]] JobProgress& progress() { return progress_; }
    [[nodiscard]] TransferMode mode() const { return setup_.mode; }
    [[nodiscard]] bool serial() const { return setup_.serial; }
    [[nodiscard]] bool done() const { return done_.load(std::memory_order_acquire); }
    // The server of the site under way (the first site's until the worker has begun), for the
    // window's title and its cancel question.
    [[nodiscard]] QString currentServer() const;
    // The profile name of the site under way; empty when the job was not started from a profile.
    [[nodiscard]] QString currentSiteName() const;
    // A copy's destination server, for the window's title; empty for the other modes.
    [[nodiscard]] QString targetServer() const
    {
        return setup_.target ? setup_.target->server : QString();
    }
    // The sites that have ended, in the order in which they ended.
    [[nodiscard]] std::vector<SiteResult> results() const;

    // Holds the worker at its next checkpoint (a round of the pump, or before the next site).
    void pause();
    void resume();
    // Ends the job (both servers of a copy): the worker stops at its next block or libcurl
    // callback and hands the site under way, and every later site of the list untried, to the
    // outcome sink.
    void cancel();
    // Serial "Only this one". Connected: the file under way ends with ids::kPutCanceled and the
    // worker goes on with the next site. Not connected yet: the worker is stopped and hands this
    // site to the outcome sink; the rest of the list goes on in a new worker. A single job is
    // cancelled.
    void cancelCurrentSite();

private:
    // One worker thread and its share of the job list.
    struct Worker {
        std::stop_source stop;
        std::vector<JobSite> sites; // guarded by mutex_
        std::size_t next = 0; // the site under way, or the next one; guarded by mutex_
        CTransferSession* session = nullptr; // while a site runs; guarded by mutex_
        std::atomic<bool> connected { false }; // the site's login succeeded
        std::atomic<bool> cancelSite { false }; // the engine stops before its next file
    };

    TransferJob(
        Setup setup, JobServices& services, JobOutcomeSink& outcomes, WorkerThreads& threads);

    // Both called with mutex_ held.
    void launchWorker(std::vector<JobSite> sites);
    void cancelSiteOf(Worker& worker);
    void work(const std::shared_ptr<Worker>& worker, std::stop_token stop);
    [[nodiscard]] FtpResult runSite(Worker& worker, const JobSite& site, std::stop_token stop);
    // `target` is the copy's second session, none for the other modes.
    [[nodiscard]] FtpResult runEngine(CTransferSession& session, CTransferSession* target,
        const JobSite& site, std::vector<FileEntry>& files,
        const std::atomic<bool>& cancelSite) const;
    void endWorker(const std::shared_ptr<Worker>& worker);
    [[nodiscard]] SiteOutcome outcomeOf(
        const JobSite& site, const std::vector<FileEntry>& files) const;

    Setup setup_;
    JobServices& services_;
    JobOutcomeSink& outcomes_;
    WorkerThreads& threads_;
    bool overwrite_ = false;
    JobProgress progress_;
    PauseGate gate_;
    std::function<void()> finished_;
    std::atomic<bool> done_ { false };

    mutable std::mutex mutex_;
    std::vector<std::shared_ptr<Worker>> workers_; // running
    std::shared_ptr<Worker> walker_; // the worker that walks the list now
    JobSite current_;
    std::vector<SiteResult> results_;
};

} // namespace zelto
