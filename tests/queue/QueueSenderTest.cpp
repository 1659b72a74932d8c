// Sending the queue: which items go in which job, where a resent file lands, a failed
// distribution or copy that is queued, counted up and then resent into place, a cut download
// resent whole, and a site whose connection is lost after its first file.

#include "queue/QueueSender.h"

#include "DataFiles.h"
#include "DistributionFixture.h"
#include "distribution/WorkerThreads.h"
#include "ftp/FtpErrors.h"
#include "platform/PrivateProfile.h"
#include "platform/ProcessMark.h"
#include "platform/StringTable.h"
#include "queue/QueueBookkeeping.h"
#include "queue/QueueResendTimer.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include <csignal>
#include <optional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 30s;

TEST(QueueSenderTest, OneGroupPerPairWithAnIdleItem)
{
    // Items "source|destination|status", groups "source|destination|positions": an item being
    // sent goes along with an idle one of its pair, not alone; pairs in the order first met; a
    // host with a blank does not survive the key; a pair with a side missing (items without a
    // section are of this kind) is not sent, since it would go nowhere and come back.
    const std::pair<QStringList, QStringList> cases[] = {
        { { "Local|A|1", "Local|A|0", "Local|B|1" }, { "Local|A|1 2" } },
        { { "Local|A|0", "B|Local|0", "Local|A|0" }, { "Local|A|1 3", "B|Local|2" } },
        { { "Local|my host|0" }, { "Local|my|" } },
        { { "||0", "Local||0", "|A|0", "Local|A|0" }, { "Local|A|4" } },
    };
    for (const auto& [texts, expected] : cases) {
        std::vector<QueueItem> items;
        for (const QString& text : texts) {
            const QStringList parts = text.split(u'|');
            QueueItem& item = items.emplace_back();
            item.position = int(items.size());
            item.source = parts[0];
            item.destination = parts[1];
            item.status = parts[2].toInt();
        }
        QStringList groups;
        for (const QueueSender::Group& group : QueueSender::groupsOf(items)) {
            QStringList positions;
            for (const int position : group.positions)
                positions.append(QString::number(position));
            groups.append(group.source + u'|' + group.destination + u'|' + positions.join(u' '));
        }
        EXPECT_EQ(groups, expected) << texts.join(u' ').toStdString();
    }
}

// The engine places a file below the folder it is given; the folder a transfer failed in was
// placed already.
TEST(QueueSenderTest, ResendFolderUndoesThePlacement)
{
    // The local folder, the remote one the file failed in, the mode, the folder to resend into.
    const std::tuple<const char*, const char*, DirTree, const char*> cases[] = {
        { "/home/me/www/css", "/srv/home/me/www/css", DirTree::FullPath, "/srv/" },
        { "/home/me/www/css", "/srv/css/", DirTree::LastDir, "/srv/" },
        { "C:\\web\\site", "\\pub\\site", DirTree::LastDir, "\\pub\\" },
        { "/x/www", "www", DirTree::LastDir, "" },
        { "/home/me/www", "/srv/www", DirTree::NoPath, "/srv/www" },
        // Failed before it was placed (a folder that could not be made).
        { "/home/me/www", "/", DirTree::LastDir, "/" },
    };
    for (const auto& [localFolder, remoteFolder, mode, expected] : cases) {
        EXPECT_EQ(QueueSender::resendFolder(QString::fromUtf8(localFolder),
                      QString::fromUtf8(remoteFolder), QStringLiteral("a.txt"), mode),
            QString::fromUtf8(expected))
            << localFolder << " in " << remoteFolder;
    }
}

TEST(QueueSenderTest, ResendPeriodFollowsTheSettings)
{
    constexpr auto kShortest = QueueResendTimer::kShortestPeriod;
    // StartQueueProg, ResendTime, the first period and the later ones.
    using std::chrono::milliseconds;
    const std::tuple<int, const char*, milliseconds, milliseconds> cases[] = {
        { 1, "10", 5s, 10min },
        { 0, "10", 10min, 10min },
        { 2, " 3 minutes", 3min, 3min },
        { 0, "0", kShortest, kShortest },
        { 0, "abc", kShortest, kShortest },
        { 0, "-5", kShortest, kShortest },
    };
    for (const auto& [startQueueProg, resendTime, first, later] : cases) {
        const QString time = QString::fromLatin1(resendTime);
        EXPECT_EQ(QueueResendTimer::firstPeriodOf(startQueueProg, time), first) << resendTime;
        EXPECT_EQ(QueueResendTimer::periodOf(time), later) << resendTime;
    }
}

// Failed files go to the queue.
class QueueResendTest : public DistributionFixture {
protected:
    void SetUp() override
    {
        DistributionFixture::SetUp();
        SettingsStore::set(settings::schedule::kResendFail, 1);
    }
    void run(TransferJob::Setup setup)
    {
        auto job
            = TransferJob::create(std::move(setup), recorder_.services, bookkeeping_, threads_);
        job->start();
        ASSERT_TRUE(ended(job));
    }
    // Sends the queue: whether it was empty, or nothing when the send did not end in time.
    std::optional<bool> sendQueue()
    {
        std::optional<bool> empty;
        QueueSender sender(recorder_.services, threads_, bookkeeping_);
        sender.sendQueue([&](bool queueEmpty) { empty = queueEmpty; });
        (void)waitUntil([&] { return empty.has_value(); }, kDeadline);
        return empty;
    }

    EventLoop loop_; // the send ends through a queued call
    QueueBookkeeping bookkeeping_ { recorder_, recorder_ };
};

// A ResendTime changed in the options applies at once, not after the next send.
TEST_F(QueueResendTest, ChangedResendTimeRearmsTheTimerAtOnce)
{
    SettingsStore::set(settings::schedule::kResendTime, QStringLiteral("10"));
    QueueSender sender(recorder_.services, threads_, bookkeeping_);
    QueueResendTimer timer(sender);
    timer.start();
    EXPECT_EQ(timer.period(), 10min);
    SettingsStore::set(settings::schedule::kResendTime, QStringLiteral("3"));
    timer.resendTimeChanged();
    EXPECT_EQ(timer.period(), 3min);
}

// Under FULL_PATH a failed file's folder is the placed one; the resend must not place it twice.
TEST_F(QueueResendTest, FailedFilesAreQueuedCountedUpAndResentIntoPlace)
{
    // The local tree, also on server 1 below "/src", as the source of a copy to server 2.
    for (const FileEntry& file : fileSet()) {
        const QString copied = servers_[1]->home() + QStringLiteral("/src")
            + QDir(local_.path()).relativeFilePath(file.localFolder).prepend(u'/');
        ASSERT_TRUE(QDir().mkpath(copied));
        ASSERT_TRUE(
            QFile::copy(file.localFolder + u'/' + file.localName, copied + u'/' + file.localName));
    }
    const struct {
        const char* what;
        TransferMode mode;
        int server; // refuses the command, then takes the resend
        const char* refused;
        const char* method;
    } cases[] = {
        { "distribution, STOR refused", TransferMode::DistributionPut, 0, "STOR", "ZELTO_PUT" },
        { "distribution, MKD refused", TransferMode::DistributionPut, 0, "MKD", "ZELTO_PUT" },
        { "copy, STOR refused", TransferMode::Copy, 2, "STOR", "ZELTO_XFER" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        for (const auto& server : servers_)
            QDir(server->home() + local_.path()).removeRecursively();
        QDir(servers_[2]->home() + QStringLiteral("/src")).removeRecursively();
        TransferJob::Setup setup;
        setup.mode = c.mode;
        setup.files = fileSet();
        setup.sites = { site(c.mode == TransferMode::Copy ? 1 : 0) };
        if (c.mode == TransferMode::Copy) {
            setup.target = site(2);
            for (FileEntry& file : setup.files)
                file.localFolder = QStringLiteral("/src/")
                    + QDir(local_.path()).relativeFilePath(file.localFolder);
        }
        servers_[c.server]->setFaults({ .refuse = { QString::fromLatin1(c.refused) } });
        for (int attempt = 1; attempt <= 2; ++attempt) {
            run(setup);
            const auto items = QueueStore().loadAll();
            ASSERT_EQ(items.size(), setup.files.size());
            for (const QueueItem& item : items) {
                EXPECT_EQ(item.numTimes, attempt);
                EXPECT_EQ(item.ftpMethod, c.method);
            }
        }

        servers_[c.server]->setFaults({});
        ASSERT_EQ(sendQueue(), false);
        EXPECT_EQ(QueueStore().count(), 0);
        if (c.mode == TransferMode::Copy)
            EXPECT_EQ(treeOf(servers_[2]->home() + QStringLiteral("/src")),
                treeOf(servers_[1]->home() + QStringLiteral("/src")));
        else
            EXPECT_EQ(treeOf(servers_[0]->home() + local_.path()), treeOf(local_.path()));
        EXPECT_EQ(sendQueue(), true); // the caller says so: ids::kQueueEmptyOrSending
    }
}

// A download cut by the server leaves nothing under the file's name: the resend, with the
// default Overwrite "NO", is not refused by a truncated file and brings the whole file.
TEST_F(QueueResendTest, ACutDownloadIsResentWhole)
{
    SettingsStore::set(settings::config::kFtpDirTree, settings::config::kDirTreeNoPath);
    // In active mode the server's 426 can overtake the data it cut.
    SettingsStore::set(settings::ftp::kPassive, "YES");
    constexpr qint64 kSize = 1'000'000;
    const QString remote = servers_[0]->home() + QStringLiteral("/big.bin");
    ASSERT_TRUE(makeFile(remote, kSize, 21));
    QTemporaryDir into;
    FileEntry file;
    file.remoteFolder = QStringLiteral("/");
    file.remoteName = file.localName = QStringLiteral("big.bin");
    file.localFolder = into.path();
    file.size = kSize;
    TransferJob::Setup setup;
    setup.mode = TransferMode::Get;
    setup.files = { file };
    setup.sites = { site(0) };
    servers_[0]->setFaults({ .closeDataAfter = 100'000, .closeDataOn = { "RETR" } });
    run(setup);
    ASSERT_EQ(QueueStore().count(), 1);
    EXPECT_EQ(QDir(into.path()).entryList(QDir::Files | QDir::Hidden), QStringList {});

    servers_[0]->setFaults({});
    ASSERT_EQ(sendQueue(), false);
    EXPECT_EQ(QueueStore().count(), 0);
    EXPECT_TRUE(sameBytes(remote, into.filePath(QStringLiteral("big.bin"))));
    EXPECT_EQ(QDir(into.path()).entryList(QDir::Files | QDir::Hidden),
        QStringList { QStringLiteral("big.bin") });
}

// A run killed while it sent leaves its items marked as being sent. A later send takes those
// whose marking process is gone as idle, and leaves those of a live process, and those marked by
// an older version, which named no process.
TEST_F(QueueResendTest, ItemsLeftByAKilledRunAreSentAgain)
{
    SettingsStore::set(settings::config::kFtpDirTree, settings::config::kDirTreeNoPath);
    // A real process, killed as a run would be: its mark names a process that is gone.
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::pause();
        ::_exit(0);
    }
    const QString deadMark = ProcessMark::of(child);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ASSERT_FALSE(deadMark.isEmpty());

    std::vector<FileEntry> files(1);
    files[0].localFolder = localPath(QStringLiteral("www"));
    files[0].localName = files[0].remoteName = QStringLiteral("index.html");
    files[0].remoteFolder = QStringLiteral("/");
    files[0].size = 1200;
    const JobSite target = site(0);
    const QueueItem item
        = QueueBookkeeping::itemOf({ TransferMode::Put, target, nullptr, files }, files.front());
    const struct {
        const char* destination;
        QString mark; // empty: no mark
    } cases[] = {
        { "127.0.0.1", deadMark }, // sent
        { "live.invalid", ProcessMark::current() },
        { "older.invalid", QString() },
    };
    QueueStore store;
    ASSERT_TRUE(store.update([&](QueueBatch& batch) {
        for (const auto& c : cases) {
            QueueItem queued = item;
            queued.destination = QString::fromLatin1(c.destination);
            batch.appendFailed(queued);
            batch.markSending(batch.count());
        }
    }));
    for (int position = 1; position <= 3; ++position) {
        const QString section = QStringLiteral("QUEUE%1").arg(position);
        const QString& mark = cases[position - 1].mark;
        ASSERT_TRUE(mark.isEmpty()
                ? PrivateProfile::deleteKey(store.file(), section, QStringLiteral("SendingBy"))
                : PrivateProfile::writeString(
                    store.file(), section, QStringLiteral("SendingBy"), mark));
    }

    ASSERT_TRUE(sendQueue().has_value());
    const auto left = store.loadAll();
    ASSERT_EQ(left.size(), 2u);
    for (const QueueItem& still : left) {
        SCOPED_TRACE(still.destination.toStdString());
        EXPECT_EQ(still.status, QueueItem::kSending);
        EXPECT_NE(still.destination, "127.0.0.1");
    }
    EXPECT_TRUE(sameBytes(files[0].localFolder + QStringLiteral("/index.html"),
        servers_[0]->home() + QStringLiteral("/index.html")));
}

// The disk under the data folder is full (a file-size limit on this process stands for it, as
// no test may mount a small disk without root): the failed file that cannot be queued, and a
// send that cannot mark its items, are told, naming what is lost, and nothing is sent unmarked.
TEST_F(QueueResendTest, AQueueThatCannotBeWrittenIsNeverSilent)
{
    QueueStore store;
    // Items of some size, so that the limit lies above every other file the test writes.
    writeWaitingQueue(store.file(), 100);
    const qint64 size = QFileInfo(store.file()).size();
    std::vector<FileEntry> files(1);
    files[0].localFolder = QStringLiteral("/data");
    files[0].localName = files[0].remoteName = QStringLiteral("lost.bin");
    files[0].result = inet::kServerError;
    files[0].message = QStringLiteral("refused");

    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN); // a write past the limit fails instead
    rlimit old {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    rlimit limited = old;
    limited.rlim_cur = rlim_t(size + 8);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
    const JobSite failedSite = site(0);
    bookkeeping_.siteFinished({ TransferMode::Put, failedSite, nullptr, files });
    const auto empty = sendQueue();
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);

    ASSERT_EQ(empty, false);
    EXPECT_EQ(QFileInfo(store.file()).size(), size); // the queue stays as it was
    EXPECT_EQ(store.loadAll().back().status, QueueItem::kIdle);
    const auto messages = recorder_.messages();
    ASSERT_EQ(messages.size(), 2u);
    EXPECT_TRUE(messages[0].first.contains(store.file())) << messages[0].first.toStdString();
    EXPECT_TRUE(messages[0].first.contains(QStringLiteral("Not queued: /data/lost.bin")))
        << messages[0].first.toStdString();
    EXPECT_TRUE(messages[1].first.contains(QStringLiteral("none was sent")))
        << messages[1].first.toStdString();
    EXPECT_EQ(bookkeeping_.notRecorded(), QStringList { messages[0].first });
}

// Without a second login the site's other files fail at once, with the reason the connection was
// lost, and go to the queue like any failed file.
TEST_F(QueueResendTest, ALostConnectionEndsTheSitesOtherFilesWithItsReason)
{
    useQuickTimeouts(1);
    // In active mode a held STOR reply would be waited out as the server not connecting back.
    SettingsStore::set(settings::ftp::kPassive, "YES");
    FtpFaults stalled;
    stalled.stall[QStringLiteral("STOR")] = FtpFaults::kForever;
    stalled.spareFiles = 1;
    FtpFaults dropped;
    dropped.drop = { QStringLiteral("STOR") };
    dropped.spareFiles = 1;
    const struct {
        const char* what;
        int server;
        FtpFaults faults;
        int code;
    } cases[] = {
        { "the server stops answering", 0, stalled, inet::kTimeout },
        { "the server drops the connection", 1, dropped, inet::kConnectionTerminated },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ASSERT_TRUE(QueueStore().clear());
        servers_[c.server]->setFaults(c.faults);
        TransferJob::Setup setup;
        setup.files = fileSet();
        setup.sites = { site(c.server) };
        run(setup);

        EXPECT_EQ(count(c.server, "USER"), 1);
        EXPECT_EQ(count(c.server, "STOR"), 2);
        const auto queued = QueueStore().loadAll();
        ASSERT_EQ(queued.size(), setup.files.size() - 1);
        for (const QueueItem& item : queued) {
            EXPECT_EQ(item.reason, queued.front().reason);
            EXPECT_TRUE(item.reason.startsWith(StringTable::errorMessage(c.code)))
                << item.reason.toStdString();
        }
    }
}

} // namespace
} // namespace zelto::test
