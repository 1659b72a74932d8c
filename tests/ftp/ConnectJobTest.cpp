// The connect and disconnect steps of a job: what they log, sound, show and store, against real
// servers.

#include "FtpTestKit.h"
#include "ftp/CTransferSession.h"
#include "ftp/FtpErrors.h"
#include "ftp/JobProgress.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QDir>
#include <QScopeGuard>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;
using Sound = SoundEvent;
using Tray = TrayState;

// Sets (or, for a null value, unsets) an environment variable until the end of the scope.
[[nodiscard]] auto scopedEnv(const char* name, const QByteArray& value)
{
    auto restore = qScopeGuard([name, old = qgetenv(name), had = qEnvironmentVariableIsSet(name)] {
        had ? qputenv(name, old) : qunsetenv(name);
    });
    value.isNull() ? qunsetenv(name) : qputenv(name, value);
    return restore;
}

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

    struct Case {
        const char* name;
        QString folder;
        QString server; // empty: the fixture's
        QStringList refuseLogin;
        int code;
        std::vector<int> logged;
        Sound sound;
        bool stopMessage;
        int status;
    };
    const auto connected = ids::kConnected;
    const auto connecting = ids::kConnecting;
    const Case cases[] = {
        { "success with folder", "sub", {}, {}, 0,
            { ids::kLogInternetConnectionOk, ids::kLogFtpConnectionOk, ids::kLogChangeDirectoryOk },
            Sound::ConnectOk, false, connected },
        { "success without folder", {}, {}, {}, 0,
            { ids::kLogInternetConnectionOk, ids::kLogFtpConnectionOk }, Sound::ConnectOk, false,
            connected },
        // The failed login itself is not logged: only the session's record stands.
        { "refused login", {}, {}, { "*" }, inet::kLoginFailed, { ids::kLogInternetConnectionOk },
            Sound::ConnectFail, false, connecting },
        { "missing folder", "nope", {}, {}, inet::kServerError,
            { ids::kLogInternetConnectionOk, ids::kLogFtpConnectionOk,
                ids::kLogChangeDirectoryFailed },
            Sound::ConnectOk, true, connected },
        { "unknown host", {}, "no-such-host.invalid", {}, inet::kNameNotResolved,
            { ids::kLogInternetConnectionOk }, Sound::ConnectFail, false, connecting },
        // A name that cannot form an address fails the session itself.
        { "invalid server name", {}, "bad host", {}, inet::kInvalidUrl,
            { ids::kLogInternetConnectionFailed }, Sound::ConnectFail, false, connecting },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FtpFaults faults;
        faults.refuseLogin = c.refuseLogin;
        server.setFaults(faults);
        recorder_.clear();
        auto site = siteOf(server, c.folder, 1234);
        if (!c.server.isEmpty())
            site.server = c.server;
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
            EXPECT_EQ(recorder_.sounds(), std::vector<Sound> { c.sound });
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
                EXPECT_EQ(session.reporter().batchTotalBytes(), 1234);
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

    // A store that cannot be written (a file-size limit stops every write): the connection
    // stands, and the user is told that its values were not kept.
    recorder_.clear();
    site.password = "secret";
    site.remoteFolder.clear();
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN); // a write past the limit fails instead
    rlimit old {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    rlimit none = old;
    none.rlim_cur = 0;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
    const auto kept = CTransferSession(recorder_.services, &progress_).quickConnect(site);
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_TRUE(kept.ok()) << kept.text().toStdString();
    ASSERT_EQ(recorder_.messages().size(), 1u);
    EXPECT_TRUE(recorder_.messages()[0].first.contains(SettingsStore::location()));
    EXPECT_EQ(recorder_.messages()[0].second, MessageIcon::Warning);
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

TEST_F(ConnectJobTest, TimeoutsAndRetryComeFromTheSettings)
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
}

// Every access type against a server that only a direct connection reaches: the environment
// names a proxy that refuses connections.
TEST_F(ConnectJobTest, AccessTypeDecidesTheProxy)
{
    SKIP_WITHOUT(FtpServer);
    FtpServer server;
    RefusingPort closed;
    const auto deadProxy = QByteArray("http://127.0.0.1:") + QByteArray::number(closed.port());
    const auto ftpProxy = scopedEnv("ftp_proxy", deadProxy);
    const auto allProxy = scopedEnv("all_proxy", deadProxy);
    const auto noProxy = scopedEnv("no_proxy", QByteArray());
    const auto noProxyUpper = scopedEnv("NO_PROXY", QByteArray());

    struct Case {
        const char* access; // null: unset
        const char* proxyName;
        quint16 proxyPort; // 0: unset
        QString proxy; // the proxy the session works out
        int code;
    };
    const auto refusing = QStringLiteral("127.0.0.1:%1").arg(closed.port());
    const Case cases[] = {
        { nullptr, nullptr, 0, {}, inet::kCannotConnect }, // unset means preconfigured
        { "PreconfigAccess", nullptr, 0, {}, inet::kCannotConnect },
        { "directaccess", nullptr, 0, {}, inet::kCannotConnect }, // compared exactly
        { "DirectAccess", nullptr, 0, {}, 0 },
        { "ProxyAccess", "127.0.0.1", closed.port(), refusing, inet::kCannotConnect },
        { "ProxyAccess", nullptr, 0, ":2021", inet::kInvalidProxyRequest },
        { "ProxyAccess", "gate.invalid", 0, "gate.invalid:2021", inet::kNameNotResolved },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(
            std::string(c.access ? c.access : "unset") + " " + (c.proxyName ? c.proxyName : ""));
        TempSettings fresh;
        useQuickTimeouts();
        if (c.access)
            SettingsStore::set(settings::ftp::kAccessType, c.access);
        if (c.proxyName)
            SettingsStore::set(settings::ftp::kProxyName, c.proxyName);
        if (c.proxyPort)
            SettingsStore::set(settings::ftp::kProxyPort, c.proxyPort);
        CTransferSession session(recorder_.services);
        const auto result = session.connectJob(siteOf(server));
        EXPECT_EQ(result.code, c.code) << result.text().toStdString();
        EXPECT_EQ(session.options().proxy, c.proxy);
    }
}

} // namespace
} // namespace zelto::test
