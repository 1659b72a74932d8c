#pragma once

#include "queue/QueueBatch.h"
#include "queue/QueueItem.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace zelto {

// The transfer queue, kept in the queue file and nowhere else: every operation reads the file
// and each change is one read and one atomic write under the file's lock (PrivateProfile::update),
// so that jobs ending at the same moment on their own threads never lose or mix an item. Several
// changes go into one write through update(). A missing file is an empty queue and is made by the
// first change. The changes return false when the file could not be written
// (PrivateProfile::lastWriteFailure says why); the bookkeeping and the sender then tell the user.
class QueueStore final {
public:
    explicit QueueStore(QString file = defaultFile());

    // The queue file, always in the application data folder.
    [[nodiscard]] static QString defaultFile();

    [[nodiscard]] const QString& file() const { return file_; }

    // "NumQueues" (QueueBatch says how a damaged count is read).
    [[nodiscard]] int count() const;
    // Every item, as the queue window reads it.
    [[nodiscard]] std::vector<QueueItem> loadAll() const;
    // The position of the first item that is the same transfer.
    [[nodiscard]] std::optional<int> find(const QueueItem& item) const;

    bool appendFailed(const QueueItem& item);
    bool removeSent(const QueueItem& item);
    bool markSending(int position);
    bool resetAllIdle();
    bool purgeByAttempts(int limit);
    bool clear();
    bool rewrite(const std::vector<QueueItem>& rows, int deleted);

    // Any operations of QueueBatch, in one read and one write of the file.
    bool update(const std::function<void(QueueBatch&)>& change);

private:
    QString file_;
};

} // namespace zelto
