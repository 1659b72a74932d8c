#include "ProfileStore.h"

#include "platform/IniDocument.h"
#include "platform/Notifier.h"
#include "platform/Paths.h"
#include "platform/PrivateProfile.h"
#include "platform/StringTable.h"
#include "profiles/FolderTree.h"
#include "profiles/LinkUpkeep.h"
#include "profiles/MessageText.h"
#include "profiles/ProfileEvents.h"
#include "profiles/ServerFile.h"
#include "profiles/SiteProfile.h"
#include "profiles/StoredFormats.h"
#include "settings/DataFolders.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace zelto {
namespace {

using namespace profilefile;

QStringList profileFiles(const QString& folder, QDirIterator::IteratorFlags flags)
{
    QDirIterator it(folder, { QStringLiteral("*") + QLatin1String(kExtension) },
        QDir::Files | QDir::Hidden, flags);
    QStringList files;
    while (it.hasNext())
        files.append(it.next());
    std::sort(files.begin(), files.end());
    return files;
}

// A host made into a profile name that a later save in the edit form finds again: that save cuts
// the name at its first dot.
QString importedName(const QString& host)
{
    QString name = host;
    for (QChar& c : name) {
        if (c < u' ' || QStringView(u".\\/:*?\"<>|").contains(c))
            c = u'_';
    }
    return name.isEmpty() ? QStringLiteral("_") : name;
}

QString freeProfileFile(const QString& folder, const QString& name)
{
    QString file = joinPath(folder, name + QLatin1String(kExtension));
    for (int n = 2; QFileInfo::exists(file); ++n)
        file = joinPath(folder, name + u'_' + QString::number(n) + QLatin1String(kExtension));
    return file;
}

QString importedWord(const QList<QByteArray>& words, qsizetype index)
{
    if (index >= words.size() || words[index] == serverfile::kNoValue)
        return QString();
    return QString::fromLocal8Bit(words[index]);
}

} // namespace

ProfileStore::ProfileStore(Notifier& notifier, ProfileEvents& events)
    : notifier_(notifier), events_(events)
{
}

QString ProfileStore::root()
{
    return DataFolders::profiles();
}

QStringList ProfileStore::profilesIn(const QString& folder)
{
    return profileFiles(folder, QDirIterator::NoIteratorFlags);
}

QStringList ProfileStore::allProfiles()
{
    return profileFiles(root(), QDirIterator::Subdirectories);
}

QString ProfileStore::shownName(const QString& file)
{
    const QString folder = QDir(root()).relativeFilePath(QFileInfo(file).path());
    const QString name = SiteProfile::nameOf(file);
    return folder == u'.' ? name : folder + u'/' + name;
}

QString ProfileStore::newFolder(const QString& parent)
{
    return FolderTree::makeFolder(parent, StringTable::text(ids::kNewProfileLabel), notifier_);
}

QString ProfileStore::renameProfile(const QString& file, const QString& newLabel)
{
    if (newLabel.isEmpty())
        return QString();
    const QString newFile = joinPath(QFileInfo(file).path(), SiteProfile::fileNameFor(newLabel));
    if (newFile == file)
        return file;
    if (QFileInfo::exists(newFile)) {
        notifier_.showMessage(StringTable::text(ids::kRenameTargetExists), MessageIcon::Stop);
        return QString();
    }
    if (!QFile::rename(file, newFile))
        return QString();
    Q_EMIT events_.profilesChanged();
    LinkUpkeep::profileRenamed(file, newFile, events_);
    return newFile;
}

int ProfileStore::deleteProfiles(const QStringList& files)
{
    if (files.isEmpty()) {
        notifier_.showMessage(StringTable::text(ids::kSelectFile), MessageIcon::Stop);
        return 0;
    }
    int deleted = 0;
    bool all = false;
    for (const QString& file : files) {
        if (!all) {
            const Question question { StringTable::text(ids::kDeleteCaption),
                messageText(ids::kConfirmRemoveFile, { SiteProfile::nameOf(file) }),
                ids::kButtonYes, ids::kButtonAll, files.size() > 1, ids::kButtonCancel };
            const Answer answer = notifier_.ask(question);
            if (answer == Answer::Cancelled)
                break;
            all = answer == Answer::Middle;
        }
        if (!QFile::remove(file))
            continue;
        ++deleted;
        Q_EMIT events_.profilesChanged();
        LinkUpkeep::profileDeleted(file, events_);
    }
    return deleted;
}

QString ProfileStore::renameFolder(const QString& folder, const QString& newLabel)
{
    // The root is where the data layout keeps the profiles; it has no other name.
    if (FolderTree::isRoot(folder, root()))
        return QString();
    const QString newFolder = FolderTree::renameFolder(folder, newLabel, notifier_);
    if (newFolder.isEmpty())
        return QString();
    Q_EMIT events_.profilesChanged();
    LinkUpkeep::profileFolderRenamed(folder, newFolder, events_);
    return newFolder;
}

bool ProfileStore::deleteFolder(const QString& folder)
{
    if (FolderTree::isRoot(folder, root()) || !QFileInfo(folder).isDir())
        return false;
    const Question question { StringTable::text(ids::kDeleteProfileCaption),
        StringTable::text(ids::kDeleteProfileAndSubProfiles), ids::kButtonProfileOnly,
        ids::kButtonYesToAll, true, ids::kButtonCancel };
    const Answer answer = notifier_.ask(question);
    if (answer == Answer::Cancelled)
        return false;
    const bool wholeTree = answer == Answer::Middle;
    const QStringList profiles
        = wholeTree ? profileFiles(folder, QDirIterator::Subdirectories) : profilesIn(folder);
    if (wholeTree || FolderTree::subFolders(folder).isEmpty())
        QDir(folder).removeRecursively();
    const bool gone = !QFileInfo::exists(folder);
    if (!gone)
        notifier_.showMessage(StringTable::text(ids::kCannotRemoveFolder), MessageIcon::Stop);
    const bool anyRemoved = std::any_of(profiles.begin(), profiles.end(),
        [](const QString& file) { return !QFileInfo::exists(file); });
    if (anyRemoved)
        Q_EMIT events_.profilesChanged();
    if (gone) {
        LinkUpkeep::profileFolderDeleted(folder, events_);
        return true;
    }
    // Part of it went (a write-protected sub-folder stayed): the links of what went go too.
    for (const QString& file : profiles) {
        if (!QFileInfo::exists(file))
            LinkUpkeep::profileDeleted(file, events_);
    }
    return false;
}

int ProfileStore::importServerFile(const QString& stsFile, const QString& folder)
{
    const std::optional<QByteArray> body = ServerFile::body(stsFile);
    if (!body) {
        notifier_.showMessage(StringTable::text(ids::kNotAnFtpServerFile), MessageIcon::Stop);
        return 0;
    }
    int imported = 0;
    for (const QByteArray& line : body->split('\n')) {
        const QByteArray simplified = line.simplified();
        if (simplified.isEmpty())
            continue;
        const QList<QByteArray> words = simplified.split(' ');
        const QString host = importedWord(words, 0);
        const QString file = freeProfileFile(folder, importedName(host));
        const bool written = PrivateProfile::update(file, [&](IniDocument& document) {
            const auto set = [&](const char* key, const QString& value) {
                document.setValue(QLatin1String(kSection), QLatin1String(key), value);
            };
            set(kHost, host);
            set(kUser, importedWord(words, 1));
            set(kPassword, importedWord(words, 2));
            set(kRemotePath, importedWord(words, 3));
            set(kPort, QLatin1String(kImportedPort));
            return true;
        });
        if (written)
            ++imported;
    }
    if (imported > 0)
        Q_EMIT events_.profilesChanged();
    return imported;
}

} // namespace zelto
