#pragma once

#include "distribution/JobOutcomeSink.h"
#include "queue/QueueStore.h"

#include <QStringList>

#include <mutex>

namespace zelto {

class LogSink;
class Notifier;
struct FileEntry;
struct QueueItem;

// The end of each site of each transfer job: every file that was not sent is logged
// (ids::kLogFtpTransferFailed "FTP Transfer Failed") and, with ResendFail on, queued again or
// counted up; every file sent leaves the queue if it was there. All of one site's changes to the
// queue are one write of the queue file, so jobs that end together lose nothing. Called on the
// jobs' worker threads.
//
// A queue file that cannot be written (a full disk, a folder the run may not write, a lock not
// had) is never silent: the files whose change was lost are told to `notifier` and kept for
// notRecorded(), so that an unattended run can end as failed.
//
// A job that must leave the queue alone is given another sink.
class QueueBookkeeping final : public JobOutcomeSink {
public:
    QueueBookkeeping(LogSink& log, Notifier& notifier, QueueStore store = QueueStore());

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

    // The message of each queue write that failed in this run, naming its files.
    [[nodiscard]] QStringList notRecorded() const;

private:
    void record(const SiteOutcome& outcome, bool distribution);
    void tellNotRecorded(const QStringList& queued, const QStringList& removed);

    LogSink& log_;
    Notifier& notifier_;
    QueueStore store_;
    mutable std::mutex mutex_;
    QStringList notRecorded_;
};

} // namespace zelto
