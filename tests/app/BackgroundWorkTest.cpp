// The work an interactive run keeps going beside its windows: the scheduler starting a script and
// a link at the clock's minute, and the end of their jobs reaching the queue.

#include "app/BackgroundWork.h"

#include "DataFiles.h"
#include "SilentPlayer.h"
#include "TempSettings.h"
#include "TestWait.h"
#include "app/ProgramServices.h"
#include "ftp/FtpErrors.h"
#include "platform/ConsoleNotifier.h"
#include "platform/StringTable.h"
#include "queue/QueueStore.h"
#include "scheduler/ScheduleStore.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

// Link `name` sends `file` of `folder` to the server, logging in with `password`.
void makeLink(const QString& name, const FtpServer& server, const QString& password,
    const QString& folder, const QString& file)
{
    const QString list = DataFolders::files() + u'/' + name + QStringLiteral("/flist.ini");
    const QString profile = DataFolders::profiles() + u'/' + name + QStringLiteral(".ini");
    writeList(list, { folder + u'|' + file });
    writeProfile(profile, server, password);
    writeLink(DataFolders::linkFile(name), { profile }, list);
}

TEST(BackgroundWorkTest, TheSchedulerStartsScriptsAndLinksWhoseFailuresAreQueued)
{
    SKIP_WITHOUT(FtpServer);
    EventLoop loop;
    TempSettings settings;
    SettingsStore::set(settings::schedule::kResendFail, 1);
    FtpServer server;
    QTemporaryDir local;
    const QString folder = local.path();
    ASSERT_TRUE(makeFile(folder + QStringLiteral("/linked.bin"), 70'000, 1));
    ASSERT_TRUE(makeFile(folder + QStringLiteral("/scripted.bin"), 50'000, 2));
    makeLink(QStringLiteral("web"), server, {}, folder, QStringLiteral("linked.bin"));
    // The queue knows an item by its names and hosts, so the refused file must differ from the
    // one sent to the same host, which would take it out again.
    ASSERT_TRUE(makeFile(folder + QStringLiteral("/refused.bin"), 10, 3));
    makeLink(QStringLiteral("refused"), server, QStringLiteral("wrong"), folder,
        QStringLiteral("refused.bin"));
    const QString script = DataFolders::base() + QStringLiteral("/put.cmd");
    const auto& user = server.users().front();
    writeFile(script,
        QStringLiteral("open srv %1 %2 %3 %4\nput srv %5/scripted.bin\nclose srv\n")
            .arg(FtpServer::host(), user.name, user.password)
            .arg(server.port())
            .arg(folder)
            .toUtf8());

    std::vector<ScheduleEntry> entries;
    for (const char* value : { "put.cmd Daily ---- 07:30 On", "web Daily ---- 07:30 On",
             "refused Daily ---- 07:30 On", "later.cmd Daily ---- 07:31 On" })
        entries.push_back(ScheduleEntry::parse(QString::fromLatin1(value)));
    ScheduleStore::writeEntries(entries);

    ConsoleNotifier notifier;
    SilentPlayer player;
    ProgramServices services(notifier, player);
    BackgroundWork work(services, [] { return QDateTime(QDate(2026, 11, 21), QTime(7, 30)); });
    // A windowed run shows each script it starts: here the path the window would name.
    QStringList shown;
    work.setScriptStarting([&](const QString& path, auto, auto) { shown << path; });
    work.scheduler().checkSchedule();
    EXPECT_EQ(work.runningLinks(), 2u);
    EXPECT_EQ(work.runningScripts(), 1u);
    EXPECT_EQ(shown, QStringList { script });

    ASSERT_TRUE(waitUntil([&] { return work.runningLinks() == 0 && work.runningScripts() == 0; },
        std::chrono::seconds(30)));
    EXPECT_TRUE(sameBytes(
        folder + QStringLiteral("/linked.bin"), server.home() + QStringLiteral("/linked.bin")));
    EXPECT_TRUE(sameBytes(
        folder + QStringLiteral("/scripted.bin"), server.home() + QStringLiteral("/scripted.bin")));
    // The refused site's file waits in the queue; the one sent is not there.
    const auto queued = QueueStore().loadAll();
    ASSERT_EQ(queued.size(), 1u) << queued.back().localName.toStdString() << ": "
                                 << queued.back().reason.toStdString();
    EXPECT_EQ(queued[0].localName, QStringLiteral("refused.bin"));
    EXPECT_EQ(queued[0].numTimes, 1);
    // A file never tried carries the reason of its site's failed connect.
    EXPECT_TRUE(queued[0].reason.startsWith(StringTable::errorMessage(inet::kLoginFailed)))
        << queued[0].reason.toStdString();
}

} // namespace
} // namespace zelto::test
