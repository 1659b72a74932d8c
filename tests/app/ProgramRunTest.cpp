#include "ProgramRun.h"

#include "FtpServer.h"
#include "TempSettings.h"
#include "TestFiles.h"
#include "app/SettingsStore.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "queue/QueueStore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace zelto {
namespace {

// Runs the real program, its settings and data in `home`, with `display` as its only display (none
// when empty).
test::ProgramResult runIn(const QString& home, const QStringList& arguments, const QString& display)
{
    QProcessEnvironment env;
    if (!display.isEmpty())
        env.insert(QStringLiteral("DISPLAY"), display);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/config"));
    env.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/data"));
    return test::runProgram(QStringLiteral(ZELTO_PROGRAM), arguments, env, home);
}

TEST(ProgramRun, HeadlessStarts)
{
    QTemporaryDir home;
    const QString h = home.path();
    const QString linkMissing = StringTable::text(ids::kLinkNotFound);

    struct Case {
        const char* what;
        QStringList arguments;
        int exitCode;
        QString inOut;
        QString inErr;
        QString display = {};
    };
    const Case cases[] = {
        { "version", { "--version" }, 0, QStringLiteral("Zelto 2.05"), {} },
        { "help wins over work", { "-l", "nightly", "--help" }, 0, QStringLiteral("-b FILE.cmd"),
            {} },
        { "nothing asked", {}, 0, h + QStringLiteral("/config/Pellmoor/Zelto.conf"), {} },
        { "missing link", { "-l", "nightly" }, 2, {}, linkMissing },
        // A display that does not answer would abort a windowed start.
        { "headless flag with display", { "--headless", "-l", "nightly" }, 2, {}, linkMissing,
            ":97" },
    };
    for (const Case& c : cases) {
        const test::ProgramResult run = runIn(h, c.arguments, c.display);
        EXPECT_EQ(run.exitCode, c.exitCode) << c.what << "\n" << run.err.toStdString();
        EXPECT_TRUE(run.out.contains(c.inOut)) << c.what << ": " << run.out.toStdString();
        EXPECT_TRUE(run.err.contains(c.inErr)) << c.what << ": " << run.err.toStdString();
    }
}

// -q sends the queue once; the exit status tells whether the queue is empty at the end.
TEST(ProgramRun, QueueRunEndsWithTheQueue)
{
    if (const auto reason = test::FtpServer::unavailableReason())
        GTEST_SKIP() << reason->toStdString();
    const test::TempSettings home;
    SettingsStore::set(settings::schedule::kResendFail, 1);
    SettingsStore::set(settings::ftp::kAccessType, QStringLiteral("DirectAccess"));
    test::FtpServer server;
    const QTemporaryDir local;
    ASSERT_TRUE(test::makeFile(local.filePath(QStringLiteral("a.txt")), 5000, 1));
    QueueItem item;
    item.localName = item.remoteName = QStringLiteral("a.txt");
    item.locDirFile = local.path();
    item.source = QStringLiteral("Local");
    item.destination = test::FtpServer::host();
    item.login = server.users().front().name;
    item.password = server.users().front().password;
    item.port = QString::number(server.port());
    QueueStore store;
    store.appendFailed(item);

    test::FtpFaults refused;
    refused.refuseLogin = { QStringLiteral("*") };
    const struct {
        const char* what;
        test::FtpFaults faults;
        int exitCode;
        int left;
        QString inOut;
    } cases[] = {
        { "the login is refused", refused, 1, 1,
            QStringLiteral("Queue: 0 sent, 1 failed, 1 left") },
        { "the file is sent", {}, 0, 0, QStringLiteral("Queue: 1 sent, 0 failed, 0 left") },
        { "nothing queued", {}, 0, 0, StringTable::text(ids::kQueueEmptyOrSending) },
    };
    for (const auto& c : cases) {
        server.setFaults(c.faults);
        const test::ProgramResult run = runIn(home.root(), { QStringLiteral("-q") }, {});
        EXPECT_EQ(run.exitCode, c.exitCode) << c.what << "\n" << run.err.toStdString();
        EXPECT_TRUE(run.out.contains(c.inOut)) << c.what << ":\n" << run.out.toStdString();
        EXPECT_EQ(store.count(), c.left) << c.what;
    }
    EXPECT_TRUE(test::sameBytes(
        local.filePath(QStringLiteral("a.txt")), server.home() + QStringLiteral("/a.txt")));
}

} // namespace
} // namespace zelto
