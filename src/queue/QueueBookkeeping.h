#pragma once

#include "distribution/JobOutcomeSink.h"
#include "queue/QueueStore.h"

namespace zelto {

class LogSink;
struct FileEntry;
struct QueueItem;

// The end of each site of each transfer job: every file that was not sent is logged
// (ids::kLogFtpTransferFailed "FTP Transfer Failed") and, with ResendFail on, queued again or
// counted up; every file sent leaves the queue if it was there. All of one site's changes to the
// queue are one write of the queue file, so jobs that end together lose nothing. Called on the
// jobs' worker threads.
//
// A job that must leave the queue alone is given another sink.
class QueueBookkeeping final : public JobOutcomeSink {
public:
    explicit QueueBookkeeping(LogSink& log, QueueStore store = QueueStore());

    // A distribution's site goes to recordSiteResults, every other job's to recordJobResults.
    void siteFinished(const SiteOutcome& outcome) override;

    // One site of a distribution: the logged file is the remote folder joined with the local
    // name; no purge.
    void recordSiteResults(const SiteOutcome& outcome);
    // A put, get or copy: the logged file is the local name; then, with ResendFail on and
    // ResendFreq "FREQ_NUM", the items that failed more than ResendFreqNum times are dropped.
    void recordJobResults(const SiteOutcome& outcome);

    // The queue item of one file of a site: its Source, Destination and method by the job's mode,
    // and the login data of the site (and of a copy's target).
    [[nodiscard]] static QueueItem itemOf(const SiteOutcome& outcome, const FileEntry& file);

private:
    void record(const SiteOutcome& outcome, bool distribution);

    LogSink& log_;
    QueueStore store_;
};

} // namespace zelto
