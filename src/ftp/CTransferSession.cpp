#include "CTransferSession.h"

#include "ftp/JobProgress.h"
#include "ftp/JobServices.h"
#include "log/LogSink.h"
#include "options/SoundSink.h"
#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <algorithm>

namespace zelto {
namespace {

using namespace std::chrono;

milliseconds secondsSetting(const settings::IntKey& key)
{
    return milliseconds(qint64(SettingsStore::get(key)) * 1000);
}

bool isYes(const settings::TextKey& key)
{
    return SettingsStore::get(key) == QLatin1String(settings::kYes);
}

} // namespace

CTransferSession::CTransferSession(
    JobServices& services, JobProgress* progress, std::stop_token stop)
    : services_(services), progress_(progress), stop_(std::move(stop))
{
    applyTimeouts();
}

CTransferSession::~CTransferSession()
{
    connection_.reset();
    setTray(TrayState::Idle);
}

void CTransferSession::applyTimeouts()
{
    options_.connectTimeout = secondsSetting(settings::ftp::kConnectTo);
    options_.receiveStall = secondsSetting(settings::ftp::kRecTo);
    options_.sendStall = secondsSetting(settings::ftp::kSendTo);
    // libcurl has one time-out for sending a command and waiting for its reply.
    options_.replyTimeout = std::max(
        secondsSetting(settings::ftp::kRecToCtrl), secondsSetting(settings::ftp::kSendToCtrl));
    options_.retries = std::max(0, SettingsStore::get(settings::ftp::kRetry));
}

quint32 CTransferSession::cacheFlags()
{
    quint32 flags = 0;
    if (SettingsStore::get(settings::ftp::kCache) == QLatin1String(settings::kNo))
        flags |= kDontCache;
    if (isYes(settings::ftp::kReload))
        flags |= kReload;
    return flags;
}

int CTransferSession::errorMessageId(int code)
{
    return StringTable::errorMessageId(code);
}

void CTransferSession::readAccess()
{
    // Compared exactly: any other value, the unset default included, means preconfigured.
    const auto access = SettingsStore::get(settings::ftp::kAccessType);
    options_.proxy.clear();
    if (access == QLatin1String("DirectAccess")) {
        options_.access = AccessType::Direct;
    } else if (access == QLatin1String("ProxyAccess")) {
        options_.access = AccessType::Proxy;
        options_.proxy = SettingsStore::get(settings::ftp::kProxyName) + u':'
            + QString::number(SettingsStore::get(settings::ftp::kProxyPort));
    } else {
        options_.access = AccessType::Preconfigured;
    }
    options_.passive = isYes(settings::ftp::kPassive);
}

FtpResult CTransferSession::buildConnection(const JobSite& site)
{
    site_ = site;
    readAccess();
    connection_ = std::make_unique<FtpConnection>(options_, stop_);
    auto built = connection_->prepare({ site.server, site.port, site.user, site.password });
    if (!built.ok())
        connection_.reset();
    return built;
}

FtpResult CTransferSession::connectJob(const JobSite& site)
{
    // 1. A fresh start on screen.
    if (progress_) {
        for (const auto text : { JobProgress::Text::JobBytes, JobProgress::Text::JobRate,
                 JobProgress::Text::JobTimeLeft, JobProgress::Text::FileBytes,
                 JobProgress::Text::FileRate, JobProgress::Text::FileTimeLeft })
            progress_->setText(text, {});
        progress_->setJobBar(0);
        progress_->setFileBar(0);
    }
    setStatus(StringTable::text(ids::kConnecting));
    setTray(TrayState::Busy);

    // 2. The session.
    if (auto built = buildConnection(site); !built.ok()) {
        log(ids::kLogInternetConnectionFailed, {}, built.text());
        services_.sounds.play(SoundEvent::ConnectFail);
        setTray(TrayState::Idle);
        return built;
    }
    // 3.
    log(ids::kLogInternetConnectionOk);

    // 4. The login. Its failure is not logged here: the log then shows only step 3's record.
    if (auto opened = connection_->open(); !opened.ok()) {
        services_.sounds.play(SoundEvent::ConnectFail);
        setTray(TrayState::Idle);
        return opened;
    }

    // 5.
    services_.sounds.play(SoundEvent::ConnectOk);
    setProgressControls(progress_, true);
    setBatchBytes(site.totalBytes, 0);
    if (progress_) {
        progress_->setJobBytes(0, site.totalBytes);
        progress_->setJobBar(progress_->barPosition(0, site.totalBytes));
    }

    // 6.
    log(ids::kLogFtpConnectionOk);
    setStatus(StringTable::text(ids::kConnected));

    // 7. The job's folder.
    if (!site.remoteFolder.isEmpty()) {
        if (auto changed = connection_->changeFolder(site.remoteFolder); !changed.ok()) {
            services_.notifier.showMessage(changed.message(), MessageIcon::Stop);
            log(ids::kLogChangeDirectoryFailed, site.remoteFolder, changed.text());
            setTray(TrayState::Idle);
            return changed;
        }
        log(ids::kLogChangeDirectoryOk, site.remoteFolder);
    }

    // 8.
    setTray(TrayState::Idle);
    return FtpResult::success();
}

FtpResult CTransferSession::quickConnect(const JobSite& site)
{
    const auto refuse = [this](const FtpResult& result) {
        services_.notifier.showMessage(result.message(), MessageIcon::Stop);
        return result;
    };
    if (auto built = buildConnection(site); !built.ok())
        return refuse(built);
    log(ids::kLogInternetConnectionOk);
    if (auto opened = connection_->open(); !opened.ok())
        return refuse(opened);
    log(ids::kLogFtpConnectionOk);
    services_.sounds.play(SoundEvent::ConnectOk);
    setStatus(StringTable::text(ids::kConnectedTo).replace(QLatin1String("%s"), site.server));

    if (!site.remoteFolder.isEmpty()) {
        if (auto changed = connection_->changeFolder(site.remoteFolder); !changed.ok()) {
            log(ids::kLogChangeDirectoryFailed, site.remoteFolder, changed.text());
            return refuse(changed);
        }
        log(ids::kLogChangeDirectoryOk, site.remoteFolder);
    }
    SettingsStore::set(settings::ftp::kQuickServer, site.server);
    SettingsStore::set(settings::ftp::kQuickLogin, site.user);
    SettingsStore::set(settings::ftp::kQuickPasswd, site.password);
    SettingsStore::set(settings::ftp::kQuickDirec, site.remoteFolder);
    SettingsStore::set(settings::ftp::kQuickPort, QString::number(site.port));
    return FtpResult::success();
}

void CTransferSession::disconnectJob()
{
    if (closeConnection())
        log(ids::kLogFtpConnectionClosed);
    connection_.reset();
    // The log shows this code with the text of 32876.
    log(ids::kLogSessionEnded);
    setTray(TrayState::Idle);
}

bool CTransferSession::closeConnection()
{
    if (!isConnected())
        return false;
    connection_->close();
    return true;
}

void CTransferSession::setProgressControls(JobProgress* progress, bool countsUp)
{
    progress_ = progress;
    progressCountsUp_ = countsUp;
    if (progress_)
        progress_->setCountsUp(countsUp);
}

void CTransferSession::loadBufferSizes()
{
    const auto bounded = [](int value) { return std::clamp(value, 1, kMaxBuffer); };
    readBufferSize_ = bounded(SettingsStore::get(settings::ftp::kReadBuffer));
    writeBufferSize_ = bounded(SettingsStore::get(settings::ftp::kWriteBuffer));
}

void CTransferSession::setBatchBytes(qint64 total, qint64 done)
{
    batchTotalBytes_ = total;
    batchDoneBytes_ = done;
}

void CTransferSession::setTray(TrayState state)
{
    if (tray_ == state)
        return;
    tray_ = state;
    services_.tray.setState(state);
}

void CTransferSession::log(int messageId, const QString& field2, const QString& detail) const
{
    LogEvent event;
    event.messageId = messageId;
    event.field1 = site_.server;
    event.field2 = field2;
    event.detail = detail;
    services_.log.write(event);
}

void CTransferSession::setStatus(const QString& text) const
{
    if (progress_)
        progress_->setText(JobProgress::Text::Status, text);
}

} // namespace zelto
