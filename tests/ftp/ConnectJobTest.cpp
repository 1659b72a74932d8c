// The connect and disconnect steps of a job: what they log, sound, show and store, against real
// servers.

#include "FtpTestKit.h"
#include "ftp/CTransferSession.h"
#include "ftp/FtpErrors.h"
#include "ftp/JobProgress.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QDir>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;
using Sound = SoundEvent;
using Tray = TrayState;

// Sets an environment variable for the lifetime of the object.
class ScopedEnv final {
public:
    ScopedEnv(const char* name, const QByteArray& value)
        : name_(name), old_(qgetenv(name)), had_(qEnvironmentVariableIsSet(name))
    {
        if (value.isNull())
            qunsetenv(name);
        else
            qputenv(name, value);
    }
    ~ScopedEnv()
    {
        if (had_)
            qputenv(name_, old_);
        else
            qunsetenv(name_);
    }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    const char* name_;
    QByteArray old_;
    bool had_;
};

class ConnectJobTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        useQuickTimeouts();
        useDirectAccess();
    }

    TempSettings settings_;
    Recorder recorder_;
    JobProgress progress_;
};

TEST_F(ConnectJobTest, EventsSoundsAndTrayInTheJobsOrder)
{
    SKIP_WITHOUT(FtpServer);
    FtpServer server;
    ASSERT_TRUE(QDir(server.home()).mkdir("sub"));
    const auto good = siteOf(server, {}, 1234);

    struct Case {
        const char* name;
        std::function<JobSite()> site;
        QStringList refuseLogin;
        int code;
        std::vector<int> logged;
        std::vector<Sound> sounds;
        bool stopMessage;
        int status;
    };
    const Case cases[] = {
        { "success with folder",
            [&] {
                auto site = good;
                site.remoteFolder = "sub";
                return site;
            },
            {}, 0,
            { ids::kLogInternetConnectionOk, ids::kLogFtpConnectionOk, ids::kLogChangeDirectoryOk },
            { Sound::ConnectOk }, false, ids::kConnected },
        { "success without folder", [&] { return good; }, {}, 0,
            { ids::kLogInternetConnectionOk, ids::kLogFtpConnectionOk }, { Sound::ConnectOk },
            false, ids::kConnected },
        // The failed login itself is not logged: only the session's record stands.
        { "refused login", [&] { return good; }, { "*" }, inet::kLoginFailed,
            { ids::kLogInternetConnectionOk }, { Sound::ConnectFail }, false, ids::kConnecting },
        { "missing folder",
            [&] {
                auto site = good;
                site.remoteFolder = "nope";
                return site;
            },
            {}, inet::kServerError,
            { ids::kLogInternetConnectionOk, ids::kLogFtpConnectionOk,
                ids::kLogChangeDirectoryFailed },
            { Sound::ConnectOk }, true, ids::kConnected },
        { "unknown host",
            [&] {
                auto site = good;
                site.server = "no-such-host.invalid";
                return site;
            },
            {}, inet::kNameNotResolved, { ids::kLogInternetConnectionOk }, { Sound::ConnectFail },
            false, ids::kConnecting },
        // A name that cannot form an address fails the session itself.
        { "invalid server name",
            [&] {
                auto site = good;
                site.server = "bad host";
                return site;
            },
            {}, inet::kInvalidUrl, { ids::kLogInternetConnectionFailed }, { Sound::ConnectFail },
            false, ids::kConnecting },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FtpFaults faults;
        faults.refuseLogin = c.refuseLogin;
        server.setFaults(faults);
        recorder_.clear();
        const auto site = c.site();
        {
            CTransferSession session(recorder_.services, &progress_);
            const auto result = session.connectJob(site);
            EXPECT_EQ(result.code, c.code) << result.text().toStdString();
            EXPECT_EQ(session.isConnected(), c.code == 0 || c.code == inet::kServerError);
            EXPECT_EQ(recorder_.logIds(), c.logged);
            for (const auto& event : recorder_.events()) {
                EXPECT_EQ(event.field1, site.server);
                EXPECT_FALSE(event.detail.contains(site.password));
            }
            EXPECT_EQ(recorder_.sounds(), c.sounds);
            EXPECT_EQ(recorder_.tray(), (std::vector<Tray> { Tray::Busy, Tray::Idle }));
            EXPECT_EQ(
                progress_.snapshot().text(JobProgress::Text::Status), StringTable::text(c.status));
            if (c.stopMessage) {
                ASSERT_EQ(recorder_.messages().size(), 1u);
                EXPECT_EQ(recorder_.messages()[0].first, StringTable::errorMessage(c.code));
                EXPECT_EQ(recorder_.messages()[0].second, MessageIcon::Stop);
                EXPECT_TRUE(recorder_.events().back().detail.contains("550"));
            } else {
                EXPECT_TRUE(recorder_.messages().empty());
            }
            if (c.code == 0) {
                EXPECT_EQ(session.batchTotalBytes(), 1234);
                EXPECT_EQ(progress_.snapshot().jobTotal, 1234);
            }
        }
    }
}

TEST_F(ConnectJobTest, DisconnectClosesWhatIsOpenAndAlwaysEndsTheSession)
{
    SKIP_WITHOUT(FtpServer);
    FtpServer server;
    FtpFaults refused;
    refused.refuseLogin = { "*" };
    for (const bool loggedIn : { true, false }) {
        SCOPED_TRACE(loggedIn ? "connected" : "login refused");
        server.setFaults(loggedIn ? FtpFaults {} : refused);
        CTransferSession session(recorder_.services);
        const auto site = siteOf(server);
        EXPECT_EQ(session.connectJob(site).ok(), loggedIn);
        recorder_.clear();
        session.disconnectJob();
        const std::vector<int> expected = loggedIn
            ? std::vector<int> { ids::kLogFtpConnectionClosed, ids::kLogSessionEnded }
            : std::vector<int> { ids::kLogSessionEnded };
        EXPECT_EQ(recorder_.logIds(), expected);
        for (const auto& event : recorder_.events())
            EXPECT_EQ(event.field1, site.server);
        EXPECT_FALSE(session.isConnected());
    }
    // The QUIT of the connected case reached the server.
    EXPECT_TRUE(waitUntil([&] { return server.commandCount("QUIT") == 1; }, 5s));
}

TEST_F(ConnectJobTest, QuickConnectStoresTheTypedValuesOnlyOnSuccess)
{
    SKIP_WITHOUT(FtpServer);
    FtpServer server;
    ASSERT_TRUE(QDir(server.home()).mkdir("in"));
    auto site = siteOf(server, "in");
    {
        CTransferSession session(recorder_.services, &progress_);
        const auto result = session.quickConnect(site);
        ASSERT_TRUE(result.ok()) << result.text().toStdString();
        EXPECT_EQ(session.connection()->currentFolder(), "/in");
    }
    EXPECT_EQ(recorder_.logIds(),
        (std::vector<int> {
            ids::kLogInternetConnectionOk, ids::kLogFtpConnectionOk, ids::kLogChangeDirectoryOk }));
    EXPECT_EQ(recorder_.sounds(), std::vector<Sound> { Sound::ConnectOk });
    EXPECT_EQ(progress_.snapshot().text(JobProgress::Text::Status), "Connected to 127.0.0.1");
    EXPECT_EQ(SettingsStore::get(settings::ftp::kQuickServer), site.server);
    EXPECT_EQ(SettingsStore::get(settings::ftp::kQuickLogin), site.user);
    EXPECT_EQ(SettingsStore::get(settings::ftp::kQuickPasswd), site.password);
    EXPECT_EQ(SettingsStore::get(settings::ftp::kQuickDirec), "in");
    EXPECT_EQ(SettingsStore::get(settings::ftp::kQuickPort), QString::number(server.port()));

    // A failed attempt tells the user and keeps the values of the last good one.
    recorder_.clear();
    site.password = "wrong";
    site.remoteFolder = "elsewhere";
    CTransferSession session(recorder_.services, &progress_);
    EXPECT_EQ(session.quickConnect(site).code, inet::kLoginFailed);
    ASSERT_EQ(recorder_.messages().size(), 1u);
    EXPECT_EQ(recorder_.messages()[0].first, StringTable::errorMessage(inet::kLoginFailed));
    EXPECT_EQ(recorder_.messages()[0].second, MessageIcon::Stop);
    EXPECT_EQ(SettingsStore::get(settings::ftp::kQuickDirec), "in");
    EXPECT_EQ(SettingsStore::get(settings::ftp::kQuickPasswd), "secret");
}

TEST_F(ConnectJobTest, RetryRepeatsAFailedConnectButNotARefusedLogin)
{
    SKIP_WITHOUT(FtpServer);
    FtpServer server;
    FtpFaults stalled;
    stalled.stall["USER"] = FtpFaults::kForever;
    FtpFaults refused;
    refused.refuseLogin = { "*" };
    struct Case {
        const char* name;
        int retries;
        FtpFaults faults;
        int code;
        int logins;
    };
    const Case cases[] = {
        { "stalled, no retry", 0, stalled, inet::kTimeout, 1 },
        { "stalled, one retry", 1, stalled, inet::kTimeout, 2 },
        // A login the server turned down is not tried again.
        { "login refused", 2, refused, inet::kLoginFailed, 1 },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        server.setFaults(c.faults);
        useQuickTimeouts(1, c.retries);
        const int before = server.commandCount("USER");
        CTransferSession session(recorder_.services);
        EXPECT_EQ(session.connectJob(siteOf(server)).code, c.code);
        EXPECT_EQ(server.commandCount("USER") - before, c.logins);
    }
}

TEST_F(ConnectJobTest, TimeoutsRetryAndCacheFlagsComeFromTheSettings)
{
    SettingsStore::set(settings::ftp::kConnectTo, 7);
    SettingsStore::set(settings::ftp::kRecTo, 3);
    SettingsStore::set(settings::ftp::kSendTo, 4);
    SettingsStore::set(settings::ftp::kRecToCtrl, 5);
    SettingsStore::set(settings::ftp::kSendToCtrl, 6);
    SettingsStore::set(settings::ftp::kRetry, 0);
    CTransferSession session(recorder_.services);
    EXPECT_EQ(session.options().connectTimeout, 7000ms);
    EXPECT_EQ(session.options().receiveStall, 3000ms);
    EXPECT_EQ(session.options().sendStall, 4000ms);
    EXPECT_EQ(session.options().replyTimeout, 6000ms);
    EXPECT_EQ(session.options().retries, 0);
    EXPECT_EQ(CTransferSession::errorMessageId(12001), 32877);

    struct Case {
        const char* cache; // null: unset
        const char* reload;
        quint32 flags;
    };
    const Case cases[] = {
        { nullptr, nullptr, CTransferSession::kDontCache | CTransferSession::kReload },
        { "YES", "NO", 0 }, { "NO", "NO", CTransferSession::kDontCache },
        { "YES", "YES", CTransferSession::kReload },
        { "no", "yes", 0 }, // the words are compared exactly
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.cache ? c.cache : "unset") + "/" + (c.reload ? c.reload : ""));
        TempSettings fresh;
        if (c.cache)
            SettingsStore::set(settings::ftp::kCache, c.cache);
        if (c.reload)
            SettingsStore::set(settings::ftp::kReload, c.reload);
        EXPECT_EQ(CTransferSession::cacheFlags(), c.flags);
    }
}

// Every access type against a server that only a direct connection reaches: the environment
// names a proxy that refuses connections.
TEST_F(ConnectJobTest, AccessTypeDecidesTheProxy)
{
    SKIP_WITHOUT(FtpServer);
    FtpServer server;
    RefusingPort closed;
    const auto deadProxy = QByteArray("http://127.0.0.1:") + QByteArray::number(closed.port());
    const ScopedEnv ftpProxy("ftp_proxy", deadProxy);
    const ScopedEnv allProxy("all_proxy", deadProxy);
    const ScopedEnv noProxy("no_proxy", QByteArray());
    const ScopedEnv noProxyUpper("NO_PROXY", QByteArray());

    struct Case {
        const char* access; // null: unset
        const char* proxyName;
        QString proxy; // the proxy the session works out
        int code;
    };
    const auto refusing = QStringLiteral("127.0.0.1:%1").arg(closed.port());
    const Case cases[] = {
        { nullptr, nullptr, {}, inet::kCannotConnect }, // unset means preconfigured
        { "PreconfigAccess", nullptr, {}, inet::kCannotConnect },
        { "directaccess", nullptr, {}, inet::kCannotConnect }, // compared exactly
        { "DirectAccess", nullptr, {}, 0 },
        { "ProxyAccess", "127.0.0.1", refusing, inet::kCannotConnect },
        { "ProxyAccess", nullptr, ":2021", inet::kInvalidProxyRequest },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.access ? c.access : "unset");
        TempSettings fresh;
        useQuickTimeouts();
        if (c.access)
            SettingsStore::set(settings::ftp::kAccessType, c.access);
        if (c.proxyName) {
            SettingsStore::set(settings::ftp::kProxyName, c.proxyName);
            SettingsStore::set(settings::ftp::kProxyPort, closed.port());
        }
        CTransferSession session(recorder_.services);
        const auto result = session.connectJob(siteOf(server));
        EXPECT_EQ(result.code, c.code) << result.text().toStdString();
        EXPECT_EQ(session.options().proxy, c.proxy);
    }
    // The default port of a named proxy.
    SettingsStore::set(settings::ftp::kAccessType, "ProxyAccess");
    SettingsStore::set(settings::ftp::kProxyName, "gate.invalid");
    CTransferSession session(recorder_.services);
    EXPECT_EQ(session.connectJob(siteOf(server)).code, inet::kNameNotResolved);
    EXPECT_EQ(session.options().proxy, "gate.invalid:2021");
}

} // namespace
} // namespace zelto::test
