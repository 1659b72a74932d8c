#pragma once

// What the engine tests share: recording implementations of the interfaces a job reports to, the
// settings of a quick test, and the site of a fixture server.

#include "FtpServer.h"
#include "RefusingPort.h"
#include "TempSettings.h"
#include "TestFiles.h"
#include "TestWait.h"
#include "Vsftpd.h"
#include "ftp/JobProgress.h"
#include "ftp/JobServices.h"
#include "ftp/JobSite.h"
#include "log/LogSink.h"
#include "options/SoundSink.h"
#include "platform/Notifier.h"
#include "platform/TrayIndicator.h"
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

#include <mutex>
#include <utility>
#include <vector>

namespace zelto::test {

// Everything a job reported, in order, whatever thread reported it.
class Recorder final : public LogSink, public SoundSink, public TrayIndicator, public Notifier {
public:
    void write(const LogEvent& event) override { add(events_, event); }
    void play(SoundEvent event) override { add(sounds_, event); }
    void setState(TrayState state) override { add(tray_, state); }
    void showMessage(const QString& text, MessageIcon icon) override
    {
        add(messages_, std::pair(text, icon));
    }
    // The engine asks nothing.
    Answer ask(const Question&) override { return Answer::Cancelled; }

    [[nodiscard]] std::vector<LogEvent> events() const { return copy(events_); }
    [[nodiscard]] std::vector<int> logIds() const
    {
        std::vector<int> ids;
        for (const auto& event : events())
            ids.push_back(event.messageId);
        return ids;
    }
    [[nodiscard]] std::vector<SoundEvent> sounds() const { return copy(sounds_); }
    [[nodiscard]] std::vector<TrayState> tray() const { return copy(tray_); }
    [[nodiscard]] std::vector<std::pair<QString, MessageIcon>> messages() const
    {
        return copy(messages_);
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
    template <typename T> void add(std::vector<T>& list, T item)
    {
        std::lock_guard lock(mutex_);
        list.push_back(std::move(item));
    }
    template <typename T> [[nodiscard]] std::vector<T> copy(const std::vector<T>& list) const
    {
        std::lock_guard lock(mutex_);
        return list;
    }

    mutable std::mutex mutex_;
    std::vector<LogEvent> events_;
    std::vector<SoundEvent> sounds_;
    std::vector<TrayState> tray_;
    std::vector<std::pair<QString, MessageIcon>> messages_;
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
    return { FtpServer::host(), user.name, user.password, server.port(), folder, total, {} };
}

inline JobSite siteOf(const Vsftpd& server, const QString& folder = {}, qint64 total = 0)
{
    return { Vsftpd::host(), Vsftpd::user(), Vsftpd::password(), server.port(), folder, total, {} };
}

// A test against the fixture servers, skipped where none can run: settings of its own with every
// time-out at `timeoutSeconds`, direct access, and a recorder and progress for its jobs.
class FtpTest : public ::testing::Test {
protected:
    explicit FtpTest(int timeoutSeconds = 1) : timeoutSeconds_(timeoutSeconds) { }
    void SetUp() override
    {
        SKIP_WITHOUT(FtpServer);
        useQuickTimeouts(timeoutSeconds_);
        useDirectAccess();
    }

    TempSettings settings_;
    Recorder recorder_;
    JobProgress progress_;

private:
    int timeoutSeconds_;
};

} // namespace zelto::test
