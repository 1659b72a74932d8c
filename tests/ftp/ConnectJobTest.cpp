// The connect and disconnect steps of a job: what they log, sound, show and store, against real
// servers.

#include "FtpTestKit.h"
#include "ftp/CTransferSession.h"
#include "ftp/FtpErrors.h"
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

using ConnectJobTest = FtpTest;

TEST_F(ConnectJobTest, EventsSoundsAndTrayInTheJobsOrderAndTheEndOfTheSession)
{
    FtpServer server;
    ASSERT_TRUE(QDir(server.home()).mkdir("sub"));

    struct Case {
        const char* name;
        QString folder;
        QString server; // empty: the fixture's
        QStringList refuseLogin;
        int code;
        std::vector<int> logged;
    };
    const int netOk = ids::kLogInternetConnectionOk;
    const int ftpOk = ids::kLogFtpConnectionOk;
    const Case cases[] = {
        { "success with folder", "sub", {}, {}, 0, { netOk, ftpOk, ids::kLogChangeDirectoryOk } },
        { "success without folder", {}, {}, {}, 0, { netOk, ftpOk } },
        // The failed login itself is not logged: only the session's record stands.
        { "refused login", {}, {}, { "*" }, inet::kLoginFailed, { netOk } },
        // Logged in, so connected; the refused folder is told with the server's reply.
        { "missing folder", "nope", {}, {}, inet::kServerError,
            { netOk, ftpOk, ids::kLogChangeDirectoryFailed } },
        { "unknown host", {}, "no-such-host.invalid", {}, inet::kNameNotResolved, { netOk } },
        // A name that cannot form an address fails the session itself.
        { "invalid server name", {}, "bad host", {}, inet::kInvalidUrl,
            { ids::kLogInternetConnectionFailed } },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        server.setFaults({ .refuseLogin = c.refuseLogin });
        recorder_.clear();
        auto site = siteOf(server, c.folder, 1234);
        if (!c.server.isEmpty())
            site.server = c.server;
        CTransferSession session(recorder_.services, &progress_);
        const auto result = session.connectJob(site);
        EXPECT_EQ(result.code, c.code) << result.text().toStdString();
        const bool loggedIn = c.code == 0 || c.code == inet::kServerError;
        EXPECT_EQ(session.isConnected(), loggedIn);
        EXPECT_EQ(recorder_.logIds(), c.logged);
        for (const auto& event : recorder_.events()) {
            EXPECT_EQ(event.field1, site.server);
            EXPECT_FALSE(event.detail.contains(site.password));
        }
        EXPECT_EQ(
            recorder_.sounds(), std::vector { loggedIn ? Sound::ConnectOk : Sound::ConnectFail });
        EXPECT_EQ(recorder_.tray(), (std::vector { Tray::Busy, Tray::Idle }));
        EXPECT_EQ(progress_.snapshot().text(JobProgress::Text::Status),
            StringTable::text(loggedIn ? ids::kConnected : ids::kConnecting));
        using Message = std::pair<QString, MessageIcon>;
        const bool told = c.code == inet::kServerError;
        EXPECT_EQ(recorder_.messages(),
            told ? std::vector { Message(StringTable::errorMessage(c.code), MessageIcon::Stop) }
                 : std::vector<Message> {});
        EXPECT_TRUE(!told || recorder_.events().back().detail.contains("550"));
        if (c.code == 0) {
            EXPECT_EQ(session.reporter().batchTotalBytes(), 1234);
            EXPECT_EQ(progress_.snapshot().jobTotal, 1234);
        }
        // The disconnect closes what is open and always ends the session.
        recorder_.clear();
        session.disconnectJob();
        EXPECT_EQ(recorder_.logIds(),
            (loggedIn ? std::vector { ids::kLogFtpConnectionClosed, ids::kLogSessionEnded }
                      : std::vector { ids::kLogSessionEnded }));
        EXPECT_FALSE(session.isConnected());
    }
    // The QUIT of each session that logged in reached the server.
    EXPECT_TRUE(waitUntil([&] { return server.commandCount("QUIT") == 3; }, 5s));
}

// The session's events are those of connectJob (above); what quick connect adds is the store.
TEST_F(ConnectJobTest, QuickConnectStoresTheTypedValuesOnlyOnSuccess)
{
    FtpServer server;
    ASSERT_TRUE(QDir(server.home()).mkdir("in"));
    auto site = siteOf(server, "in");
    {
        CTransferSession session(recorder_.services, &progress_);
        const auto result = session.quickConnect(site);
        ASSERT_TRUE(result.ok()) << result.text().toStdString();
        EXPECT_EQ(session.connection()->currentFolder(), "/in");
    }
    const auto stored = [] {
        using namespace settings::ftp;
        return QStringList { SettingsStore::get(kQuickServer), SettingsStore::get(kQuickLogin),
            SettingsStore::get(kQuickPasswd), SettingsStore::get(kQuickDirec),
            SettingsStore::get(kQuickPort) };
    };
    const QStringList good { site.server, site.user, site.password, "in",
        QString::number(site.port) };
    EXPECT_EQ(stored(), good);

    // A failed attempt tells the user and keeps the values of the last good one.
    recorder_.clear();
    site.password = "wrong";
    site.remoteFolder = "elsewhere";
    CTransferSession session(recorder_.services, &progress_);
    EXPECT_EQ(session.quickConnect(site).code, inet::kLoginFailed);
    EXPECT_EQ(recorder_.messages(),
        (std::vector {
            std::pair(StringTable::errorMessage(inet::kLoginFailed), MessageIcon::Stop) }));
    EXPECT_EQ(stored(), good);

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
    FtpServer server;
    const FtpFaults stalled { .stall = { { "USER", FtpFaults::kForever } } };
    const FtpFaults refused { .refuseLogin = { "*" } };
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

// Every access type against a server that only a direct connection reaches: the environment
// names a proxy that refuses connections.
TEST_F(ConnectJobTest, AccessTypeDecidesTheProxy)
{
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
