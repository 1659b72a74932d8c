#include "FileList.h"

#include "platform/IniDocument.h"
#include "platform/Notifier.h"
#include "platform/PrivateProfile.h"
#include "platform/StringTable.h"
#include "profiles/MessageText.h"
#include "profiles/ServerFile.h"
#include "profiles/StoredFormats.h"
#include "profiles/StoredIni.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace zelto {
namespace {

using namespace listfile;

// The confirmation of a new remote name is captioned with this word; it has no text id.
constexpr char kRenameCaption[] = "QUESTION";

FileListEntry entryFor(const QFileInfo& info, const QString& folder)
{
    FileListEntry entry;
    entry.folder = folder;
    entry.localName = info.fileName();
    entry.size = info.size();
    entry.lastWrite = info.lastModified().toMSecsSinceEpoch();
    return entry;
}

// What a path of an .fls line names on disk, as the platform's find-first call finds it: the
// path itself, or the first match when its last part holds wildcards.
std::optional<QFileInfo> lookUp(const QString& path)
{
    const QFileInfo info(path);
    if (info.exists())
        return info.fileName().isEmpty() ? std::nullopt : std::optional(info);
    const QString pattern = info.fileName();
    if (!pattern.contains(u'*') && !pattern.contains(u'?'))
        return std::nullopt;
    const QFileInfoList matches
        = QDir(info.path())
              .entryInfoList(
                  { pattern }, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
    if (matches.isEmpty())
        return std::nullopt;
    return matches.first();
}

// The path less its last part, with the separator before that part.
QString folderOf(const QString& path)
{
    const qsizetype separator
        = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(QDir::separator()));
    return path.left(separator + 1);
}

} // namespace

QString FileList::keyOf(const QString& folder, const QString& localName)
{
    // A NUL never stands in a path, so no two pairs give the same key.
    return folder.toCaseFolded() + QChar(0) + localName.toCaseFolded();
}

bool FileList::contains(const QString& folder, const QString& localName) const
{
    return keys_.contains(keyOf(folder, localName));
}

bool FileList::add(const FileListEntry& entry)
{
    const QString key = keyOf(entry.folder, entry.localName);
    if (keys_.contains(key))
        return false;
    keys_.insert(key);
    entries_.push_back(entry);
    changed_ = true;
    return true;
}

int FileList::addMatching(const QString& folder, const QString& pattern)
{
    int added = 0;
    for (const QFileInfo& info :
        QDir(folder).entryInfoList({ pattern }, QDir::Files | QDir::Hidden, QDir::Name)) {
        if (add(entryFor(info, folder)))
            ++added;
    }
    return added;
}

void FileList::clear()
{
    entries_.clear();
    keys_.clear();
}

std::vector<FileListEntry> FileList::readStored(const QString& listFile)
{
    std::vector<FileListEntry> stored;
    if (!QFileInfo::exists(listFile))
        return stored;
    const StoredIni ini(listFile);
    const int count = ini.integer(QLatin1String(kListSection), QLatin1String(kNumItems), 0);
    const QString prefix = QLatin1String(kEntrySectionPrefix);
    for (const int number : ini.numberedSections(prefix, count)) {
        const QString section = prefix + QString::number(number);
        const auto text = [&](const char* key) {
            return ini.text(section, QLatin1String(key), QString(), kValueBuffer);
        };
        FileListEntry entry;
        entry.localName = text(kLocalName);
        entry.remoteName = text(kRemoteName);
        entry.folder = text(kFolder);
        entry.size = ini.number(section, QLatin1String(kSize), QLatin1String(kSizeFallback));
        stored.push_back(std::move(entry));
    }
    return stored;
}

void FileList::load(const QString& listFile)
{
    for (const FileListEntry& entry : readStored(listFile)) {
        if (contains(entry.folder, entry.localName))
            continue;
        if (entry.localName.contains(u'*'))
            addMatching(entry.folder, entry.localName);
        else
            add(entry);
    }
    changed_ = false;
}

bool FileList::save(const QString& listFile)
{
    if (entries_.empty())
        return true;
    const bool written = PrivateProfile::update(listFile, [&](IniDocument& document) {
        document.setValue(QLatin1String(kListSection), QLatin1String(kNumItems),
            QString::number(entries_.size()));
        const QString prefix = QLatin1String(kEntrySectionPrefix);
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            const QString section = prefix + QString::number(i + 1);
            const FileListEntry& entry = entries_[i];
            document.setValue(section, QLatin1String(kLocalName), entry.localName);
            document.setValue(section, QLatin1String(kFolder), entry.folder);
            document.setValue(section, QLatin1String(kRemoteName), entry.remoteName);
            document.setValue(section, QLatin1String(kSize), QString::number(entry.size));
        }
        return true;
    });
    if (written)
        changed_ = false;
    return written;
}

FileList::ServerFileLoad FileList::loadServerFile(
    const QString& flsFile, const QString& listFile, Notifier& notifier)
{
    const std::optional<QByteArray> body = ServerFile::body(flsFile);
    if (!body) {
        notifier.showMessage(StringTable::text(ids::kNotAnFtpServerFile), MessageIcon::Stop);
        return ServerFileLoad::Refused;
    }
    bool replace = true;
    if (!entries_.empty()) {
        const Question question { StringTable::text(ids::kAppendOrReplaceCaption),
            StringTable::text(ids::kAppendOrReplaceQuestion), ids::kButtonAppend,
            ids::kButtonReplace, true, ids::kButtonCancel };
        const Answer answer = notifier.ask(question);
        if (answer == Answer::Cancelled)
            return ServerFileLoad::Cancelled;
        replace = answer == Answer::Middle;
    }
    if (replace)
        clear();
    for (qsizetype pos = 0;;) {
        const qsizetype lineFeed = body->indexOf('\n', pos);
        if (lineFeed < 0)
            break;
        const QString path = QFile::decodeName(body->mid(pos, lineFeed - pos));
        pos = lineFeed + 1;
        if (const auto found = lookUp(path))
            add(entryFor(*found, folderOf(path)));
    }
    if (!replace)
        return ServerFileLoad::Appended;
    if (!listFile.isEmpty())
        static_cast<void>(save(listFile)); // an unsaved list keeps its changed flag
    return ServerFileLoad::Replaced;
}

int FileList::remove(const std::vector<int>& rows, Notifier& notifier)
{
    if (rows.empty()) {
        notifier.showMessage(StringTable::text(ids::kSelectFile), MessageIcon::Stop);
        return 0;
    }
    std::vector<int> removed;
    bool all = false;
    for (const int row : rows) {
        if (row < 0 || std::size_t(row) >= entries_.size())
            continue;
        if (!all) {
            const Question question { StringTable::text(ids::kDeleteCaption),
                messageText(ids::kConfirmRemoveFile, { entries_[row].localName }), ids::kButtonYes,
                ids::kButtonAll, rows.size() > 1, ids::kButtonCancel };
            const Answer answer = notifier.ask(question);
            if (answer == Answer::Cancelled)
                break;
            all = answer == Answer::Middle;
        }
        removed.push_back(row);
    }
    std::vector<bool> gone(entries_.size(), false);
    for (const int row : removed) {
        gone[std::size_t(row)] = true;
        keys_.remove(keyOf(entries_[row].folder, entries_[row].localName));
    }
    // One pass, however many rows go.
    std::vector<FileListEntry> kept;
    kept.reserve(entries_.size());
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (!gone[i])
            kept.push_back(std::move(entries_[i]));
    }
    const int count = int(entries_.size() - kept.size());
    entries_ = std::move(kept);
    if (count > 0)
        changed_ = true;
    return count;
}

std::optional<int> FileList::rowToRename(const std::vector<int>& rows, Notifier& notifier) const
{
    if (rows.size() >= 2) {
        notifier.showMessage(StringTable::text(ids::kOnlyOneFileAtATime), MessageIcon::Stop);
        return std::nullopt;
    }
    if (rows.empty()) {
        notifier.showMessage(StringTable::text(ids::kSelectFileToRename), MessageIcon::Stop);
        return std::nullopt;
    }
    if (rows.front() < 0 || std::size_t(rows.front()) >= entries_.size())
        return std::nullopt;
    return rows.front();
}

bool FileList::changeRemoteName(int row, const QString& answer, Notifier& notifier)
{
    changed_ = true;
    if (row < 0 || std::size_t(row) >= entries_.size())
        return false;
    FileListEntry& entry = entries_[row];
    if (answer == entry.localName)
        return false;
    if (!notifier.askOkCancel(QLatin1String(kRenameCaption),
            messageText(ids::kConfirmRename, { entry.localName, answer })))
        return false;
    entry.remoteName = answer.isEmpty() ? entry.localName : answer;
    return true;
}

} // namespace zelto
