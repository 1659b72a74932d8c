// The browser's screens moving files, as a user would: local files put on a site and got back,
// their names cased as the settings ask, and a file copied from one site to another, each in its
// transfer window, byte for byte.

#include "DistributionFixture.h"
#include "TestNotifier.h"
#include "distribution/WorkerThreads.h"
#include "distribution/ui/BrowserTransfers.h"
#include "distribution/ui/CRemFilesView.h"
#include "distribution/ui/RemoteFtpScreen.h"
#include "distribution/ui/RemoteHalf.h"
#include "distribution/ui/StandardFtpScreen.h"
#include "settings/SettingsKeys.h"
#include "widgets/CDirView.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

class BrowserScreensTest : public FtpTest {
protected:
    BrowserScreensTest() : FtpTest(5) { }

    void connect(RemoteHalf& half, const FtpServer& server)
    {
        half.connectTo(siteOf(server));
        ASSERT_TRUE(waitUntil([&] { return half.isConnected() && !half.isBusy(); }, 10s));
    }
    // Waits until `count` sites have ended and the remote list is idle again.
    [[nodiscard]] bool ended(std::size_t count, const RemoteHalf& half)
    {
        return waitUntil([&] { return outcomes_.count() == count && !half.isBusy(); }, 30s);
    }

    WorkerThreads threads_ { 0 };
    TestNotifier notifier_;
    RecordingOutcomes outcomes_;
    BrowserTransfers transfers_ { recorder_.services, outcomes_, threads_ };
};

TEST_F(BrowserScreensTest, LocalFilesArePutOnTheSiteAndGotBack)
{
    FtpServer server;
    QTemporaryDir local;
    QTemporaryDir back;
    QByteArray binary(300 * 1024, '\0');
    for (qsizetype i = 0; i < binary.size(); ++i)
        binary[i] = char((i * 7919) % 251);
    write(local.filePath("a.bin"), binary);
    write(local.filePath("Mixed.TXT"), "two\r\nlines\n");
    StandardFtpScreen screen(recorder_.services, notifier_, threads_, transfers_);
    connect(*screen.remote(), server);

    SettingsStore::set(settings::config::kFileCasingPut, QStringLiteral("LOWER_CASE"));
    Q_EMIT screen.remote()->putRequested({ local.filePath("a.bin"), local.filePath("Mixed.TXT") });
    ASSERT_TRUE(ended(1, *screen.remote()));
    EXPECT_EQ(contents(server.home() + "/a.bin"), binary);
    EXPECT_EQ(contents(server.home() + "/mixed.txt"), contents(local.filePath("Mixed.TXT")));

    // The local name of a get is cased as FileCasingGet asks.
    SettingsStore::set(settings::config::kFileCasingGet, QStringLiteral("UPPER_CASE"));
    screen.localFiles()->setFolder(back.path());
    Q_EMIT screen.remote()->getRequested({ QStringLiteral("a.bin") });
    ASSERT_TRUE(ended(2, *screen.remote()));
    EXPECT_EQ(contents(back.filePath("A.BIN")), binary);
    EXPECT_EQ(QDir(back.path()).entryList(QDir::Files), QStringList { "A.BIN" });
}

TEST_F(BrowserScreensTest, AFileIsCopiedFromOneSiteToTheOther)
{
    FtpServer from;
    FtpServer to;
    QByteArray bytes(200 * 1024, 'x');
    bytes[1000] = '\n';
    write(from.home() + "/copied.bin", bytes);
    RemoteFtpScreen screen(recorder_.services, notifier_, threads_, transfers_);
    connect(*screen.half(0), from);
    connect(*screen.half(1), to);

    ASSERT_TRUE(screen.half(0)->files()->selectRow(QStringLiteral("copied.bin")));
    screen.copySelected(0);
    ASSERT_TRUE(ended(1, *screen.half(1)));
    EXPECT_EQ(contents(to.home() + "/copied.bin"), bytes);
    EXPECT_TRUE(waitUntil([&] { return !screen.half(1)->files()->rows().empty(); }, 10s))
        << "the target's list shows the copy";
}

} // namespace
} // namespace zelto::test
