#include "CTransferSession.h"

#include "ftp/ConnectionSettings.h"
#include "options/SoundSink.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <algorithm>

namespace zelto {

CTransferSession::CTransferSession(
    JobServices& services, JobProgress* progress, std::stop_token stop)
    : reporter_(services, progress), stop_(std::move(stop))
{
    ConnectionSettings::readTimeouts(options_);
}

CTransferSession::~CTransferSession()
{
    // The connection goes before the reporter, which sets the tray to idle.
    connection_.reset();
}

FtpResult CTransferSession::buildConnection(const JobSite& site)
{
    reporter_.setServer(site.server);
    ConnectionSettings::readAccess(options_);
    connection_ = std::make_unique<FtpConnection>(options_, stop_);
    auto built = connection_->prepare({ site.server, site.port, site.user, site.password });
    if (!built.ok())
        connection_.reset();
    return built;
}

FtpResult CTransferSession::connectFailed(const FtpResult& result)
{
    reporter_.play(SoundEvent::ConnectFail);
    reporter_.setTray(TrayState::Idle);
    return result;
}

FtpResult CTransferSession::connectJob(const JobSite& site)
{
    // A fresh start on screen.
    reporter_.clearProgress();
    reporter_.setStatus(StringTable::text(ids::kConnecting));
    reporter_.setTray(TrayState::Busy);

    // Building the session, which alone has a record of its failure.
    if (auto built = buildConnection(site); !built.ok()) {
        reporter_.log(ids::kLogInternetConnectionFailed, {}, built.text());
        return connectFailed(built);
    }
    reporter_.log(ids::kLogInternetConnectionOk);

    // The login. Its failure is not logged: the log then shows only the session's record.
    if (auto opened = connection_->open(); !opened.ok())
        return connectFailed(opened);

    // Logged in: the job's bytes start, and the log and the status say so.
    reporter_.play(SoundEvent::ConnectOk);
    reporter_.startBatch(site.totalBytes);
    reporter_.log(ids::kLogFtpConnectionOk);
    reporter_.setStatus(StringTable::text(ids::kConnected));

    // The job's folder. A folder that cannot be entered fails the connect, and the user is told.
    if (!site.remoteFolder.isEmpty()) {
        if (auto changed = connection_->changeFolder(site.remoteFolder); !changed.ok()) {
            reporter_.showStop(changed);
            reporter_.log(ids::kLogChangeDirectoryFailed, site.remoteFolder, changed.text());
            reporter_.setTray(TrayState::Idle);
            return changed;
        }
        reporter_.log(ids::kLogChangeDirectoryOk, site.remoteFolder);
    }

    // Connected and in the folder: the tray is idle until the first file moves.
    reporter_.setTray(TrayState::Idle);
    return FtpResult::success();
}

FtpResult CTransferSession::quickConnect(const JobSite& site)
{
    const auto refuse = [this](const FtpResult& result) {
        reporter_.showStop(result);
        return result;
    };
    if (auto built = buildConnection(site); !built.ok())
        return refuse(built);
    reporter_.log(ids::kLogInternetConnectionOk);
    if (auto opened = connection_->open(); !opened.ok())
        return refuse(opened);
    reporter_.log(ids::kLogFtpConnectionOk);
    reporter_.play(SoundEvent::ConnectOk);
    reporter_.setStatus(
        StringTable::text(ids::kConnectedTo).replace(QLatin1String("%s"), site.server));

    if (!site.remoteFolder.isEmpty()) {
        if (auto changed = connection_->changeFolder(site.remoteFolder); !changed.ok()) {
            reporter_.log(ids::kLogChangeDirectoryFailed, site.remoteFolder, changed.text());
            return refuse(changed);
        }
        reporter_.log(ids::kLogChangeDirectoryOk, site.remoteFolder);
    }
    reporter_.keepQuickConnect(site);
    return FtpResult::success();
}

void CTransferSession::disconnectJob()
{
    if (closeConnection())
        reporter_.log(ids::kLogFtpConnectionClosed);
    connection_.reset();
    // The log shows this code with the text of 32876.
    reporter_.log(ids::kLogSessionEnded);
    reporter_.setTray(TrayState::Idle);
}

bool CTransferSession::closeConnection()
{
    if (!isConnected())
        return false;
    connection_->close();
    return true;
}

void CTransferSession::loadBufferSizes()
{
    const auto bounded = [](int value) { return std::clamp(value, 1, kMaxBuffer); };
    readBufferSize_ = bounded(SettingsStore::get(settings::ftp::kReadBuffer));
    writeBufferSize_ = bounded(SettingsStore::get(settings::ftp::kWriteBuffer));
}

} // namespace zelto
