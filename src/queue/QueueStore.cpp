#include "QueueStore.h"

#include "platform/IniDocument.h"
#include "platform/Paths.h"
#include "platform/PrivateProfile.h"
#include "queue/QueueFileFormat.h"
#include "settings/DataFolders.h"

namespace zelto {

QString QueueStore::defaultFile()
{
    return joinPath(DataFolders::dataFiles(), QString::fromLatin1(queuefile::kFileName));
}

QueueStore::QueueStore(QString file) : file_(std::move(file))
{
}

int QueueStore::count() const
{
    IniDocument document = PrivateProfile::read(file_);
    return QueueBatch(document).count();
}

std::vector<QueueItem> QueueStore::loadAll() const
{
    IniDocument document = PrivateProfile::read(file_);
    return QueueBatch(document).items();
}

std::optional<int> QueueStore::find(const QueueItem& item) const
{
    IniDocument document = PrivateProfile::read(file_);
    return QueueBatch(document).find(item);
}

bool QueueStore::appendFailed(const QueueItem& item)
{
    return update([&](QueueBatch& batch) { batch.appendFailed(item); });
}

bool QueueStore::removeSent(const QueueItem& item)
{
    return update([&](QueueBatch& batch) { batch.removeSent(item); });
}

bool QueueStore::markSending(int position)
{
    return update([&](QueueBatch& batch) { batch.markSending(position); });
}

bool QueueStore::resetAllIdle()
{
    return update([](QueueBatch& batch) { batch.resetAllIdle(); });
}

bool QueueStore::purgeByAttempts(int limit)
{
    return update([&](QueueBatch& batch) { batch.purgeByAttempts(limit); });
}

bool QueueStore::clear()
{
    return update([](QueueBatch& batch) { batch.clear(); });
}

bool QueueStore::rewrite(const std::vector<QueueItem>& rows, int deleted)
{
    return update([&](QueueBatch& batch) { batch.rewrite(rows, deleted); });
}

bool QueueStore::update(const std::function<void(QueueBatch&)>& change)
{
    return PrivateProfile::update(file_, [&](IniDocument& document) {
        QueueBatch batch(document);
        change(batch);
        return batch.flush();
    });
}

} // namespace zelto
