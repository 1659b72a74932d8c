#include "ProgramRun.h"

#include "FtpServer.h"
#include "FtpTestKit.h"
#include "TempSettings.h"
#include "TestFiles.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "queue/QueueStore.h"
#include "settings/SettingsStore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace zelto {
namespace {

// Runs the real program in this process's settings and data folders (those of its TempSettings),
// with `display` as its only display (none when empty), from the temporary root.
test::ProgramResult run(
    const test::TempSettings& home, const QStringList& arguments, const QString& display = {})
{
    QProcessEnvironment env;
    if (!display.isEmpty())
        env.insert(QStringLiteral("DISPLAY"), display);
    return test::runProgram(QStringLiteral(ZELTO_PROGRAM), arguments, env, home.root());
}

TEST(ProgramRun, HeadlessStarts)
{
    const test::TempSettings home;
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
        { "nothing asked", {}, 0, home.settingsFile(), {} },
        { "missing link", { "-l", "nightly" }, 2, {}, linkMissing },
        // A display that does not answer would abort a windowed start.
        { "headless flag with display", { "--headless", "-l", "nightly" }, 2, {}, linkMissing,
            ":97" },
    };
    for (const Case& c : cases) {
        const test::ProgramResult result = run(home, c.arguments, c.display);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.what << "\n" << result.err.toStdString();
        EXPECT_TRUE(result.out.contains(c.inOut)) << c.what << ": " << result.out.toStdString();
        EXPECT_TRUE(result.err.contains(c.inErr)) << c.what << ": " << result.err.toStdString();
    }
}

// -q sends the queue once; the exit status tells whether the queue is empty at the end.
TEST(ProgramRun, QueueRunEndsWithTheQueue)
{
    SKIP_WITHOUT(test::FtpServer);
    const test::TempSettings home;
    SettingsStore::set(settings::schedule::kResendFail, 1);
    test::useDirectAccess();
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

    const test::FtpFaults refused { .refuseLogin = { "*" } };
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
        const test::ProgramResult result = run(home, { QStringLiteral("-q") });
        EXPECT_EQ(result.exitCode, c.exitCode) << c.what << "\n" << result.err.toStdString();
        EXPECT_TRUE(result.out.contains(c.inOut)) << c.what << ":\n" << result.out.toStdString();
        EXPECT_EQ(store.count(), c.left) << c.what;
    }
    EXPECT_TRUE(test::sameBytes(
        local.filePath(QStringLiteral("a.txt")), server.home() + QStringLiteral("/a.txt")));
}

} // namespace
} // namespace zelto
