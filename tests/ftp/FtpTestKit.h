#pragma once

// What the engine tests share: recording implementations of the interfaces a job reports to, the
// settings of a quick test, and the site of a fixture server.

#include "FtpServer.h"
#include "TempSettings.h"
#include "TestWait.h"
#include "Vsftpd.h"
#include "app/SettingsStore.h"
#include "ftp/JobServices.h"
#include "ftp/JobSite.h"
#include "log/LogSink.h"
#include "options/SoundSink.h"
#include "platform/Notifier.h"
#include "platform/TrayIndicator.h"

#include <QFile>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <mutex>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace zelto::test {

// Skips the test, saying why, where the server cannot run.
#define SKIP_WITHOUT(Server)                                                                       \
    do {                                                                                           \
        if (const auto reason = Server::unavailableReason())                                       \
            GTEST_SKIP() << reason->toStdString();                                                 \
    } while (false)

// Everything a job reported, in order, whatever thread reported it.
class Recorder final : public LogSink, public SoundSink, public TrayIndicator, public Notifier {
public:
    void write(const LogEvent& event) override
    {
        std::lock_guard lock(mutex_);
        events_.push_back(event);
    }
    void play(SoundEvent event) override
    {
        std::lock_guard lock(mutex_);
        sounds_.push_back(event);
    }
    void setState(TrayState state) override
    {
        std::lock_guard lock(mutex_);
        tray_.push_back(state);
    }
    void showMessage(const QString& text, MessageIcon icon) override
    {
        std::lock_guard lock(mutex_);
        messages_.emplace_back(text, icon);
    }
    // The engine asks nothing.
    Answer ask(const Question&) override { return Answer::Cancelled; }

    [[nodiscard]] std::vector<LogEvent> events() const
    {
        std::lock_guard lock(mutex_);
        return events_;
    }
    [[nodiscard]] std::vector<int> logIds() const
    {
        std::vector<int> ids;
        for (const auto& event : events())
            ids.push_back(event.messageId);
        return ids;
    }
    [[nodiscard]] std::vector<SoundEvent> sounds() const
    {
        std::lock_guard lock(mutex_);
        return sounds_;
    }
    [[nodiscard]] std::vector<TrayState> tray() const
    {
        std::lock_guard lock(mutex_);
        return tray_;
    }
    [[nodiscard]] std::vector<std::pair<QString, MessageIcon>> messages() const
    {
        std::lock_guard lock(mutex_);
        return messages_;
    }
    void clear()
    {
        std::lock_guard lock(mutex_);
        events_.clear();
        sounds_.clear();
        tray_.clear();
        messages_.clear();
    }

    JobServices services { *this, *this, *this, *this };

private:
    mutable std::mutex mutex_;
    std::vector<LogEvent> events_;
    std::vector<SoundEvent> sounds_;
    std::vector<TrayState> tray_;
    std::vector<std::pair<QString, MessageIcon>> messages_;
};

// A loopback port that refuses connections: bound, never listening, for the object's lifetime.
class RefusingPort final {
public:
    RefusingPort()
    {
        sockaddr_in address {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        if (fd_ < 0 || ::bind(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0
            || ::getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &length) != 0)
            fixtureError(QStringLiteral("cannot reserve a loopback port"));
        port_ = ntohs(address.sin_port);
    }
    ~RefusingPort() { ::close(fd_); }
    RefusingPort(const RefusingPort&) = delete;
    RefusingPort& operator=(const RefusingPort&) = delete;
    [[nodiscard]] quint16 port() const { return port_; }

private:
    int fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
    quint16 port_ = 0;
};

// Every time-out at `seconds` and no retry, so that a fault ends a test quickly.
inline void useQuickTimeouts(int seconds = 1, int retries = 0)
{
    for (const auto* key : { &settings::ftp::kConnectTo, &settings::ftp::kRecTo,
             &settings::ftp::kSendTo, &settings::ftp::kRecToCtrl, &settings::ftp::kSendToCtrl })
        SettingsStore::set(*key, seconds);
    SettingsStore::set(settings::ftp::kRetry, retries);
}

// Access without the proxies of this machine's environment.
inline void useDirectAccess()
{
    SettingsStore::set(settings::ftp::kAccessType, QStringLiteral("DirectAccess"));
}

inline JobSite siteOf(const FtpServer& server, const QString& folder = {}, qint64 total = 0)
{
    const auto& user = server.users().front();
    return { FtpServer::host(), user.name, user.password, server.port(), folder, total };
}

inline JobSite siteOf(const Vsftpd& server, const QString& folder = {}, qint64 total = 0)
{
    return { Vsftpd::host(), Vsftpd::user(), Vsftpd::password(), server.port(), folder, total };
}

[[nodiscard]] inline QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

[[nodiscard]] inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

} // namespace zelto::test
