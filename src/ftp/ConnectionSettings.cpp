#include "ConnectionSettings.h"

#include "settings/SettingsStore.h"

#include <algorithm>

namespace zelto {
namespace {

using namespace std::chrono;

milliseconds secondsSetting(const settings::IntKey& key)
{
    return milliseconds(qint64(SettingsStore::get(key)) * 1000);
}

} // namespace

void ConnectionSettings::readTimeouts(ConnectionOptions& options)
{
    options.connectTimeout = secondsSetting(settings::ftp::kConnectTo);
    options.receiveStall = secondsSetting(settings::ftp::kRecTo);
    options.sendStall = secondsSetting(settings::ftp::kSendTo);
    // libcurl has one time-out for sending a command and waiting for its reply.
    options.replyTimeout = std::max(
        secondsSetting(settings::ftp::kRecToCtrl), secondsSetting(settings::ftp::kSendToCtrl));
    options.retries = std::max(0, SettingsStore::get(settings::ftp::kRetry));
}

void ConnectionSettings::readAccess(ConnectionOptions& options)
{
    // Compared exactly: any other value, the unset default included, means preconfigured.
    const auto access = SettingsStore::get(settings::ftp::kAccessType);
    options.proxy.clear();
    if (access == QLatin1String("DirectAccess")) {
        options.access = AccessType::Direct;
    } else if (access == QLatin1String("ProxyAccess")) {
        options.access = AccessType::Proxy;
        options.proxy = SettingsStore::get(settings::ftp::kProxyName) + u':'
            + QString::number(SettingsStore::get(settings::ftp::kProxyPort));
    } else {
        options.access = AccessType::Preconfigured;
    }
    options.passive = SettingsStore::get(settings::ftp::kPassive) == QLatin1String(settings::kYes);
}

} // namespace zelto
