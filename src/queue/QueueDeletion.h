#pragma once

#include "queue/QueueItem.h"

#include <optional>
#include <vector>

namespace zelto {

class QueueStore;

// The queue window's Delete. The window shows the queue as it was when it opened while jobs go on
// appending, counting up and removing items, so writing its rows back as they stand would undo
// what the jobs did meanwhile. The deletion is applied instead to the file as it is now, in one
// update under the file's lock: the rows kept stay in the order shown, each with the file's
// current values; the rows deleted leave; items the window does not show (appended since it
// opened) follow in file order; an item shown but no longer in the file (sent meanwhile) does not
// come back.
class QueueDeletion final {
public:
    QueueDeletion() = delete;

    // The queue after deleting `deleted` and keeping `kept` (rows as the window holds them) from
    // `current` (the file's items now), numbered as it will be written.
    [[nodiscard]] static std::vector<QueueItem> merged(const std::vector<QueueItem>& kept,
        const std::vector<QueueItem>& deleted, const std::vector<QueueItem>& current);
    // Deletes from the file; the queue as written, or nothing when the file could not be written.
    [[nodiscard]] static std::optional<std::vector<QueueItem>> deleteRows(QueueStore& store,
        const std::vector<QueueItem>& kept, const std::vector<QueueItem>& deleted);
};

} // namespace zelto
