// The Standard FTP screen's transfers beyond a plain selection, against a fixture server: the
// wildcard get and put, folders dropped whole or left out as the settings say, and a get onto a
// disk with no room left.

#include "DistributionFixture.h"
#include "TestNotifier.h"
#include "distribution/WorkerThreads.h"
#include "distribution/ui/BrowserTransfers.h"
#include "distribution/ui/CRemFilesView.h"
#include "distribution/ui/RemoteHalf.h"
#include "distribution/ui/StandardFtpScreen.h"
#include "ftp/FtpResult.h"
#include "settings/SettingsKeys.h"
#include "widgets/CDirView.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

// Every entry under `root`, folders with a trailing "/", sorted.
QStringList entriesUnder(const QString& root)
{
    QStringList names;
    QDirIterator it(
        root, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        names.append(QDir(root).relativeFilePath(path) + (it.fileInfo().isDir() ? "/" : ""));
    }
    names.sort();
    return names;
}

class StandardFtpTransfersTest : public FtpTest {
protected:
    StandardFtpTransfersTest() : FtpTest(5) { }

    void SetUp() override
    {
        FtpTest::SetUp();
        if (IsSkipped())
            return;
        server_ = std::make_unique<FtpServer>();
        screen_ = std::make_unique<StandardFtpScreen>(
            recorder_.services, notifier_, threads_, transfers_);
        screen_->remote()->setPrompt([this](const QString&, const QString&, const QString& text) {
            prefills_.append(text);
            return answers_.empty() ? std::nullopt : std::optional(answers_.takeFirst());
        });
        screen_->localFiles()->setFolder(local_.path());
    }

    void connectRemote()
    {
        screen_->remote()->connectTo(siteOf(*server_));
        ASSERT_TRUE(waitUntil([&] { return remote().isConnected() && idle(); }, 10s));
    }
    [[nodiscard]] RemoteHalf& remote() const { return *screen_->remote(); }
    [[nodiscard]] bool idle() const { return !remote().isBusy(); }
    // Waits until `count` transfer windows have ended and the remote half is idle again.
    [[nodiscard]] bool ended(std::size_t count)
    {
        return waitUntil([&] { return outcomes_.count() == count && idle(); }, 30s);
    }

    WorkerThreads threads_ { 0 };
    TestNotifier notifier_;
    RecordingOutcomes outcomes_;
    BrowserTransfers transfers_ { recorder_.services, outcomes_, threads_ };
    QTemporaryDir local_;
    std::unique_ptr<FtpServer> server_;
    std::unique_ptr<StandardFtpScreen> screen_;
    QStringList answers_; // what the mask prompts are answered, in turn
    QStringList prefills_; // what they offered
};

TEST_F(StandardFtpTransfersTest, AWildcardMovesTheMatchingFilesOfTheFolderCased)
{
    struct Case {
        const char* name;
        bool get;
        const char* mask;
        const char* casing;
        QStringList arrived; // in the receiving folder
    };
    const Case cases[] = {
        { "get by extension, any letter case", true, "*.txt", "LOWER_CASE", { "a.txt", "b.txt" } },
        { "get by a single letter", true, "?.zip", "UPPER_CASE", { "C.ZIP" } },
        { "put by extension", false, "*.log", "UPPER_CASE", { "X.LOG", "Y.LOG" } },
        { "put of everything", false, "*", "PRESERVE", { "Y.LOG", "x.log", "z.dat" } },
    };
    for (const auto* name : { "a.txt", "B.TXT", "c.zip", "sub/d.txt" })
        writeFile(server_->home() + u'/' + QLatin1String(name), name);
    for (const auto* name : { "x.log", "Y.LOG", "z.dat" })
        writeFile(local_.filePath(name), name);
    connectRemote();

    std::size_t windows = 0;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        QTemporaryDir into;
        SettingsStore::set(
            test.get ? settings::config::kFileCasingGet : settings::config::kFileCasingPut,
            QLatin1String(test.casing));
        answers_ = { QLatin1String(test.mask) };
        const QString putFolder = QStringLiteral("/put%1").arg(windows);
        if (test.get) {
            screen_->localFiles()->setFolder(into.path());
            screen_->getMatching();
        } else {
            ASSERT_TRUE(QDir(server_->home()).mkdir(putFolder.mid(1)));
            remote().openFolder(putFolder);
            ASSERT_TRUE(waitUntil([&] { return idle() && remote().folder() == putFolder; }, 10s));
            screen_->localFiles()->setFolder(local_.path());
            screen_->putMatching();
        }
        ASSERT_TRUE(ended(++windows)) << "one transfer window for the whole mask";
        const QString receiving = test.get ? into.path() : server_->home() + putFolder;
        QStringList arrived = QDir(receiving).entryList(QDir::Files);
        arrived.sort();
        EXPECT_EQ(arrived, test.arrived);
        const auto files = outcomes_.sites().back().files;
        EXPECT_EQ(resultsOf(files), std::vector<int>(test.arrived.size(), FileEntry::kSent));
        remote().openFolder(QStringLiteral("/"));
        ASSERT_TRUE(waitUntil([&] { return idle() && remote().folder() == "/"; }, 10s));
    }
    EXPECT_EQ(prefills_, QStringList(std::size(cases), QStringLiteral("*")));

    // A mask that matches nothing opens no window and says so.
    answers_ = { QStringLiteral("*.none") };
    screen_->getMatching();
    ASSERT_TRUE(settle());
    EXPECT_EQ(outcomes_.count(), windows);
    EXPECT_EQ(notifier_.messages.size(), 1);
}

TEST_F(StandardFtpTransfersTest, DroppedFoldersGoWholeOnlyWhenTheSettingsSaySo)
{
    struct Case {
        const char* name;
        bool get; // a remote folder dropped on the local side
        bool fromShell; // dragged from outside the program
        const char* dragDropDirs; // nullptr: absent
        const char* dragDropSubDirs;
        bool whole;
    };
    const Case cases[] = {
        { "put, DragDropDirs YES", false, false, "YES", nullptr, true },
        { "put, DragDropDirs absent", false, false, nullptr, "YES", false },
        { "put from the shell, DragDropSubDirs YES", false, true, nullptr, "YES", true },
        { "put from the shell, DragDropSubDirs absent", false, true, "YES", nullptr, false },
        { "get, DragDropDirs YES", true, false, "YES", nullptr, true },
        { "get, DragDropDirs NO", true, false, "NO", "YES", false },
    };
    // A tree with a file at each level, an empty folder, and a folder that holds only a folder.
    const QByteArray binary = QByteArray(70 * 1024, '\x01') + QByteArray("\r\n\0end", 6);
    const auto makeTree = [&](const QString& root) {
        writeFile(root + "/top/one.txt", "one\r\n");
        writeFile(root + "/top/deep/two.bin", binary);
        writeFile(root + "/top/only/inner/three.txt", "three");
        ASSERT_TRUE(QDir(root).mkpath(QStringLiteral("top/empty")));
    };
    const QStringList whole { "top/", "top/deep/", "top/deep/two.bin", "top/empty/", "top/one.txt",
        "top/only/", "top/only/inner/", "top/only/inner/three.txt" };
    makeTree(local_.path());
    makeTree(server_->home());
    QDir(server_->home()).rename(QStringLiteral("top"), QStringLiteral("remote"));
    connectRemote();

    std::size_t windows = 0;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        QTemporaryDir into;
        for (const auto& [key, value] :
            { std::pair(settings::config::kDragDropDirsRemoteBrowser, test.dragDropDirs),
                std::pair(settings::config::kDragDropSubDirs, test.dragDropSubDirs) }) {
            if (value)
                SettingsStore::set(key, QLatin1String(value));
            else
                SettingsStore::remove(QLatin1String(key.section), QLatin1String(key.name));
        }
        notifier_.messages.clear();
        const QString receiving = test.get ? into.path() : server_->home() + "/put";
        if (test.get) {
            screen_->localFiles()->setFolder(into.path());
            Q_EMIT remote().getRequested({ QStringLiteral("remote") });
        } else {
            ASSERT_TRUE(QDir(server_->home()).mkpath(QStringLiteral("put")));
            remote().openFolder(QStringLiteral("/put"));
            ASSERT_TRUE(waitUntil([&] { return idle() && remote().folder() == "/put"; }, 10s));
            Q_EMIT remote().putRequested({ local_.filePath("top") }, test.fromShell);
        }
        if (test.whole) {
            ASSERT_TRUE(ended(++windows));
            EXPECT_TRUE(notifier_.messages.isEmpty())
                << notifier_.messages.join('\n').toStdString();
            QStringList expected = whole;
            if (test.get)
                expected.replaceInStrings(QRegularExpression("^top"), QStringLiteral("remote"));
            EXPECT_EQ(entriesUnder(receiving).join(u' '), expected.join(u' '));
            const QString root = receiving + (test.get ? "/remote" : "/top");
            EXPECT_EQ(treeOf(root), treeOf(local_.filePath("top"))) << "byte for byte";
        } else {
            ASSERT_TRUE(settle());
            ASSERT_TRUE(waitUntil([&] { return idle(); }, 10s));
            EXPECT_EQ(outcomes_.count(), windows) << "no transfer";
            EXPECT_EQ(notifier_.messages.size(), 1) << "told once";
            EXPECT_TRUE(notifier_.messages.value(0).contains(test.get ? "remote" : "top"));
            EXPECT_EQ(entriesUnder(receiving), QStringList {});
        }
        if (!test.get) {
            QDir(receiving).removeRecursively();
            remote().openFolder(QStringLiteral("/"));
            ASSERT_TRUE(waitUntil([&] { return idle() && remote().folder() == "/"; }, 10s));
        }
    }
}

// The frame's FTP Get, FTP Put and wildcard forms act only on the screen shown, connected.
TEST_F(StandardFtpTransfersTest, TheTransferCommandsAreEnabledWhileShownAndConnected)
{
    const auto enabled = [&] {
        std::vector<bool> states;
        for (const QAction* action : screen_->transferActions())
            states.push_back(action->isEnabled());
        return states;
    };
    const std::vector<bool> none(4, false);
    const std::vector<bool> all(4, true);
    ASSERT_EQ(screen_->transferActions().size(), 4);
    EXPECT_EQ(enabled(), none) << "hidden and not connected";
    connectRemote();
    EXPECT_EQ(enabled(), none) << "connected, but another screen is shown";
    QWidget frame;
    screen_->remotePane()->setParent(&frame);
    frame.show();
    EXPECT_TRUE(waitUntil([&] { return enabled() == all; }, 10s)) << "shown and connected";
    frame.hide();
    EXPECT_TRUE(waitUntil([&] { return enabled() == none; }, 10s)) << "the screen left";
    frame.show();
    ASSERT_TRUE(waitUntil([&] { return enabled() == all; }, 10s));
    remote().disconnectSite();
    EXPECT_TRUE(waitUntil([&] { return idle() && enabled() == none; }, 10s)) << "disconnected";
    screen_->remotePane()->setParent(nullptr);
}

// A list view starts a drag only from rows its model marks as draggable.
TEST_F(StandardFtpTransfersTest, TheRowsOfBothListsDragOut)
{
    writeFile(server_->home() + "/remote.txt", "r");
    writeFile(local_.filePath("local.txt"), "l");
    connectRemote();
    screen_->localFiles()->refresh();
    for (const QAbstractItemView* view : { static_cast<QAbstractItemView*>(remote().files()),
             static_cast<QAbstractItemView*>(screen_->localFiles()) }) {
        ASSERT_EQ(view->model()->rowCount(), 1);
        EXPECT_TRUE(view->model()->flags(view->model()->index(0, 0)) & Qt::ItemIsDragEnabled)
            << view->accessibleName().toStdString();
    }
}

// A file-size limit on this process stands for a full disk: the write past it fails with EFBIG
// instead of ending the process.
TEST_F(StandardFtpTransfersTest, AGetOntoAFullDiskFailsWithTheDiskFullMessage)
{
    writeFile(server_->home() + "/big.bin", QByteArray(1'000'000, 'b'));
    writeFile(server_->home() + "/small.txt", "fits");
    connectRemote();
    const auto rowsBefore = remote().files()->rows().size();
    ASSERT_EQ(rowsBefore, 2U);

    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
    rlimit limited = old;
    limited.rlim_cur = 64 * 1024;
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limited), 0);
    Q_EMIT remote().getRequested({ QStringLiteral("big.bin"), QStringLiteral("small.txt") });
    const bool done = ended(1);
    ::setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    ASSERT_TRUE(done);

    const auto files = outcomes_.sites().front().files;
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].result, int(LocalFileError::DiskFull));
    EXPECT_TRUE(files[0].message.startsWith("The local disk is full"))
        << files[0].message.toStdString();
    EXPECT_EQ(files[1].result, FileEntry::kSent) << "the next file is still tried";
    EXPECT_FALSE(QFile::exists(local_.filePath("big.bin"))) << "no half file under its name";
    EXPECT_EQ(QFile(local_.filePath("small.txt")).size(), 4);

    // The listing is as it was, and the connection still lists.
    EXPECT_TRUE(remote().isConnected());
    EXPECT_EQ(remote().folder(), QStringLiteral("/"));
    EXPECT_EQ(remote().files()->rows().size(), rowsBefore);
    writeFile(server_->home() + "/later.txt", "new");
    remote().refresh();
    EXPECT_TRUE(waitUntil([&] { return idle() && remote().files()->rows().size() == 3; }, 10s));
}

} // namespace
} // namespace zelto::test
