#include "ScriptTransfers.h"

#include "ftp/FtpConnection.h"
#include "ftp/FtpErrors.h"
#include "log/LogSink.h"
#include "options/TransferSounds.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scripts/RemoteFolder.h"
#include "scripts/ScriptConnection.h"
#include "scripts/ScriptReport.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace zelto {
namespace {

bool isPattern(const QString& name)
{
    return name.contains(u'*') || name.contains(u'?');
}

bool isLocal(const ScriptConnection& connection)
{
    return !connection.session;
}

QString localPathOf(const QString& localFolder, const QString& path)
{
    return QDir(localFolder).filePath(path);
}

} // namespace

ScriptTransfers::ScriptTransfers(ScriptReport& report, TransferSounds& sounds, std::stop_token stop)
    : report_(report)
    , sounds_(sounds)
    , stop_(std::move(stop))
    , start_(RunningTime::Clock::now())
    , localMachine_(StringTable::text(ids::kLocalMachine))
{
}

void ScriptTransfers::get(
    ScriptConnection& from, const QString& remotePath, const QString& localFolder)
{
    const QString subject = ScriptReport::subject(from.name);
    const QString localPath = localPathOf(localFolder, RemoteName::of(remotePath).name);
    auto result = from.ready();
    if (result.ok())
        result
            = getFile(*from.session, { .from = remotePath, .to = localPath, .jobStart = start_ });
    report(subject, remotePath, result, ScriptReport::fields(from.host, localMachine_, localPath));
}

void ScriptTransfers::put(
    ScriptConnection& to, const QString& localPath, const QString& localFolder)
{
    const QString subject = ScriptReport::subject(to.name);
    const QString path = localPathOf(localFolder, localPath);
    const QString remoteName = QFileInfo(path).fileName();
    auto result = to.ready();
    if (result.ok())
        result = putFile(*to.session,
            { .from = path,
                .to = remoteName,
                .size = QFileInfo(path).size(),
                .jobStart = start_,
                .keepSource = false });
    report(subject, localPath, result, ScriptReport::fields(localMachine_, to.host, remoteName));
}

void ScriptTransfers::send(
    ScriptConnection& from, ScriptConnection& to, const QString& what, const QString& localFolder)
{
    const QString subject = ScriptReport::copySubject(from.name, to.name);
    const LogEvent record = ScriptReport::fields(
        isLocal(from) ? localMachine_ : from.host, isLocal(to) ? localMachine_ : to.host, what);
    // LOCAL may be either side, but not both.
    FtpResult ready = isLocal(from) && isLocal(to) ? FtpResult::failure(inet::kInvalidOperation)
                                                   : FtpResult::success();
    for (const ScriptConnection* side : { &from, &to }) {
        if (ready.ok() && !isLocal(*side))
            ready = side->ready();
    }
    FtpValue<QStringList> paths { ready };
    if (ready.ok())
        paths = sources(from, what, localFolder);
    if (!paths.ok()) {
        report(subject, what, paths.result, record);
        return;
    }

    const bool overwrite
        = SettingsStore::get(settings::config::kOverwrite) == QLatin1StringView(settings::kYes);
    std::optional<RemoteListing> targets;
    for (const QString& path : paths.value) {
        if (stop_.stop_requested())
            return;
        const LogEvent fileRecord = ScriptReport::fields(record.field1, record.field2, path);
        const QString name = isLocal(from) ? QFileInfo(path).fileName() : RemoteName::of(path).name;
        if (!overwrite && targetExists(to, name, localFolder, targets)) {
            report(subject, path, FtpResult::failure(ids::kCannotOverwrite), fileRecord);
            continue;
        }
        report(subject, path, sendOne(from, to, path, name, localFolder), fileRecord);
    }
}

bool ScriptTransfers::targetExists(const ScriptConnection& to, const QString& name,
    const QString& localFolder, std::optional<RemoteListing>& targets) const
{
    if (isLocal(to))
        return QFileInfo::exists(localPathOf(localFolder, name));
    // Listed once per command; a folder that cannot be listed is taken to be empty.
    if (!targets)
        targets = RemoteFolder::list(*to.session->connection(), {}).value;
    return targets->contains(name);
}

FtpResult ScriptTransfers::sendOne(ScriptConnection& from, ScriptConnection& to,
    const QString& path, const QString& name, const QString& localFolder)
{
    if (isLocal(from)) {
        const QString source = localPathOf(localFolder, path);
        return putFile(*to.session,
            { .from = source,
                .to = name,
                .size = QFileInfo(source).size(),
                .jobStart = start_,
                .keepSource = false });
    }
    if (isLocal(to))
        return getFile(*from.session,
            { .from = path, .to = localPathOf(localFolder, name), .jobStart = start_ });
    return copyFile(*from.session, *to.session, { .from = path, .to = name, .jobStart = start_ });
}

FtpValue<QStringList> ScriptTransfers::sources(
    const ScriptConnection& from, const QString& what, const QString& localFolder) const
{
    const RemoteName named = RemoteName::of(what);
    if (!isPattern(named.name))
        return { FtpResult::success(), { what } };
    QStringList names;
    if (isLocal(from)) {
        names = QDir(localPathOf(localFolder, named.folder)).entryList(QDir::Files | QDir::Hidden);
    } else {
        const auto listed = RemoteFolder::list(*from.session->connection(), named.folder);
        if (!listed.ok())
            return { listed.result };
        // A name that is not plain would be used as a local path, or sent back in a command.
        for (const auto& entry : listed.value.entries()) {
            if (!entry.isFolder() && entry.isPlainName() && !names.contains(entry.name))
                names.append(entry.name);
        }
    }
    const QRegularExpression pattern(QRegularExpression::wildcardToRegularExpression(named.name));
    names.removeIf([&](const QString& name) { return !pattern.match(name).hasMatch(); });
    if (names.isEmpty())
        return { FtpResult::failure(ids::kNoSuchFile) };
    std::sort(names.begin(), names.end());
    const QString prefix = named.folder.isEmpty()
        ? QString()
        : (named.folder.endsWith(u'/') ? named.folder : named.folder + u'/');
    for (QString& name : names)
        name.prepend(prefix);
    return { FtpResult::success(), names };
}

void ScriptTransfers::report(
    const QString& subject, const QString& object, const FtpResult& result, const LogEvent& record)
{
    tried_ = true;
    sounds_.fileDone(result.ok());
    if (result.ok())
        report_.succeeded(subject, ids::kLogFtpTransferComplete, object, record);
    else
        report_.failed(subject, ids::kLogFtpTransferFailed, object, result.text(), record);
}

} // namespace zelto
