#include "DataFolders.h"

#include "platform/OwnerOnly.h"
#include "platform/Paths.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QStandardPaths>

namespace zelto {
namespace {

constexpr char kProfiles[] = "Profiles";
constexpr char kFiles[] = "Files";
constexpr char kLinks[] = "Links";

// Makes `path` and its parents; the last level is owner-only.
void makeOwnerOnlyFolder(const QString& path)
{
    if (!QDir(path).exists() && QDir().mkpath(path))
        restrictToOwner(path);
}

} // namespace

QString DataFolders::appDataFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    makeOwnerOnlyFolder(folder);
    return folder;
}

QString DataFolders::dataFiles()
{
    const QString stored = SettingsStore::get(settings::config::kDataDir);
    return stored.isEmpty() ? appDataFolder() : stored;
}

QString DataFolders::base()
{
    const QString stored = SettingsStore::get(settings::config::kProfilePath);
    return stored.isEmpty() ? appDataFolder() : stored;
}

QString DataFolders::subFolder(const char* name)
{
    const QString folder = joinPath(base(), QString::fromLatin1(name));
    makeOwnerOnlyFolder(folder);
    return folder;
}

QString DataFolders::profiles()
{
    return subFolder(kProfiles);
}

QString DataFolders::files()
{
    return subFolder(kFiles);
}

QString DataFolders::links()
{
    return subFolder(kLinks);
}

QString DataFolders::linkFile(const QString& name)
{
    return joinPath(links(), name + QStringLiteral(".ini"));
}

void DataFolders::storeTypedProfileDirectory(const QString& typed)
{
    // The search for the separator and "Profiles" starts one character early, so "...\Profiles\"
    // still counts as ending in it.
    const QString tail = QString::fromLatin1(kProfiles);
    const qsizetype tailLength = 1 + tail.size(); // separator + name
    const qsizetype from = std::max<qsizetype>(0, typed.size() - tailLength - 1);
    for (const QChar separator : { QChar(u'\\'), QChar(u'/') }) {
        const qsizetype at = typed.indexOf(separator + tail, from);
        if (at >= 0) {
            SettingsStore::set(settings::config::kProfilePath, typed.left(at));
            return;
        }
    }
    SettingsStore::set(settings::config::kProfilePath, typed);
    for (const char* name : { kProfiles, kLinks, kFiles })
        QDir().mkpath(joinPath(typed, QString::fromLatin1(name)));
}

} // namespace zelto
