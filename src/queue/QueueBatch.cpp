#include "QueueBatch.h"

#include "platform/PrivateProfile.h"

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

// The one section of a slot's own document.
const QString kSlotSection = QStringLiteral("item");

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

QString identityKey(
    const QString& localName, const QString& remoteName, const QString& source, const QString& dest)
{
    // No stored value holds a line break.
    return localName + u'\n' + remoteName + u'\n' + source + u'\n' + dest;
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
    const QString countSection = latin1(queuefile::kCountSection);
    count_ = std::max(
        0, PrivateProfile::toInt(document_.value(countSection, latin1(queuefile::kCountKey)), 0));
    if (count_ > 0 && !document_.hasSection(sectionName(count_))) {
        int last = 0;
        for (const QString& name : document_.sectionNames())
            last = std::max(last, itemNumber(name));
        count_ = int(std::min<qint64>(count_, qint64(last) + kMaxMissingItems));
    }
    for (int position = 1; position <= count_; ++position)
        slots_.emplace_back().origin = position;
    order_.reserve(std::size_t(count_));
    for (std::size_t i = 0; i < slots_.size(); ++i)
        order_.push_back(i);
}

QueueBatch::~QueueBatch() = default;

std::vector<std::optional<QString>> QueueBatch::valuesOf(
    const Slot& slot, const QStringList& keys) const
{
    if (slot.content)
        return slot.content->values(kSlotSection, keys);
    return document_.values(sectionName(slot.origin), keys);
}

int QueueBatch::attemptsOf(const Slot& slot) const
{
    return PrivateProfile::toInt(valuesOf(slot, { keyNames()[NumTimes] }).front(), 1);
}

QStringList QueueBatch::linesOf(const Slot& slot) const
{
    if (slot.content)
        return slot.content->sectionLines(kSlotSection);
    return document_.sectionLines(sectionName(slot.origin));
}

QString QueueBatch::identityOf(const Slot& slot) const
{
    const auto values = valuesOf(slot, identityNames());
    const auto text = [&](Key key) {
        return PrivateProfile::cutToBuffer(
            values[key].value_or(QString()), PrivateProfile::kValueBuffer);
    };
    return identityKey(text(LocalName), text(RemoteName), text(Source), text(Destination));
}

QueueItem QueueBatch::read(const Slot& slot, int position, QueueReader reader) const
{
    const auto values = valuesOf(slot, keyNames());
    const bool sender = reader == QueueReader::Sender;
    const auto text = [&](Key key, int bufferSize = PrivateProfile::kValueBuffer) {
        return PrivateProfile::cutToBuffer(values[key].value_or(QString()), bufferSize);
    };
    const auto credential = [&](Key key) {
        return text(key, sender ? queuefile::kCredentialBuffer : PrivateProfile::kValueBuffer);
    };
    QueueItem item;
    item.position = position;
    item.numTimes = PrivateProfile::toInt(values[NumTimes], 1);
    item.status = PrivateProfile::toInt(values[Status], QueueItem::kIdle);
    item.localName = text(LocalName);
    item.remoteName = text(RemoteName);
    item.source = text(Source);
    item.destination = text(Destination);
    item.reason = text(Reason);
    item.remDirFile = text(RemDirFile);
    item.locDirFile = text(LocDirFile);
    item.remDir = text(RemDir);
    item.password = credential(Password);
    item.login = credential(Login);
    item.ftpMethod
        = PrivateProfile::cutToBuffer(values[FtpMethod].value_or(latin1(queuefile::kMethodPut)),
            sender ? queuefile::kMethodBuffer : PrivateProfile::kValueBuffer);
    item.fileSize = text(FileSize);
    item.port = text(Port);
    if (sender ? item.direction() == TransferMode::Copy : isCopy(item)) {
        item.remPassword = credential(RemPassword);
        item.remLogin = credential(RemLogin);
        item.remRemDir = text(RemRemDir);
        item.remotePort = text(RemotePort);
    }
    return item;
}

QStringList QueueBatch::tailLines(int position) const
{
    const auto changed = tail_.find(position);
    if (changed == tail_.end())
        return document_.sectionLines(sectionName(position));
    return changed->second.value_or(QStringList());
}

bool QueueBatch::untouched(const Slot& slot, int position)
{
    // A section that passes the buffer whole reads the same after it went through it.
    return !slot.content && slot.origin == position;
}

std::vector<QueueItem> QueueBatch::items(QueueReader reader)
{
    std::vector<QueueItem> result;
    result.reserve(std::size_t(count_));
    int position = 0;
    for (const std::size_t index : order())
        result.push_back(read(slots_[index], ++position, reader));
    return result;
}

const std::vector<std::size_t>& QueueBatch::order()
{
    if (!orderValid_) {
        order_.clear();
        for (std::size_t i = 0; i < slots_.size(); ++i) {
            if (slots_[i].alive)
                order_.push_back(i);
        }
        orderValid_ = true;
    }
    return order_;
}

std::optional<std::size_t> QueueBatch::findSlot(const QueueItem& item)
{
    if (!indexed_) {
        index_.reserve(count_);
        for (const std::size_t index : order()) {
            Slot& slot = slots_[index];
            slot.identity = identityOf(slot);
            index_[slot.identity].insert(index);
        }
        indexed_ = true;
    }
    const auto found = index_.constFind(
        identityKey(item.localName, item.remoteName, item.source, item.destination));
    if (found == index_.constEnd() || found->empty())
        return std::nullopt;
    return *found->begin();
}

std::optional<int> QueueBatch::find(const QueueItem& item)
{
    const auto index = findSlot(item);
    if (!index)
        return std::nullopt;
    const auto& alive = order();
    return int(std::lower_bound(alive.begin(), alive.end(), *index) - alive.begin()) + 1;
}

QueueBatch::Slot& QueueBatch::addSlot(const QStringList& lines)
{
    const std::size_t index = slots_.size();
    Slot& slot = slots_.emplace_back();
    slot.content.emplace();
    slot.content->replaceSection(kSlotSection, lines);
    ++count_;
    countChanged_ = true;
    tail_.erase(count_);
    if (orderValid_)
        order_.push_back(index);
    return slot;
}

void QueueBatch::setKey(Slot& slot, int key, const QString& value)
{
    if (!slot.content) {
        const QStringList lines = linesOf(slot);
        slot.content.emplace();
        slot.content->replaceSection(kSlotSection, lines);
    }
    slot.content->setValue(kSlotSection, keyNames()[key], value);
    slot.fits.reset();
}

void QueueBatch::move(std::size_t index)
{
    Slot& slot = slots_[index];
    if (!slot.fits && !slot.content) {
        // The lines as read are no longer than their bytes, line breaks counting for the
        // terminators: most sections fit without being looked at.
        const qsizetype bytes = document_.sectionSize(sectionName(slot.origin));
        if (bytes + 2 <= PrivateProfile::kSectionBuffer)
            slot.fits = true;
    }
    if (!slot.fits) {
        const QStringList lines = linesOf(slot);
        slot.fits = PrivateProfile::cutSection(lines, PrivateProfile::kSectionBuffer) == lines;
    }
    if (*slot.fits)
        return;
    // Too long for the buffer: cut now, so that later reads and searches see what the file will.
    const QStringList cut
        = PrivateProfile::cutSection(linesOf(slot), PrivateProfile::kSectionBuffer);
    slot.content.emplace();
    slot.content->replaceSection(kSlotSection, cut);
    slot.fits = true;
    if (indexed_) {
        index_[slot.identity].erase(index);
        addToIndex(index);
    }
}

void QueueBatch::addToIndex(std::size_t index)
{
    if (!indexed_)
        return;
    Slot& slot = slots_[index];
    slot.identity = identityOf(slot);
    index_[slot.identity].insert(index);
}

void QueueBatch::kill(std::size_t index, bool displaced)
{
    Slot& slot = slots_[index];
    slot.alive = false;
    slot.displaced = displaced;
    orderValid_ = false;
    if (indexed_)
        index_[slot.identity].erase(index);
}

void QueueBatch::leaveBehind(const Slot& slot, int position)
{
    if (!untouched(slot, position))
        tail_[position] = linesOf(slot);
}

void QueueBatch::appendFailed(const QueueItem& item)
{
    if (const auto found = findSlot(item)) {
        Slot& slot = slots_[*found];
        setKey(slot, NumTimes, QString::number(qint64(attemptsOf(slot)) + 1));
        setKey(slot, Status, QString::number(QueueItem::kIdle));
        return;
    }
    // The new section starts from whatever a dead item left there.
    Slot& slot = addSlot(tailLines(count_ + 1));
    const auto texts = textsOf(item);
    setKey(slot, NumTimes, QStringLiteral("1"));
    for (const Key key : { LocalName, RemoteName, RemDirFile, LocDirFile, Reason, Password, Login,
             RemDir, Source, Destination, FtpMethod })
        setKey(slot, key, texts[key]);
    if (isCopy(item)) {
        for (const Key key : { RemPassword, RemLogin, RemRemDir, RemotePort })
            setKey(slot, key, texts[key]);
    }
    setKey(slot, FileSize, texts[FileSize]);
    setKey(slot, Port, texts[Port]);
    setKey(slot, Status, QString::number(QueueItem::kIdle));
    addToIndex(slots_.size() - 1);
}

bool QueueBatch::removeSent(const QueueItem& item)
{
    const auto found = findSlot(item);
    if (!found)
        return false;
    kill(*found, true);
    for (std::size_t i = *found + 1; i < slots_.size(); ++i) {
        if (slots_[i].alive)
            move(i);
    }
    tail_[count_] = QStringList();
    --count_;
    countChanged_ = true;
    return true;
}

void QueueBatch::markSending(int position)
{
    if (position < 1 || position > count_)
        return;
    setKey(
        slots_[order()[std::size_t(position - 1)]], Status, QString::number(QueueItem::kSending));
}

void QueueBatch::resetAllIdle()
{
    for (const std::size_t index : order())
        setKey(slots_[index], Status, QString::number(QueueItem::kIdle));
}

void QueueBatch::purgeByAttempts(int limit)
{
    const int before = count_;
    int kept = 0;
    // A copy: killing a slot invalidates the order.
    const std::vector<std::size_t> alive = order();
    for (const std::size_t index : alive) {
        Slot& slot = slots_[index];
        if (attemptsOf(slot) <= limit) {
            ++kept;
            move(index); // copied through the buffer, onto itself when nothing before it went
        } else {
            kill(index, true);
        }
    }
    for (int position = kept + 1; position <= before; ++position)
        tail_[position] = QStringList();
    count_ = kept;
    countChanged_ = true;
}

void QueueBatch::clear()
{
    const std::vector<std::size_t> alive = order();
    int position = 0;
    for (const std::size_t index : alive) {
        leaveBehind(slots_[index], ++position);
        kill(index, false);
    }
    count_ = 0;
    countChanged_ = true;
}

void QueueBatch::rewrite(const std::vector<QueueItem>& rows, int deleted)
{
    // Each row is written key by key over what its section holds now.
    std::vector<QStringList> bases;
    const std::vector<std::size_t> alive = order();
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const int position = int(r) + 1;
        bases.push_back(r < alive.size() ? linesOf(slots_[alive[r]]) : tailLines(position));
    }
    int position = 0;
    for (const std::size_t index : alive) {
        if (++position > int(rows.size()))
            leaveBehind(slots_[index], position);
        kill(index, false);
    }
    count_ = 0;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const QueueItem& row = rows[r];
        Slot& slot = addSlot(bases[r]);
        const auto texts = textsOf(row);
        for (int key = LocalName; key < kKeyCount; ++key) {
            if (key < RemPassword || isCopy(row))
                setKey(slot, key, texts[std::size_t(key)]);
            else
                slot.content->removeKey(kSlotSection, keyNames()[key]);
        }
        addToIndex(slots_.size() - 1);
    }
    countChanged_ = true;
    for (int gone = int(rows.size()) + 1; gone <= deleted; ++gone)
        tail_[gone] = std::nullopt;
}

bool QueueBatch::flush()
{
    bool changed = false;
    // The count first, so that a new file starts with it.
    if (countChanged_) {
        document_.setValue(latin1(queuefile::kCountSection), latin1(queuefile::kCountKey),
            QString::number(count_));
        changed = true;
    }
    // The sections of the items that left make way; the items after them take their names in
    // ascending order, so that each name is free when it is taken.
    QStringList displaced;
    for (const Slot& slot : slots_) {
        if (slot.displaced && slot.origin > 0)
            displaced.append(sectionName(slot.origin));
    }
    if (!displaced.isEmpty()) {
        document_.removeSections(displaced);
        changed = true;
    }
    int position = 0;
    for (const std::size_t index : order()) {
        const Slot& slot = slots_[index];
        ++position;
        if (untouched(slot, position))
            continue;
        changed = true;
        const QString name = sectionName(position);
        const bool renamed
            = slot.origin > 0 && document_.renameSection(sectionName(slot.origin), name);
        if (slot.content || !renamed)
            document_.replaceSection(name, linesOf(slot));
    }
    QStringList gone;
    for (const auto& [tailPosition, lines] : tail_) {
        if (tailPosition <= count_)
            continue;
        if (lines)
            document_.replaceSection(sectionName(tailPosition), *lines);
        else
            gone.append(sectionName(tailPosition));
        changed = true;
    }
    if (!gone.isEmpty())
        document_.removeSections(gone);
    return changed;
}

} // namespace zelto
