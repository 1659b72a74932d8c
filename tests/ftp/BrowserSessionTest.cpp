// The browser's connection against real servers: listings read alike by MLSD and by LIST, names
// a hostile server lists never sent back, and each operation with its log records.

#include "ftp/BrowserSession.h"

#include "BothServersTest.h"
#include "TestFiles.h"
#include "ftp/CTransferSession.h"
#include "ftp/FtpConnection.h"
#include "ftp/FtpErrors.h"
#include "platform/StringIds.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <map>
#include <thread>
#include <tuple>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;
using Kind = RemoteEntry::Kind;

class BrowserSessionTest : public BothServersTest {
protected:
    std::unique_ptr<BrowserSession> connect(const ServedFolder& served)
    {
        auto session = std::make_unique<BrowserSession>(recorder_.services, std::stop_token {});
        const auto connected = session->connect(served.site);
        EXPECT_TRUE(connected.ok()) << connected.text().toStdString();
        recorder_.clear();
        return session;
    }
};

TEST_F(BrowserSessionTest, BothServersListTheSameFolderAlike)
{
    // Within the last six months, so that LIST gives the time of day; minutes are all it gives.
    const QDateTime stamp = QDateTime::currentDateTimeUtc().addDays(-3).toUTC();
    const QDateTime minute(
        stamp.date(), QTime(stamp.time().hour(), stamp.time().minute()), Qt::UTC);
    const std::map<QString, qint64> files { { "a.txt", 3 }, { "two  blanks.bin", 0 },
        { "über.txt", 7 }, { "five.gib", 5LL << 30 } };
    using Seen = std::map<QString, std::tuple<Kind, qint64, QDateTime>>;
    std::vector<Seen> seen;
    for (const auto& served : served_) {
        SCOPED_TRACE(served.name);
        ASSERT_TRUE(QDir(served.disk).mkdir(QStringLiteral("sub")));
        for (const auto& [name, size] : files) {
            QFile file(served.disk + u'/' + name);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            ASSERT_TRUE(file.resize(size)); // sparse: five GiB cost no disk
            ASSERT_TRUE(file.setFileTime(minute, QFileDevice::FileModificationTime));
        }
        auto session = connect(served);
        const auto listed = session->list(served.folder);
        ASSERT_TRUE(listed.ok()) << listed.result.text().toStdString();
        EXPECT_EQ(session->currentFolder(), served.folder);
        Seen entries;
        for (const auto& entry : listed.value.entries()) {
            const auto modified = entry.isFolder() ? QDateTime() : entry.modified;
            entries[entry.name] = { entry.kind, entry.isFolder() ? -1 : entry.size, modified };
        }
        Seen expected { { "sub", { Kind::Folder, -1, QDateTime() } } };
        for (const auto& [name, size] : files)
            expected[name] = { Kind::File, size, minute };
        EXPECT_EQ(entries, expected);
        seen.push_back(entries);
    }
    if (vsftpd_) {
        EXPECT_EQ(seen.front(), seen.back());
    }
}

TEST_F(BrowserSessionTest, HostileNamesAreShownButNeverSentBack)
{
    const ServedFolder& served = served_.front();
    ASSERT_TRUE(QFile(served.disk + QStringLiteral("/plain.txt")).open(QIODevice::WriteOnly));
    const QStringList hostile { "../escape.txt", "a/b.txt", "back\\slash.txt",
        QStringLiteral("nul") + QChar(0) + QStringLiteral("byte") };
    FtpFaults faults;
    // libcurl reads a listing in ASCII and turns a lone CR into a line end: such a name arrives
    // as two lines, of which only the plain first part parses.
    faults.hostileNames = hostile + QStringList { "carriage\rreturn" };
    pyftpd_->setFaults(faults);
    auto session = connect(served);

    const auto listed = session->list(served.folder);
    ASSERT_TRUE(listed.ok()) << listed.result.text().toStdString();
    QStringList names;
    for (const auto& entry : listed.value.entries())
        names.append(entry.name);
    EXPECT_EQ(names, QStringList { "plain.txt" } + hostile + QStringList { "carriage" });

    for (const auto& entry : listed.value.entries()) {
        if (entry.isPlainName())
            continue;
        SCOPED_TRACE(entry.name.toStdString());
        EXPECT_EQ(session->removeFile(served.folder, entry).code, inet::kInvalidUrl);
        EXPECT_EQ(
            session->rename(served.folder, entry, QStringLiteral("fine")).code, inet::kInvalidUrl);
        EXPECT_EQ(session->move(served.folder, entry, QStringLiteral("/")).code, inet::kInvalidUrl);
    }
    const RemoteEntry plain { QStringLiteral("plain.txt") };
    EXPECT_EQ(
        session->rename(served.folder, plain, QStringLiteral("../up.txt")).code, inet::kInvalidUrl);
    EXPECT_EQ(session->makeFolder(served.folder, QStringLiteral("a/b")).code, inet::kInvalidUrl);
    for (const auto* verb : { "DELE", "RNFR", "RNTO", "MKD" })
        EXPECT_EQ(pyftpd_->commandCount(QString::fromLatin1(verb)), 0) << verb;
    std::vector<int> logged;
    for (qsizetype i = 0; i < hostile.size(); ++i)
        logged.insert(logged.end(),
            { ids::kLogDeletionFailed, ids::kLogRenamingFailed, ids::kLogRenamingFailed });
    logged.insert(logged.end(), { ids::kLogRenamingFailed, ids::kLogMakeDirectoryFailed });
    EXPECT_EQ(recorder_.logIds(), logged);
    EXPECT_TRUE(QFile::exists(served.disk + QStringLiteral("/plain.txt")));
}

// Each step of a user's session, with what it logs and what it leaves on the server's disk.
TEST_F(BrowserSessionTest, OperationsChangeTheServerAndLogTheirPairsEvent)
{
    for (const auto& served : served_) {
        SCOPED_TRACE(served.name);
        for (const auto* name : { "a.txt", "c.txt" }) {
            QFile file(served.disk + u'/' + QLatin1String(name));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            ASSERT_EQ(file.write(name), 5);
        }
        auto session = connect(served);
        const QString& pub = served.folder;
        const auto file
            = [](const char* name) { return RemoteEntry { QString::fromLatin1(name) }; };
        const auto folder = [](const char* name) {
            return RemoteEntry { QString::fromLatin1(name), Kind::Folder };
        };
        struct Step {
            const char* what;
            std::function<FtpResult()> run;
            int code;
            int logged;
            QStringList files; // what the folder holds on disk after the step
        };
        const Step steps[] = {
            { "list a missing folder", [&] { return session->list(pub + "/nope").result; },
                inet::kServerError, ids::kLogChangeDirectoryFailed, { "a.txt", "c.txt" } },
            { "make folder", [&] { return session->makeFolder(pub, "new"); }, 0,
                ids::kLogMakeDirectoryOk, { "a.txt", "c.txt", "new" } },
            { "make it again", [&] { return session->makeFolder(pub, "new"); },
                ids::kDirectoryExists, ids::kLogMakeDirectoryFailed, { "a.txt", "c.txt", "new" } },
            { "rename", [&] { return session->rename(pub, file("a.txt"), "b.txt"); }, 0,
                ids::kLogRenamingOk, { "b.txt", "c.txt", "new" } },
            { "rename onto a file", [&] { return session->rename(pub, file("b.txt"), "c.txt"); },
                ids::kRenameTargetExists, ids::kLogRenamingFailed, { "b.txt", "c.txt", "new" } },
            { "move into the folder",
                [&] { return session->move(pub, file("b.txt"), pub + "/new"); }, 0,
                ids::kLogRenamingOk, { "c.txt", "new", "new/b.txt" } },
            { "delete a file gone", [&] { return session->removeFile(pub, file("b.txt")); },
                ids::kFileToDeleteNotFound, ids::kLogDeletionFailed,
                { "c.txt", "new", "new/b.txt" } },
            { "remove a full folder", [&] { return session->removeFolder(pub, folder("new")); },
                inet::kServerError, ids::kLogDeletionFailed, { "c.txt", "new", "new/b.txt" } },
            { "delete", [&] { return session->removeFile(pub + "/new", file("b.txt")); }, 0,
                ids::kLogDeletionOk, { "c.txt", "new" } },
            { "remove the folder", [&] { return session->removeFolder(pub, folder("new")); }, 0,
                ids::kLogDeletionOk, { "c.txt" } },
        };
        for (const auto& step : steps) {
            SCOPED_TRACE(step.what);
            recorder_.clear();
            const auto result = step.run();
            EXPECT_EQ(result.code, step.code) << result.text().toStdString();
            EXPECT_EQ(recorder_.logIds(), std::vector<int> { step.logged });
            QStringList files;
            for (const auto& name :
                QDir(served.disk).entryList(QDir::NoDotAndDotDot | QDir::AllEntries))
                files.append(name);
            for (const auto& name : QDir(served.disk + "/new").entryList(QDir::Files))
                files.append("new/" + name);
            EXPECT_EQ(files, step.files);
        }
    }
}

TEST_F(BrowserSessionTest, ARefusedDeleteIsToldAndLogged)
{
    const ServedFolder& served = served_.front();
    ASSERT_TRUE(QFile(served.disk + QStringLiteral("/keep.txt")).open(QIODevice::WriteOnly));
    auto session = connect(served);
    FtpFaults faults;
    faults.refuse = QStringList { "DELE" };
    pyftpd_->setFaults(faults);
    const auto removed = session->removeFile(served.folder, { QStringLiteral("keep.txt") });
    EXPECT_EQ(removed.code, ids::kFileNotDeleted);
    EXPECT_TRUE(removed.text().contains(QStringLiteral("DELE refused")))
        << removed.text().toStdString();
    EXPECT_EQ(recorder_.logIds(), std::vector<int> { ids::kLogDeletionFailed });
    EXPECT_TRUE(QFile::exists(served.disk + QStringLiteral("/keep.txt")));
}

// A server that never ends its listing is cut off at the bound, with a reason; one that stalls
// ends the listing by the reply time-out.
TEST_F(BrowserSessionTest, AnEndlessOrStalledListingEndsWithAReason)
{
    const ServedFolder& served = served_.front();
    ASSERT_TRUE(QDir(served.disk).mkdir(QStringLiteral("sub")));
    auto session = connect(served);
    FtpFaults faults;
    faults.endlessListing = true;
    pyftpd_->setFaults(faults);
    const auto endless = session->list(served.folder);
    EXPECT_EQ(endless.result.code, inet::kReplyNotParsed);
    EXPECT_TRUE(endless.result.detail.contains(QStringLiteral("was refused")))
        << endless.result.text().toStdString();

    pyftpd_->setFaults({});
    const auto after = session->list(served.folder);
    ASSERT_TRUE(after.ok()) << after.result.text().toStdString();
    EXPECT_TRUE(after.value.isFolder(QStringLiteral("sub")));

    faults = {};
    faults.stall = { { QStringLiteral("MLSD"), 10s } };
    pyftpd_->setFaults(faults);
    EXPECT_EQ(session->list(served.folder).result.code, inet::kTimeout);
}

// A server that keeps the data connection alive with a byte now and then: the minimum rate over
// the data time-out ends a get and a listing alike, where a limit on silence alone never would.
TEST_F(BrowserSessionTest, ADrippingServerTimesOutAGetAndAListing)
{
    useQuickTimeouts(1);
    const ServedFolder& served = served_.front();
    ASSERT_TRUE(makeFile(served.disk + QStringLiteral("/drip.bin"), 10'000, 1));
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(makeFile(served.disk + QStringLiteral("/file%1.txt").arg(i), 10, 2));
    const QString folder = served.folder;
    const struct {
        const char* command;
        std::function<FtpResult(FtpConnection&)> run;
    } cases[] = {
        { "RETR",
            [folder](FtpConnection& connection) {
                return connection.download(folder + QStringLiteral("/drip.bin"),
                    TransferType::Binary, [](const char*, qint64) { return true; });
            } },
        { "MLSD", [folder](FtpConnection& connection) { return connection.list(folder).result; } },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.command);
        // Well above one byte a second; the connection must still not be held.
        FtpFaults faults;
        faults.trickle[QString::fromLatin1(c.command)] = 300ms;
        pyftpd_->setFaults(faults);
        std::stop_source stop;
        auto job
            = std::make_unique<CTransferSession>(recorder_.services, &progress_, stop.get_token());
        ASSERT_TRUE(job->connectJob(served.site).ok());
        // Without the rule the transfer would run for an hour: stopped well before, it fails
        // as cancelled, not as timed out.
        std::atomic<bool> ended = false;
        std::jthread watchdog([&] {
            if (!waitUntil([&] { return ended.load(); }, 30s))
                stop.request_stop();
        });
        const auto result = c.run(*job->connection());
        ended = true;
        EXPECT_EQ(result.code, inet::kTimeout) << result.text().toStdString();
    }
}

} // namespace
} // namespace zelto::test
