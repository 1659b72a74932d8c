#pragma once

#include "platform/IniDocument.h"
#include "queue/QueueItem.h"

#include <QString>
#include <QStringList>

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <unordered_map>
#include <vector>

namespace zelto {

// Whose read limits apply: the queue window reads every text into 255 characters; the sender
// reads passwords and user names into 50 and the method word into 20.
enum class QueueReader { Window, Sender };

// The queue's items during one update of the queue file: each operation of the store works on
// the document read under the file's lock, and flush() writes the result into it, so that all
// the outcomes of a job, or a whole send, cost one read and one write of the file.
//
// The file ends as the operations run one by one would leave it: a removal moves the later
// sections down through the section buffer (a section too long for it is cut as it moves), an
// emptied section keeps its header, and sections past the count keep what they held. To keep a
// large batch linear, the items are a list in queue order that only grows: an item that leaves
// stays in it, marked, and the new section names are given in flush(), where a section that
// moves keeps its lines and takes its new name (so sections may stand in another order in the
// file). An item's lines stay in the section it was read from and are changed there; an item
// added in this batch has its lines in a document of its own until flush().
class QueueBatch final {
public:
    // Reads the count; a negative one is 0. A number without a section is an item of default
    // values, kMaxMissingItems of them at most: the queue ends before the next (a damaged count
    // may name billions).
    explicit QueueBatch(IniDocument& document);
    ~QueueBatch();
    QueueBatch(const QueueBatch&) = delete;
    QueueBatch& operator=(const QueueBatch&) = delete;

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
    // Marked with this process (ProcessMark), so that the mark outlives it only as a stale one.
    // Positions outside 1..count() are ignored.
    void markSending(int position);
    // The items marked as being sent by a process that no longer runs become idle; those marked
    // without a process (by an older version) stay as they are. Returns how many.
    int releaseAbandoned();
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
    // An item, by its place in items_ (its id): ids grow in queue order.
    struct Item {
        int section = 0; // the number of the section it was read from; 0 when added in this batch
        int added = 0; // its section in added_, when added in this batch
        bool queued = true; // false once it has left the queue
        bool leavesGap = false; // removed: the items after it move down into its section
        std::size_t identity = 0; // the hash of its identity, once the index is built
    };

    [[nodiscard]] IniDocument& documentOf(const Item& item);
    [[nodiscard]] const IniDocument& documentOf(const Item& item) const;
    [[nodiscard]] QString sectionOf(const Item& item) const;
    [[nodiscard]] std::vector<std::optional<QString>> valuesOf(
        const Item& item, const QStringList& keys) const;
    [[nodiscard]] QStringList linesOf(const Item& item) const;
    [[nodiscard]] int attemptsOf(const Item& item) const;
    [[nodiscard]] QStringList identityOf(const Item& item) const;
    [[nodiscard]] QueueItem read(const Item& item, int position, QueueReader reader) const;
    [[nodiscard]] bool fitsBuffer(const Item& item) const;
    // What section `position`, past the count, holds now.
    [[nodiscard]] QStringList linesPastCount(int position) const;

    [[nodiscard]] const std::vector<int>& queuedIds();
    [[nodiscard]] std::optional<int> findId(const QueueItem& item);
    void indexIdentity(int id);
    void forgetIdentity(int id);

    // A new item at the end of the queue, starting from `lines`.
    int addItem(const QStringList& lines);
    void setKey(int id, int key, const QString& value);
    // Idle again: the status and, when there is one, the marking process.
    void makeIdle(int id);
    // Keeps tooLong_ up to date after the item's lines changed.
    void noteLength(int id);
    void findTooLong();
    // The item passes through the section buffer, as a section that moves down does.
    void passBuffer(int id);
    // The item leaves the queue; with `leavesGap` its section goes and the later items move down.
    void dropItem(int id, bool leavesGap);
    // An item that leaves its lines in section `position`, past the new count.
    void leaveLinesAt(int id, int position);

    IniDocument& document_;
    // The lines of the items added in this batch, a section each, named by its number.
    IniDocument added_;
    int addedSections_ = 0;
    std::vector<Item> items_;
    int count_ = 0;
    bool countChanged_ = false;
    bool changed_ = false; // an item's lines changed
    // The ids of the queued items in order: the positions; rebuilt after a removal.
    std::vector<int> queued_;
    bool queuedValid_ = true;
    // Identity hash -> the queued items of that hash; built by the first search.
    std::unordered_multimap<std::size_t, int> identities_;
    bool indexed_ = false;
    // The queued items known to be too long for the section buffer; found at the first removal.
    std::set<int> tooLong_;
    bool tooLongKnown_ = false;
    // Sections past the count that change: their new lines (empty: the header alone), or
    // nothing when the section goes whole.
    std::map<int, std::optional<QStringList>> pastCount_;
};

} // namespace zelto
