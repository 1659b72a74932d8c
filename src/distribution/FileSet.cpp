#include "FileSet.h"

#include "platform/Notifier.h"
#include "platform/Paths.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "profiles/NameCasing.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace zelto {
namespace {

// The files under `folder`, at every depth, in path order so that a send is the same each time.
std::vector<QFileInfo> filesUnder(const QString& folder)
{
    std::vector<QFileInfo> found;
    QDirIterator it(
        folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext())
        found.emplace_back(QDir::cleanPath(it.next()));
    std::sort(found.begin(), found.end(),
        [](const QFileInfo& a, const QFileInfo& b) { return a.filePath() < b.filePath(); });
    return found;
}

} // namespace

std::optional<FileSet> FileSet::prepare(std::size_t siteCount,
    const std::vector<FileListEntry>& entries, Notifier& notifier, const StatusText& status)
{
    if (siteCount == 0) {
        notifier.showMessage(StringTable::text(ids::kNoTargetSites), MessageIcon::Stop);
        return std::nullopt;
    }
    if (entries.empty()) {
        notifier.showMessage(StringTable::text(ids::kNoFilesToSend), MessageIcon::Stop);
        return std::nullopt;
    }
    if (status)
        status(StringTable::text(ids::kSortingFiles));
    FileSet set = build(entries);
    if (status)
        status({});
    return set;
}

FileSet FileSet::build(const std::vector<FileListEntry>& entries)
{
    const QString casing = SettingsStore::get(settings::config::kFileCasingPut);
    FileSet set;
    set.files_.reserve(entries.size());
    // Local paths already in the set: a hash, so that a list of many thousand files stays quick.
    QSet<QString> taken;
    taken.reserve(qsizetype(entries.size()));
    const auto add = [&](const QString& folder, const QString& localName, const QString& remoteName,
                         qint64 size) {
        const QString key = QDir::cleanPath(joinPath(folder, localName));
        const auto before = taken.size();
        taken.insert(key);
        if (taken.size() == before)
            return;
        FileEntry file;
        file.localFolder = folder;
        file.localName = localName;
        file.remoteName = casedName(remoteName, casing);
        file.size = size;
        set.totalBytes_ += size;
        set.files_.push_back(std::move(file));
    };

    for (const FileListEntry& entry : entries) {
        const QFileInfo info(entry.localPath());
        if (info.isDir()) {
            for (const QFileInfo& file : filesUnder(info.filePath()))
                add(file.path(), file.fileName(), file.fileName(), file.size());
            continue;
        }
        add(entry.folder, entry.localName,
            entry.remoteName.isEmpty() ? entry.localName : entry.remoteName,
            info.isFile() ? info.size() : entry.size);
    }
    return set;
}

} // namespace zelto
