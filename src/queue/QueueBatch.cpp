#include "QueueBatch.h"

#include "platform/PrivateProfile.h"
#include "platform/ProcessMark.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace zelto {
namespace {

// The keys of an item section, in the order in which the queue window rewrites them; the last
// four belong to the second site of a site-to-site item.
enum Key {
    LocalName,
    RemoteName,
    Source,
    Destination,
    Reason,
    NumTimes,
    Status,
    RemDirFile,
    LocDirFile,
    Password,
    Login,
    RemDir,
    FtpMethod,
    FileSize,
    Port,
    RemPassword,
    RemLogin,
    RemRemDir,
    RemotePort,
    kKeyCount
};

const QStringList& keyNames()
{
    using namespace queuefile::key;
    static const QStringList names = [] {
        QStringList list;
        for (const char* name : { kLocalName, kRemoteName, kSource, kDestination, kReason,
                 kNumTimes, kStatus, kRemDirFile, kLocDirFile, kPassword, kLogin, kRemDir,
                 kFtpMethod, kFileSize, kPort, kRemPassword, kRemLogin, kRemRemDir, kRemotePort })
            list.append(QString::fromLatin1(name));
        return list;
    }();
    return names;
}

// The keys that tell two items apart.
const QStringList& identityNames()
{
    static const QStringList names = keyNames().mid(LocalName, Destination + 1);
    return names;
}

// An item's values as the file keeps them.
std::array<QString, kKeyCount> textsOf(const QueueItem& item)
{
    return { item.localName, item.remoteName, item.source, item.destination, item.reason,
        QString::number(item.numTimes), QString::number(item.status), item.remDirFile,
        item.locDirFile, item.password, item.login, item.remDir, item.ftpMethod, item.fileSize,
        item.port, item.remPassword, item.remLogin, item.remRemDir, item.remotePort };
}

QString latin1(const char* text)
{
    return QString::fromLatin1(text);
}

QString sectionName(int position)
{
    return latin1(queuefile::kItemSectionPrefix) + QString::number(position);
}

// The number of an item section's name ("QUEUE12" is 12), or 0.
int itemNumber(const QString& name)
{
    const QString prefix = latin1(queuefile::kItemSectionPrefix);
    if (!name.startsWith(prefix, Qt::CaseInsensitive))
        return 0;
    bool ok = false;
    const int number = name.mid(prefix.size()).toInt(&ok);
    return ok && number > 0 && sectionName(number).compare(name, Qt::CaseInsensitive) == 0 ? number
                                                                                           : 0;
}

// The count as far as it names items. A number without a section is an item of default values;
// at most kMaxMissingItems of them are read in all, and the queue ends before the next. So a
// damaged count, with or without a section of its number, costs what the file holds, and the
// window and the sender see the same items.
int readableCount(const IniDocument& document, int count)
{
    if (count <= QueueBatch::kMaxMissingItems)
        return count;
    std::vector<qint64> numbers;
    for (const QString& name : document.sectionNames()) {
        const int number = itemNumber(name);
        if (number > 0 && number <= count)
            numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.push_back(qint64(count) + 1);
    qint64 previous = 0;
    qint64 missingLeft = QueueBatch::kMaxMissingItems;
    for (const qint64 number : numbers) {
        const qint64 missing = std::max<qint64>(number - previous - 1, 0);
        if (missing > missingLeft)
            return int(previous + missingLeft);
        missingLeft -= missing;
        previous = number;
    }
    return count;
}

// The four values of the second site are written, and shown, for this word only; the sender
// reads them for any word it takes for a site-to-site transfer.
bool isCopy(const QueueItem& item)
{
    return item.ftpMethod == QLatin1StringView(queuefile::kMethodCopy);
}

} // namespace

QueueBatch::QueueBatch(IniDocument& document) : document_(document)
{
    const int written = PrivateProfile::toInt(
        document_.value(latin1(queuefile::kCountSection), latin1(queuefile::kCountKey)), 0);
    count_ = readableCount(document_, std::max(0, written));
    items_.reserve(std::size_t(count_));
    queued_.reserve(std::size_t(count_));
    for (int position = 1; position <= count_; ++position) {
        items_.emplace_back().section = position;
        queued_.push_back(position - 1);
    }
}

QueueBatch::~QueueBatch() = default;

IniDocument& QueueBatch::documentOf(const Item& item)
{
    return item.section > 0 ? document_ : added_;
}

const IniDocument& QueueBatch::documentOf(const Item& item) const
{
    return item.section > 0 ? document_ : added_;
}

QString QueueBatch::sectionOf(const Item& item) const
{
    return item.section > 0 ? sectionName(item.section) : QString::number(item.added);
}

std::vector<std::optional<QString>> QueueBatch::valuesOf(
    const Item& item, const QStringList& keys) const
{
    return documentOf(item).values(sectionOf(item), keys);
}

QStringList QueueBatch::linesOf(const Item& item) const
{
    return documentOf(item).sectionLines(sectionOf(item));
}

int QueueBatch::attemptsOf(const Item& item) const
{
    return PrivateProfile::toInt(valuesOf(item, { keyNames()[NumTimes] }).front(), 1);
}

QStringList QueueBatch::identityOf(const Item& item) const
{
    QStringList identity;
    for (const auto& value : valuesOf(item, identityNames()))
        identity.append(
            PrivateProfile::cutToBuffer(value.value_or(QString()), PrivateProfile::kValueBuffer));
    return identity;
}

QueueItem QueueBatch::read(const Item& item, int position, QueueReader reader) const
{
    const auto values = valuesOf(item, keyNames());
    const bool sender = reader == QueueReader::Sender;
    const auto text = [&](Key key, int bufferSize = PrivateProfile::kValueBuffer) {
        return PrivateProfile::cutToBuffer(values[key].value_or(QString()), bufferSize);
    };
    const auto credential = [&](Key key) {
        return text(key, sender ? queuefile::kCredentialBuffer : PrivateProfile::kValueBuffer);
    };
    QueueItem result;
    result.position = position;
    result.numTimes = PrivateProfile::toInt(values[NumTimes], 1);
    result.status = PrivateProfile::toInt(values[Status], QueueItem::kIdle);
    result.localName = text(LocalName);
    result.remoteName = text(RemoteName);
    result.source = text(Source);
    result.destination = text(Destination);
    result.reason = text(Reason);
    result.remDirFile = text(RemDirFile);
    result.locDirFile = text(LocDirFile);
    result.remDir = text(RemDir);
    result.password = credential(Password);
    result.login = credential(Login);
    result.ftpMethod
        = PrivateProfile::cutToBuffer(values[FtpMethod].value_or(latin1(queuefile::kMethodPut)),
            sender ? queuefile::kMethodBuffer : PrivateProfile::kValueBuffer);
    result.fileSize = text(FileSize);
    result.port = text(Port);
    result.sendingBy
        = valuesOf(item, { latin1(queuefile::key::kSendingBy) }).front().value_or(QString());
    if (sender ? result.direction() == TransferMode::Copy : isCopy(result)) {
        result.remPassword = credential(RemPassword);
        result.remLogin = credential(RemLogin);
        result.remRemDir = text(RemRemDir);
        result.remotePort = text(RemotePort);
    }
    return result;
}

bool QueueBatch::fitsBuffer(const Item& item) const
{
    // The lines as read are no longer than their bytes, line breaks counting for the
    // terminators: most sections fit without being looked at.
    if (documentOf(item).sectionSize(sectionOf(item)) + 2 <= PrivateProfile::kSectionBuffer)
        return true;
    const QStringList lines = linesOf(item);
    return PrivateProfile::cutSection(lines, PrivateProfile::kSectionBuffer) == lines;
}

QStringList QueueBatch::linesPastCount(int position) const
{
    const auto changed = pastCount_.find(position);
    if (changed == pastCount_.end())
        return document_.sectionLines(sectionName(position));
    return changed->second.value_or(QStringList());
}

std::vector<QueueItem> QueueBatch::items(QueueReader reader)
{
    std::vector<QueueItem> result;
    result.reserve(std::size_t(count_));
    int position = 0;
    for (const int id : queuedIds())
        result.push_back(read(items_[std::size_t(id)], ++position, reader));
    return result;
}

const std::vector<int>& QueueBatch::queuedIds()
{
    if (!queuedValid_) {
        queued_.clear();
        for (std::size_t id = 0; id < items_.size(); ++id) {
            if (items_[id].queued)
                queued_.push_back(int(id));
        }
        queuedValid_ = true;
    }
    return queued_;
}

void QueueBatch::indexIdentity(int id)
{
    Item& item = items_[std::size_t(id)];
    item.identity = qHash(identityOf(item));
    identities_.emplace(item.identity, id);
}

void QueueBatch::forgetIdentity(int id)
{
    if (!indexed_)
        return;
    auto [entry, end] = identities_.equal_range(items_[std::size_t(id)].identity);
    for (; entry != end; ++entry) {
        if (entry->second == id) {
            identities_.erase(entry);
            return;
        }
    }
}

std::optional<int> QueueBatch::findId(const QueueItem& item)
{
    if (!indexed_) {
        identities_.reserve(queuedIds().size());
        for (const int id : queuedIds())
            indexIdentity(id);
        indexed_ = true;
    }
    const QStringList wanted { item.localName, item.remoteName, item.source, item.destination };
    std::optional<int> first;
    const auto [begin, end] = identities_.equal_range(qHash(wanted));
    for (auto entry = begin; entry != end; ++entry) {
        const int id = entry->second;
        if ((!first || id < *first) && identityOf(items_[std::size_t(id)]) == wanted)
            first = id;
    }
    return first;
}

std::optional<int> QueueBatch::find(const QueueItem& item)
{
    const auto id = findId(item);
    if (!id)
        return std::nullopt;
    const auto& queued = queuedIds();
    return int(std::lower_bound(queued.begin(), queued.end(), *id) - queued.begin()) + 1;
}

int QueueBatch::addItem(const QStringList& lines)
{
    const int id = int(items_.size());
    Item& item = items_.emplace_back();
    item.added = ++addedSections_;
    added_.replaceSection(sectionOf(item), lines);
    ++count_;
    countChanged_ = true;
    pastCount_.erase(count_);
    if (queuedValid_)
        queued_.push_back(id);
    noteLength(id);
    return id;
}

void QueueBatch::setKey(int id, int key, const QString& value)
{
    const Item& item = items_[std::size_t(id)];
    documentOf(item).setValue(sectionOf(item), keyNames()[key], value);
    changed_ = true;
    noteLength(id);
}

void QueueBatch::noteLength(int id)
{
    if (!tooLongKnown_ || !items_[std::size_t(id)].queued)
        return;
    if (fitsBuffer(items_[std::size_t(id)]))
        tooLong_.erase(id);
    else
        tooLong_.insert(id);
}

void QueueBatch::findTooLong()
{
    if (tooLongKnown_)
        return;
    for (const int id : queuedIds()) {
        if (!fitsBuffer(items_[std::size_t(id)]))
            tooLong_.insert(id);
    }
    tooLongKnown_ = true;
}

void QueueBatch::passBuffer(int id)
{
    if (tooLong_.erase(id) == 0)
        return;
    // Cut now, so that later reads and searches see what the file will.
    const Item& item = items_[std::size_t(id)];
    const QStringList cut
        = PrivateProfile::cutSection(linesOf(item), PrivateProfile::kSectionBuffer);
    forgetIdentity(id);
    documentOf(item).replaceSection(sectionOf(item), cut);
    changed_ = true;
    if (indexed_)
        indexIdentity(id);
}

void QueueBatch::dropItem(int id, bool leavesGap)
{
    Item& item = items_[std::size_t(id)];
    forgetIdentity(id);
    item.queued = false;
    item.leavesGap = leavesGap;
    queuedValid_ = false;
    tooLong_.erase(id);
}

void QueueBatch::leaveLinesAt(int id, int position)
{
    // A section that did not move holds the item's lines already.
    const Item& item = items_[std::size_t(id)];
    if (item.section != position)
        pastCount_[position] = linesOf(item);
}

void QueueBatch::appendFailed(const QueueItem& item)
{
    if (const auto id = findId(item)) {
        setKey(*id, NumTimes, QString::number(qint64(attemptsOf(items_[std::size_t(*id)])) + 1));
        makeIdle(*id);
        return;
    }
    // The new section starts from whatever an item that left put there.
    const int id = addItem(linesPastCount(count_ + 1));
    const auto texts = textsOf(item);
    setKey(id, NumTimes, QStringLiteral("1"));
    for (const Key key : { LocalName, RemoteName, RemDirFile, LocDirFile, Reason, Password, Login,
             RemDir, Source, Destination, FtpMethod })
        setKey(id, key, texts[key]);
    if (isCopy(item)) {
        for (const Key key : { RemPassword, RemLogin, RemRemDir, RemotePort })
            setKey(id, key, texts[key]);
    }
    setKey(id, FileSize, texts[FileSize]);
    setKey(id, Port, texts[Port]);
    setKey(id, Status, QString::number(QueueItem::kIdle));
    indexIdentity(id);
}

bool QueueBatch::removeSent(const QueueItem& item)
{
    const auto id = findId(item);
    if (!id)
        return false;
    findTooLong();
    dropItem(*id, true);
    // Every later item moves down one section; only the too long ones change as they do.
    for (auto later = tooLong_.upper_bound(*id); later != tooLong_.end();
         later = tooLong_.upper_bound(*id))
        passBuffer(*later);
    pastCount_[count_] = QStringList();
    --count_;
    countChanged_ = true;
    return true;
}

void QueueBatch::markSending(int position)
{
    if (position < 1 || position > count_)
        return;
    const int id = queuedIds()[std::size_t(position - 1)];
    setKey(id, Status, QString::number(QueueItem::kSending));
    const Item& item = items_[std::size_t(id)];
    documentOf(item).setValue(
        sectionOf(item), latin1(queuefile::key::kSendingBy), ProcessMark::current());
    noteLength(id);
}

int QueueBatch::releaseAbandoned()
{
    const QStringList keys = { keyNames()[Status], latin1(queuefile::key::kSendingBy) };
    QHash<QString, bool> running; // one look per marking process
    int released = 0;
    for (const int id : queuedIds()) {
        const auto values = valuesOf(items_[std::size_t(id)], keys);
        if (PrivateProfile::toInt(values[0], QueueItem::kIdle) != QueueItem::kSending || !values[1])
            continue;
        const QString& mark = *values[1];
        auto known = running.constFind(mark);
        if (known == running.constEnd())
            known = running.insert(mark, ProcessMark::running(mark));
        if (*known)
            continue;
        makeIdle(id);
        ++released;
    }
    return released;
}

void QueueBatch::makeIdle(int id)
{
    setKey(id, Status, QString::number(QueueItem::kIdle));
    const Item& item = items_[std::size_t(id)];
    if (documentOf(item).removeKey(sectionOf(item), latin1(queuefile::key::kSendingBy)))
        noteLength(id);
}

void QueueBatch::resetAllIdle()
{
    for (const int id : queuedIds())
        makeIdle(id);
}

void QueueBatch::purgeByAttempts(int limit)
{
    findTooLong();
    const int before = count_;
    int kept = 0;
    // A copy: an item that leaves changes the list.
    const std::vector<int> queued = queuedIds();
    for (const int id : queued) {
        if (attemptsOf(items_[std::size_t(id)]) <= limit) {
            ++kept;
            passBuffer(id); // copied through the buffer, onto itself when nothing before it went
        } else {
            dropItem(id, true);
        }
    }
    for (int position = kept + 1; position <= before; ++position)
        pastCount_[position] = QStringList();
    count_ = kept;
    countChanged_ = true;
}

void QueueBatch::clear()
{
    const std::vector<int> queued = queuedIds();
    int position = 0;
    for (const int id : queued) {
        leaveLinesAt(id, ++position);
        dropItem(id, false);
    }
    count_ = 0;
    countChanged_ = true;
}

void QueueBatch::rewrite(const std::vector<QueueItem>& rows, int deleted)
{
    // Each row is written key by key over what its section holds now.
    const std::vector<int> queued = queuedIds();
    std::vector<QStringList> bases;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        bases.push_back(r < queued.size() ? linesOf(items_[std::size_t(queued[r])])
                                          : linesPastCount(int(r) + 1));
    }
    int position = 0;
    for (const int id : queued) {
        if (++position > int(rows.size()))
            leaveLinesAt(id, position);
        dropItem(id, false);
    }
    count_ = 0;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const QueueItem& row = rows[r];
        const int id = addItem(bases[r]);
        const auto texts = textsOf(row);
        for (int key = LocalName; key < kKeyCount; ++key) {
            if (key < RemPassword || isCopy(row))
                setKey(id, key, texts[std::size_t(key)]);
            else
                added_.removeKey(sectionOf(items_[std::size_t(id)]), keyNames()[key]);
        }
        // The marking process goes with its row, never with the section the row lands in.
        const QString section = sectionOf(items_[std::size_t(id)]);
        const QString sendingBy = latin1(queuefile::key::kSendingBy);
        if (row.sendingBy.isEmpty())
            added_.removeKey(section, sendingBy);
        else
            added_.setValue(section, sendingBy, row.sendingBy);
        noteLength(id);
        if (indexed_)
            indexIdentity(id);
    }
    countChanged_ = true;
    for (int gone = int(rows.size()) + 1; gone <= deleted; ++gone)
        pastCount_[gone] = std::nullopt;
}

bool QueueBatch::flush()
{
    // The count first, so that a new file starts with it.
    if (countChanged_) {
        document_.setValue(latin1(queuefile::kCountSection), latin1(queuefile::kCountKey),
            QString::number(count_));
        changed_ = true;
    }
    // The sections of the items removed make way; the items after them take their names in
    // ascending order, so that each name is free when it is taken.
    QStringList gaps;
    for (const Item& item : items_) {
        if (item.leavesGap && item.section > 0)
            gaps.append(sectionName(item.section));
    }
    if (!gaps.isEmpty()) {
        document_.removeSections(gaps);
        changed_ = true;
    }
    int position = 0;
    for (const int id : queuedIds()) {
        const Item& item = items_[std::size_t(id)];
        if (item.section == ++position)
            continue;
        changed_ = true;
        const QString name = sectionName(position);
        if (item.section == 0 || !document_.renameSection(sectionName(item.section), name))
            document_.replaceSection(name, linesOf(item));
    }
    QStringList gone;
    for (const auto& [pastPosition, lines] : pastCount_) {
        if (pastPosition <= count_)
            continue;
        if (lines)
            document_.replaceSection(sectionName(pastPosition), *lines);
        else
            gone.append(sectionName(pastPosition));
        changed_ = true;
    }
    if (!gone.isEmpty())
        document_.removeSections(gone);
    return changed_;
}

} // namespace zelto
