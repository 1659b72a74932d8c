#pragma once

#include "distribution/RemotePlacement.h"
#include "distribution/TransferJob.h"
#include "queue/QueueItem.h"
#include "queue/QueueStore.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace zelto {

class JobOutcomeSink;
class WorkerThreads;
struct JobServices;

// Sends the queue again: one transfer job per pair of Source and Destination that has an idle
// item, carrying every item of that pair, each item marked as being sent in the same write of the
// queue file. An item marked by a process that no longer runs (killed while sending) counts as
// idle. The queue is read and marked on a worker, since a long queue holds the file's lock
// for a while. The sender lives on the thread of the application object (the user interface's,
// or the unattended run's) and starts the jobs from its event loop, an upload or a download
// 200 ms before the next job, so the caller never waits. The jobs end on their own threads and
// hand their files to the bookkeeping, which takes what was sent out of the queue and counts up
// what failed again. A queue file that cannot be written sends nothing (another run would take the
// same items) and says so through the notifier.
class QueueSender final {
public:
    // The idle items' pairs, in the order first met. An item of the pair is taken whatever its
    // status, so one already being sent goes again when an idle one shares its pair.
    struct Group {
        QString source;
        QString destination;
        std::vector<int> positions;
    };
    // Called from the event loop once every job of one send has ended; `empty` when the queue
    // was empty (the caller then says ids::kQueueEmptyOrSending "Queue is either empty or all files
    // are currently being sent"). A queue without an idle item is not empty: no job starts and it
    // ends at once.
    using Ended = std::function<void(bool empty)>;

    QueueSender(JobServices& services, WorkerThreads& threads, JobOutcomeSink& bookkeeping,
        QueueStore store = QueueStore());
    ~QueueSender();
    QueueSender(const QueueSender&) = delete;
    QueueSender& operator=(const QueueSender&) = delete;

    // Starts a send; `ended` is always called.
    void sendQueue(Ended ended = {});
    // A send is reading the queue or has jobs still to start.
    [[nodiscard]] bool starting() const;

    // A pair is the key "Source Destination" split back at its blanks: a host name with a blank
    // does not survive the trip and its items are not sent, nor are those of a key that gives
    // fewer than two words (an empty Source or Destination).
    [[nodiscard]] static std::vector<Group> groupsOf(const std::vector<QueueItem>& items);
    // The job of one group's items, as the sender read them: the direction and the site's (and a
    // copy's target's) login data of the last item.
    [[nodiscard]] static TransferJob::Setup setupOf(const std::vector<QueueItem>& items);
    // The folder to give the put (or copy) engine for a file that failed in `remoteFolder`: the
    // engine places files below their folder by FTPDirTree, and a failed transfer left the folder
    // it was placed in, so the folders that placement adds are taken off again. A folder that does
    // not end with them (the file failed before it was placed) stays.
    [[nodiscard]] static QString resendFolder(
        const QString& localFolder, const QString& remoteFolder, const QString& name, DirTree mode);

private:
    struct Run;
    // The queue as a send found it: its count, and the jobs of the items it marked as being sent.
    struct Taken {
        int count = 0;
        std::vector<TransferJob::Setup> setups;
        // Why the items could not be marked as being sent; then nothing is sent.
        std::optional<QString> notRecorded;
    };

    [[nodiscard]] static Taken takeIdleItems(QueueStore store);
    void startSend(Taken queue, Ended ended);
    void startNext(const std::shared_ptr<Run>& run);
    void jobEnded(const std::shared_ptr<Run>& run);
    void finish(const std::shared_ptr<Run>& run);

    JobServices& services_;
    WorkerThreads& threads_;
    JobOutcomeSink& bookkeeping_;
    QueueStore store_;
    std::vector<std::shared_ptr<Run>> runs_;
    int reading_ = 0; // sends whose queue is being read
    // Destroyed first: the starts and ends still to come are dropped with it.
    QObject context_;
};

} // namespace zelto
