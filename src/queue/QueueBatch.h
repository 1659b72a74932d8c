#pragma once

#include "platform/IniDocument.h"
#include "queue/QueueItem.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace zelto {

// Whose read limits apply: the queue window reads every text into 255 characters; the sender
// reads passwords and user names into 50 and the method word into 20.
enum class QueueReader { Window, Sender };

// The queue's items during one update of the queue file: each operation of the store works on
// the document read under the file's lock, and flush() writes the result into it, so that all
// the outcomes of a job, or a whole send, cost one read and one write of the file.
//
// Each section holds what the operations would leave run one by one: a removal moves the later
// sections down through the section buffer (a section too long for it is cut as it moves), an
// emptied section keeps its header, and sections past the count keep what they held. To keep a
// batch over ten thousand items linear, each item is a slot whose section number is settled
// only in flush(), where a moved section keeps its lines and takes its new name (so sections may
// stand in another order in the file), and searches go through an index of the identities.
class QueueBatch final {
public:
    // Reads the count; a negative one is 0, and one far beyond the last item section (a damaged
    // file) is cut to kMaxMissingItems past it.
    explicit QueueBatch(IniDocument& document);
    ~QueueBatch();
    QueueBatch(const QueueBatch&) = delete;
    QueueBatch& operator=(const QueueBatch&) = delete;

    // Items that a count larger than the sections may name, each read with default values.
    static constexpr int kMaxMissingItems = 1000;

    [[nodiscard]] int count() const { return count_; }
    // Every item in file order. The four values of the second site are read for "ZELTO_XFER"
    // only, by the sender for any method word it takes for site-to-site.
    [[nodiscard]] std::vector<QueueItem> items(QueueReader reader = QueueReader::Window);
    // The position of the first item that is the same transfer: LocalName, RemoteName, Source and
    // Destination equal, byte for byte.
    [[nodiscard]] std::optional<int> find(const QueueItem& item);

    // A failed transfer: the item already queued is counted up and made idle (nothing else of it
    // changes), or the item is added at the end, idle, with one attempt.
    void appendFailed(const QueueItem& item);
    // A transfer that succeeded leaves the queue; false when it was not queued.
    bool removeSent(const QueueItem& item);
    // Positions outside 1..count() are ignored.
    void markSending(int position);
    void resetAllIdle();
    // Drops the items that failed more than `limit` times; the others keep their order.
    void purgeByAttempts(int limit);
    // Only the count goes: the sections stay, dead.
    void clear();
    // The queue window's rows after it deleted `deleted` of them, written whole as the new
    // sections 1..rows. Then the sections rows+1 up to `deleted` are removed (the bound is the
    // number deleted, not the old count, so old sections may stay past the new count).
    void rewrite(const std::vector<QueueItem>& rows, int deleted);

    // Writes the changes into the document; false when there were none.
    bool flush();

private:
    struct Slot {
        int origin = 0; // the section it was read from; 0 for an item made in this batch
        // Its lines once changed or cut, as a document of one section; until then the
        // origin's section holds them, and moves with the item under a new name.
        std::optional<IniDocument> content;
        std::optional<bool> fits; // whether it passes the section buffer whole
        bool alive = true;
        // Removed or purged: its section makes way for the items after it.
        bool displaced = false;
        QString identity; // while the index is built
    };

    [[nodiscard]] std::vector<std::optional<QString>> valuesOf(
        const Slot& slot, const QStringList& keys) const;
    [[nodiscard]] int attemptsOf(const Slot& slot) const;
    [[nodiscard]] QStringList linesOf(const Slot& slot) const;
    [[nodiscard]] QString identityOf(const Slot& slot) const;
    [[nodiscard]] QueueItem read(const Slot& slot, int position, QueueReader reader) const;
    // What section `position` past the count holds now.
    [[nodiscard]] QStringList tailLines(int position) const;
    [[nodiscard]] static bool untouched(const Slot& slot, int position);

    Slot& addSlot(const QStringList& lines);
    void setKey(Slot& slot, int key, const QString& value);
    // The slot passes through the section buffer.
    void move(std::size_t index);
    // Adds a slot made or rewritten in this batch to the index, once there is one.
    void addToIndex(std::size_t index);
    void kill(std::size_t index, bool displaced);
    // A slot whose position falls past the count leaves its lines there.
    void leaveBehind(const Slot& slot, int position);
    [[nodiscard]] std::optional<std::size_t> findSlot(const QueueItem& item);
    [[nodiscard]] const std::vector<std::size_t>& order();

    IniDocument& document_;
    std::deque<Slot> slots_; // in file order; dead slots stay until the end
    int count_ = 0;
    bool countChanged_ = false;
    // The alive slots in order, rebuilt after a removal.
    std::vector<std::size_t> order_;
    bool orderValid_ = true;
    // Identity -> the alive slots of that identity; built by the first search.
    QHash<QString, std::set<std::size_t>> index_;
    bool indexed_ = false;
    // Sections past the count that change: their new lines (empty: the header alone), or
    // nothing when the section goes whole.
    std::map<int, std::optional<QStringList>> tail_;
};

} // namespace zelto
