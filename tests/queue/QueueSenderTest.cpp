// Sending the queue: which items go in which job, where a resent file lands, and a failed
// distribution or copy that is queued, counted up and then resent into place.

#include "queue/QueueSender.h"

#include "DistributionFixture.h"
#include "distribution/WorkerThreads.h"
#include "queue/QueueBookkeeping.h"
#include "queue/QueueResendTimer.h"

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 30s;

TEST(QueueSenderTest, OneGroupPerPairWithAnIdleItem)
{
    // Items "source|destination|status", groups "source|destination|positions": an item being
    // sent goes along with an idle one of its pair, not alone; pairs in the order first met; a
    // host with a blank does not survive the key.
    const std::pair<QStringList, QStringList> cases[] = {
        { { "Local|A|1", "Local|A|0", "Local|B|1" }, { "Local|A|1 2" } },
        { { "Local|A|0", "B|Local|0", "Local|A|0" }, { "Local|A|1 3", "B|Local|2" } },
        { { "Local|my host|0" }, { "Local|my|" } },
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

class QueueResendTest : public DistributionFixture {
protected:
    void run(TransferJob::Setup setup)
    {
        auto job
            = TransferJob::create(std::move(setup), recorder_.services, bookkeeping_, threads_);
        job->start();
        ASSERT_TRUE(ended(job));
    }

    QueueBookkeeping bookkeeping_ { recorder_ };
};

// Under FULL_PATH a failed file's folder is the placed one; the resend must not place it twice.
TEST_F(QueueResendTest, FailedFilesAreQueuedCountedUpAndResentIntoPlace)
{
    EventLoop loop;
    SettingsStore::set(settings::schedule::kResendFail, 1);
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
        bool ended = false;
        QueueSender sender(recorder_.services, threads_, bookkeeping_);
        EXPECT_NE(sender.sendQueue([&] { ended = true; }), 0);
        ASSERT_TRUE(waitUntil([&] { return ended; }, kDeadline));
        EXPECT_EQ(QueueStore().count(), 0);
        if (c.mode == TransferMode::Copy)
            EXPECT_EQ(treeOf(servers_[2]->home() + QStringLiteral("/src")),
                treeOf(servers_[1]->home() + QStringLiteral("/src")));
        else
            EXPECT_EQ(treeOf(servers_[0]->home() + local_.path()), treeOf(local_.path()));
        EXPECT_EQ(sender.sendQueue(), 0); // empty: the caller says 33054
    }
}

} // namespace
} // namespace zelto::test
