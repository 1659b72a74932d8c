#include "QueueDeletion.h"

#include "queue/QueueStore.h"

#include <QHash>
#include <QStringList>

#include <deque>

namespace zelto {
namespace {

// Two items are the same transfer when these four are equal, byte for byte.
QString identityOf(const QueueItem& item)
{
    return QStringList { item.localName, item.remoteName, item.source, item.destination }.join(
        QChar(0));
}

} // namespace

std::vector<QueueItem> QueueDeletion::merged(const std::vector<QueueItem>& kept,
    const std::vector<QueueItem>& deleted, const std::vector<QueueItem>& current)
{
    // The file's items of each identity, first in the file first: a hand-made file may hold one
    // transfer twice, and each row then takes one of them.
    QHash<QString, std::deque<std::size_t>> unclaimed;
    for (std::size_t i = 0; i < current.size(); ++i)
        unclaimed[identityOf(current[i])].push_back(i);
    std::vector<bool> claimed(current.size(), false);
    const auto claim = [&](const QueueItem& row) -> std::optional<std::size_t> {
        const auto it = unclaimed.find(identityOf(row));
        if (it == unclaimed.end() || it->empty())
            return std::nullopt;
        const std::size_t index = it->front();
        it->pop_front();
        claimed[index] = true;
        return index;
    };

    for (const QueueItem& row : deleted)
        (void)claim(row);
    std::vector<QueueItem> rows;
    for (const QueueItem& row : kept) {
        if (const auto index = claim(row))
            rows.push_back(current[*index]);
    }
    for (std::size_t i = 0; i < current.size(); ++i) {
        if (!claimed[i])
            rows.push_back(current[i]);
    }
    int position = 0;
    for (QueueItem& row : rows)
        row.position = ++position;
    return rows;
}

std::optional<std::vector<QueueItem>> QueueDeletion::deleteRows(
    QueueStore& store, const std::vector<QueueItem>& kept, const std::vector<QueueItem>& deleted)
{
    std::vector<QueueItem> rows;
    const bool written = store.update([&](QueueBatch& batch) {
        const std::vector<QueueItem> current = batch.items();
        rows = merged(kept, deleted, current);
        batch.rewrite(rows, int(current.size() - rows.size()));
    });
    if (!written)
        return std::nullopt;
    return rows;
}

} // namespace zelto
