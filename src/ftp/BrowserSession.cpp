#include "BrowserSession.h"

#include "ftp/FtpErrors.h"
#include "platform/StringIds.h"
#include "platform/TrayIndicator.h"

namespace zelto {
namespace {

FtpResult hostileName(const QString& name)
{
    return FtpResult::failure(inet::kInvalidUrl,
        QStringLiteral("the server listed a name that cannot be used: %1").arg(name));
}

} // namespace

BrowserSession::BrowserSession(JobServices& services, std::stop_token stop)
    : services_(services), stop_(std::move(stop))
{
}

BrowserSession::~BrowserSession()
{
    disconnect();
}

FtpResult BrowserSession::connect(const JobSite& site)
{
    std::lock_guard lock(lock_);
    if (session_)
        session_->disconnectJob();
    session_ = std::make_unique<CTransferSession>(services_, nullptr, stop_);
    server_ = site.server;
    auto connected = session_->quickConnect(site);
    if (!connected.ok())
        session_.reset();
    return connected;
}

void BrowserSession::disconnect()
{
    std::lock_guard lock(lock_);
    if (session_)
        session_->disconnectJob();
    session_.reset();
}

bool BrowserSession::isConnected() const
{
    std::lock_guard lock(lock_);
    return session_ && session_->isConnected();
}

QString BrowserSession::currentFolder() const
{
    std::lock_guard lock(lock_);
    return session_ && session_->connection() ? session_->connection()->currentFolder() : QString();
}

FtpValue<RemoteListing> BrowserSession::list(const QString& folder)
{
    std::lock_guard lock(lock_);
    if (!session_ || !session_->isConnected())
        return { notConnected() };
    auto& connection = *session_->connection();
    const QString previous = connection.currentFolder();
    if (!folder.isEmpty() && folder != previous) {
        if (auto changed = connection.changeFolder(folder); !changed.ok()) {
            session_->reporter().log(ids::kLogChangeDirectoryFailed, folder, changed.text());
            return { changed };
        }
    }
    auto listed = connection.list({});
    // A folder that cannot be listed is not where the user is.
    if (!listed.ok() && connection.currentFolder() != previous)
        static_cast<void>(connection.changeFolder(previous));
    return listed;
}

FtpResult BrowserSession::rename(
    const QString& folder, const RemoteEntry& entry, const QString& newName)
{
    std::lock_guard lock(lock_);
    return renameChecked(folder, entry.name, folder, newName);
}

FtpResult BrowserSession::move(const QString& from, const RemoteEntry& entry, const QString& to)
{
    std::lock_guard lock(lock_);
    return renameChecked(from, entry.name, to, entry.name);
}

FtpResult BrowserSession::renameChecked(const QString& fromFolder, const QString& fromName,
    const QString& toFolder, const QString& toName)
{
    const QString from = join(fromFolder, fromName);
    const QString to = join(toFolder, toName);
    const auto done = [&](const FtpResult& result) {
        if (session_)
            session_->reporter().log(result.ok() ? ids::kLogRenamingOk : ids::kLogRenamingFailed,
                from, result.ok() ? to : result.text());
        return result;
    };
    if (const auto refused = refusal({ fromName, toName }))
        return done(*refused);
    session_->reporter().setTray(TrayState::Sending);
    auto& connection = *session_->connection();
    const auto there = connection.list(toFolder);
    FtpResult result;
    if (there.ok() && there.value.contains(toName))
        result = FtpResult::failure(ids::kRenameTargetExists, to);
    else
        result = connection.rename(from, to);
    session_->reporter().setTray(TrayState::Idle);
    return done(result);
}

FtpResult BrowserSession::removeFile(const QString& folder, const RemoteEntry& entry)
{
    std::lock_guard lock(lock_);
    const QString path = join(folder, entry.name);
    const auto done = [&](const FtpResult& result) {
        if (session_)
            session_->reporter().logDeletion(path, server_, result);
        return result;
    };
    if (const auto refused = refusal({ entry.name }))
        return done(*refused);
    session_->reporter().setTray(TrayState::Sending);
    auto& connection = *session_->connection();
    FtpResult result;
    const auto there = connection.list(folder);
    if (!there.ok())
        result = there.result;
    else if (!there.value.contains(entry.name) || there.value.isFolder(entry.name))
        result = FtpResult::failure(ids::kFileToDeleteNotFound, path);
    else if (auto removed = connection.removeFile(path); !removed.ok())
        result = FtpResult::failure(ids::kFileNotDeleted, removed.text());
    session_->reporter().setTray(TrayState::Idle);
    return done(result);
}

FtpResult BrowserSession::makeFolder(const QString& parent, const QString& name, bool existingIsOk)
{
    std::lock_guard lock(lock_);
    const QString path = join(parent, name);
    const auto done = [&](const FtpResult& result) {
        if (session_)
            session_->reporter().log(
                result.ok() ? ids::kLogMakeDirectoryOk : ids::kLogMakeDirectoryFailed, path,
                result.text());
        return result;
    };
    if (const auto refused = refusal({ name }))
        return done(*refused);
    auto& connection = *session_->connection();
    const auto there = connection.list(parent);
    if (there.ok() && there.value.contains(name)) {
        return existingIsOk ? FtpResult::success()
                            : done(FtpResult::failure(ids::kDirectoryExists, path));
    }
    return done(connection.makeFolder(path));
}

FtpResult BrowserSession::removeFolder(const QString& parent, const RemoteEntry& entry)
{
    std::lock_guard lock(lock_);
    const QString path = join(parent, entry.name);
    const auto done = [&](const FtpResult& result) {
        if (session_)
            session_->reporter().logDeletion(path, server_, result);
        return result;
    };
    if (const auto refused = refusal({ entry.name }))
        return done(*refused);
    return done(session_->connection()->removeFolder(path));
}

QString BrowserSession::join(const QString& folder, const QString& name)
{
    if (folder.isEmpty())
        return name;
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

std::optional<FtpResult> BrowserSession::refusal(std::initializer_list<QString> names) const
{
    if (!session_ || !session_->isConnected())
        return notConnected();
    for (const QString& name : names) {
        if (!RemoteEntry::isPlainName(name))
            return hostileName(name);
    }
    return std::nullopt;
}

FtpResult BrowserSession::notConnected() const
{
    return FtpResult::failure(inet::kInvalidOperation, QStringLiteral("not connected to a server"));
}

} // namespace zelto
