#include "RemotePlacement.h"

#include "platform/Paths.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QRegularExpression>

#include <functional>

namespace zelto {
namespace {

constexpr int kShortNameLength = 12;
constexpr int kShortStemLength = 6;
constexpr auto kShortNameMark = QLatin1StringView("~1");

QString joinWith(const QString& folder, QChar separator, const QString& name)
{
    if (folder.isEmpty() || folder.endsWith(separator))
        return folder + name;
    return folder + separator + name;
}

// The parts of a source folder that become target folders, in order.
QStringList folderParts(const QString& folder, const QString& name)
{
    static const QRegularExpression separators(QStringLiteral("[/\\\\]+"));
    QStringList parts;
    for (const auto& part : folder.split(separators, Qt::SkipEmptyParts)) {
        if (part == name)
            break;
        if (!part.contains(u':')) // a drive letter never reaches the target
            parts.append(part);
    }
    return parts;
}

using Join = std::function<QString(const QString& folder, const QString& name)>;

Placement place(const QString& sourceFolder, const QString& targetFolder, const QString& name,
    DirTree mode, const Join& join)
{
    Placement placement;
    placement.folder = targetFolder;
    if (mode != DirTree::NoPath) {
        auto parts = folderParts(sourceFolder, name);
        if (mode == DirTree::LastDir && !parts.isEmpty())
            parts = QStringList { parts.last() };
        for (const auto& part : parts) {
            const auto path = join(placement.folder, part);
            placement.folders.push_back({ placement.folder, part, path });
            placement.folder = path;
        }
    }
    placement.path = join(placement.folder, name);
    return placement;
}

} // namespace

DirTree RemotePlacement::dirTreeOf(const QString& value, bool keepFolder)
{
    if (value == QLatin1StringView(settings::config::kDirTreeLastDir))
        return DirTree::LastDir;
    if (value == QLatin1StringView(settings::config::kDirTreeFullPath))
        return DirTree::FullPath;
    return keepFolder ? DirTree::LastDir : DirTree::NoPath;
}

DirTree RemotePlacement::dirTreeSetting(bool keepFolder)
{
    return dirTreeOf(SettingsStore::get(settings::config::kFtpDirTree), keepFolder);
}

bool RemotePlacement::shortNamesSetting()
{
    return SettingsStore::get(settings::config::kRenameLongFileNames)
        != QLatin1StringView(settings::kNo);
}

QChar RemotePlacement::localSeparator(const QString& localFolder)
{
    if (localFolder.contains(u'/'))
        return u'/';
    if (localFolder.contains(u'\\'))
        return u'\\';
    // A one-level relative folder ("www") says nothing: it is a folder of this system.
    return QDir::separator();
}

QChar RemotePlacement::remoteSeparator(const QString& remoteFolder)
{
    return remoteFolder.contains(u'\\') ? u'\\' : u'/';
}

QString RemotePlacement::localPath(const QString& localFolder, const QString& name)
{
    return joinWith(localFolder, localSeparator(localFolder), name);
}

QString RemotePlacement::remotePath(const QString& remoteFolder, const QString& name)
{
    return joinWith(remoteFolder, remoteSeparator(remoteFolder), name);
}

QString RemotePlacement::shortName(const QString& name)
{
    if (name.size() <= kShortNameLength)
        return name;
    QString shortened;
    for (const QChar c : name) {
        if (shortened.size() == kShortStemLength)
            break;
        if (c != u' ')
            shortened += c;
    }
    shortened += kShortNameMark;
    const auto dot = name.indexOf(u'.');
    if (dot >= 0)
        shortened += name.mid(dot, kShortNameLength - shortened.size());
    return shortened;
}

Placement RemotePlacement::onServer(const QString& localFolder, const QString& remoteFolder,
    const QString& remoteName, DirTree mode)
{
    const auto separator = remoteSeparator(remoteFolder);
    return place(localFolder, remoteFolder, remoteName, mode,
        [separator](const QString& folder, const QString& name) {
            return joinWith(folder, separator, name);
        });
}

Placement RemotePlacement::onDisk(
    const QString& remoteFolder, const QString& localFolder, const QString& localName, DirTree mode)
{
    return place(remoteFolder, localFolder, localName, mode, &joinPath);
}

} // namespace zelto
