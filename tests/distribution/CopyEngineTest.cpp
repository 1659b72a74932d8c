// Copies between two servers: the copy routine's bounded buffer, the copy engine (where the files
// land, what each file's failure leaves, the logins) and the end of both sessions of a copy job.

#include "distribution/CopyEngine.h"

#include "DistributionFixture.h"
#include "distribution/TransferJob.h"
#include "distribution/WorkerThreads.h"
#include "ftp/FtpErrors.h"
#include "ftp/GetPump.h"
#include "ftp/TransferCounters.h"
#include "ftp/TransferRoutines.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

class CopyEngineTest : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        if (!IsSkipped())
            to_ = std::make_unique<FtpServer>();
    }

    // A file of `size` bytes in `folder` of the server shown from `root`, to go to `target`.
    [[nodiscard]] FileEntry sourceFile(const QString& root, const QString& folder,
        const QString& name, qint64 size, const QString& target = {})
    {
        EXPECT_TRUE(makeFile(root + folder + u'/' + name, size, ++seed_));
        return entry(folder, name, size, target);
    }

    [[nodiscard]] static FileEntry entry(
        const QString& folder, const QString& name, qint64 size, const QString& target)
    {
        FileEntry file;
        file.localFolder = folder;
        file.localName = file.remoteName = name;
        file.remoteFolder = target;
        file.size = size;
        return file;
    }

    // Runs the engine (overwriting forbidden), then ends both sessions.
    FtpResult copy(std::vector<FileEntry>& files, const JobSite& from, const JobSite& to)
    {
        auto source = session();
        auto target = session();
        auto result = runCopyEngine(*source, *target, from, to, files, {});
        source->disconnectJob();
        target->disconnectJob();
        return result;
    }
    FtpResult copy(std::vector<FileEntry>& files)
    {
        return copy(files, siteOf(*server_), siteOf(*to_));
    }

    // Copies three files of two nested folders under `sourceTop` of `from` (shown from
    // `fromRoot`) into `folder` of `to`, and checks each file byte for byte, the folders made one
    // level after the other, and one session per end.
    void expectCopied(const JobSite& from, const QString& fromRoot, const QString& sourceTop,
        const JobSite& to, const QString& toRoot, const QString& folder, const char* dirTree)
    {
        SettingsStore::set(settings::config::kFtpDirTree, QString::fromLatin1(dirTree));
        const bool fullPath = dirTree == std::string_view(settings::config::kDirTreeFullPath);
        std::vector<FileEntry> files = {
            sourceFile(fromRoot, sourceTop + "/src/site", "index.html", 1000, folder),
            sourceFile(fromRoot, sourceTop + "/src/site/img", "logo.gif", 300'000, folder),
            sourceFile(fromRoot, sourceTop + "/src/site/img", "empty.png", 0, folder),
        };
        QStringList made; // every level of the deepest folder, which holds the others
        auto level = folder;
        for (const auto& part : files.back().localFolder.split(u'/', Qt::SkipEmptyParts))
            if (fullPath)
                made.append(level += u'/' + part);
        recorder_.clear();

        ASSERT_TRUE(copy(files, from, to).ok());
        for (const auto& entry : files) {
            EXPECT_EQ(entry.result, FileEntry::kSent) << entry.message.toStdString();
            EXPECT_TRUE(sameBytes(fromRoot + entry.localFolder + u'/' + entry.localName,
                toRoot + folder + (fullPath ? entry.localFolder : QString()) + u'/'
                    + entry.remoteName));
        }
        EXPECT_EQ(logged(ids::kLogMakeDirectoryOk), made);
        EXPECT_EQ(timesLogged(ids::kLogFtpConnectionOk), 2) << "one session per end";
    }

    [[nodiscard]] long timesLogged(int id) const
    {
        const auto ids = recorder_.logIds();
        return std::count(ids.begin(), ids.end(), id);
    }

    std::unique_ptr<FtpServer> to_;
    WorkerThreads threads_; // stops and waits for its workers before the fixture's services go
};

TEST_F(CopyEngineTest, CopyFileIsByteExactThroughTheBoundedBuffer)
{
    auto source = session();
    auto target = session();
    ASSERT_TRUE(source->connectJob(siteOf(*server_)).ok());
    ASSERT_TRUE(target->connectJob(siteOf(*to_)).ok());
    // Size, read buffer, write buffer.
    const std::tuple<qint64, int, int> cases[] = {
        { 0, 4096, 4096 }, // an empty source still makes an empty target
        { 1, 4096, 4096 },
        { 9'000'011, 4096, 1000 }, // more than the buffer between the two transfers
        { 3'000'017, 1000, 4096 },
    };
    for (const auto& [size, readBuffer, writeBuffer] : cases) {
        SCOPED_TRACE(size);
        SettingsStore::set(settings::ftp::kReadBuffer, readBuffer);
        SettingsStore::set(settings::ftp::kWriteBuffer, writeBuffer);
        const auto name = QStringLiteral("c%1.bin").arg(size);
        ASSERT_TRUE(makeFile(home() + u'/' + name, size, quint64(size)));
        const auto before = TransferCounters::instance().snapshot();
        const auto result = copyFile(*source, *target, { .from = name, .to = name, .size = size });
        ASSERT_TRUE(result.ok()) << result.text().toStdString();
        const auto stored = to_->home() + u'/' + name;
        EXPECT_TRUE(waitUntil([&, size = size] { return QFileInfo(stored).size() == size; }, 5s));
        EXPECT_TRUE(sameBytes(home() + u'/' + name, stored));
        const auto after = TransferCounters::instance().snapshot();
        EXPECT_EQ(after.filesTransferred - before.filesTransferred, 1);
        EXPECT_EQ(after.remoteBytesRead - before.remoteBytesRead, size);
        EXPECT_EQ(after.remoteBytesWritten - before.remoteBytesWritten, size);
    }
    EXPECT_EQ(server_->commandCount("USER"), 1);
    EXPECT_EQ(to_->commandCount("USER"), 1);
}

// The target of a copy takes its name only once whole: a copy cut by the target server leaves
// nothing there and the resend brings the whole file; a server that renames nothing still gets
// the copy, sent again under its name, and the later copies there directly.
TEST_F(CopyEngineTest, ATargetTakesItsNameOnlyWhenWhole)
{
    // In active mode the server's 426 can overtake the data it cut.
    SettingsStore::set(settings::ftp::kPassive, "YES");
    constexpr qint64 kSize = 1'000'000;
    const auto original = home() + QStringLiteral("/big.bin");
    ASSERT_TRUE(makeFile(original, kSize, 31));
    const auto stored = to_->home() + QStringLiteral("/big.bin");
    const auto targetFiles
        = [&] { return QDir(to_->home()).entryList(QDir::Files | QDir::Hidden); };
    const auto arrivedWhole = [&] {
        return waitUntil([&] { return QFileInfo(stored).size() == kSize; }, 5s)
            && sameBytes(original, stored) && targetFiles() == QStringList { "big.bin" };
    };
    const TransferRequest request { .from = "big.bin", .to = "big.bin", .size = kSize };
    auto source = session();
    auto target = session();
    ASSERT_TRUE(source->connectJob(siteOf(*server_)).ok());
    ASSERT_TRUE(target->connectJob(siteOf(*to_)).ok());

    to_->setFaults({ .closeDataAfter = 100'000, .closeDataOn = { "STOR" } });
    const auto cut = copyFile(*source, *target, request);
    // The server's 426 or, when it reset the data still coming, the reset (which takes the
    // control connection along, so the partial stays, under its own name).
    EXPECT_TRUE(cut.code == inet::kConnectionTerminated || cut.code == inet::kConnectionReset)
        << cut.text().toStdString();
    const QStringList leftOver = targetFiles();
    EXPECT_TRUE(leftOver.isEmpty() || leftOver == QStringList { "big.bin.zelto-part" })
        << leftOver.join(u' ').toStdString();
    // The resend comes as the queue's does, over a login of its own, and replaces the partial.
    to_->setFaults({});
    auto resendTarget = session();
    ASSERT_TRUE(resendTarget->connectJob(siteOf(*to_)).ok());
    const auto resent = copyFile(*source, *resendTarget, request);
    EXPECT_TRUE(resent.ok()) << resent.text().toStdString();
    EXPECT_TRUE(arrivedWhole());

    to_->setFaults({ .refuse = { "RNFR" } });
    auto renamesNothing = session();
    ASSERT_TRUE(renamesNothing->connectJob(siteOf(*to_)).ok());
    const int renamesBefore = to_->commandCount("RNFR");
    for (int copy = 1; copy <= 2; ++copy) {
        SCOPED_TRACE(copy);
        const auto copied = copyFile(*source, *renamesNothing, request);
        EXPECT_TRUE(copied.ok()) << copied.text().toStdString();
        EXPECT_TRUE(arrivedWhole());
    }
    // Asked once, and once more after the target was taken out of the way.
    EXPECT_EQ(to_->commandCount("RNFR") - renamesBefore, 2);
}

TEST_F(CopyEngineTest, CopiesByteExactIntoEachPlacementBetweenTwoServersOrSessions)
{
    for (const auto* dirTree :
        { settings::config::kDirTreeNoPath, settings::config::kDirTreeFullPath }) {
        SCOPED_TRACE(dirTree);
        const auto folder = QStringLiteral("/c_") + QString::fromLatin1(dirTree);
        ASSERT_TRUE(QDir(to_->home()).mkpath(folder.mid(1)));
        expectCopied(siteOf(*server_), home(), {}, siteOf(*to_), to_->home(), folder, dirTree);
    }
    // Two sessions of one real server, whose sessions are processes of their own: the fixture's
    // one-process server can stall an upload that runs beside a download of its own.
    SKIP_WITHOUT(Vsftpd);
    Vsftpd server;
    const auto pub = u'/' + Vsftpd::uploadFolder();
    expectCopied(siteOf(server), server.root(), pub, siteOf(server), server.root(), pub,
        settings::config::kDirTreeFullPath);
}

// The TransferType option (the Transfer Mode menu) is for gets and puts: a copy goes by the
// file's extension, at both ends.
TEST_F(CopyEngineTest, CopiesChooseTheirTypeByTheExtensionOnly)
{
    SettingsStore::set(settings::config::kTextExtensions, "txt");
    ASSERT_TRUE(QDir(to_->home()).mkpath("t"));
    const struct {
        const char* option;
        const char* name;
        const char* type;
    } cases[] = {
        { "TEXT", "data.bin", "I" },
        { "BINARY", "notes.txt", "A" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        SettingsStore::set(settings::ftp::kTransferType, c.option);
        std::vector<FileEntry> files = { sourceFile(home(), "/s", c.name, 3000, "/t") };
        ASSERT_TRUE(copy(files).ok());
        EXPECT_EQ(files[0].result, FileEntry::kSent) << files[0].message.toStdString();
        EXPECT_EQ(server_->typeAt("RETR", c.name).toStdString(), c.type);
        // Stored under its partial name, then renamed.
        const auto stored = GetPump::partialPath(QString::fromLatin1(c.name));
        EXPECT_EQ(to_->typeAt("STOR", stored).toStdString(), c.type);
    }
}

TEST_F(CopyEngineTest, EachFileKeepsItsOwnFailureAndOnlyCopiedSourcesAreDeleted)
{
    SettingsStore::set(settings::config::kDeleteGet, QString::fromLatin1(settings::kYes));
    const auto existing = to_->home() + QStringLiteral("/t/kept.txt");
    ASSERT_TRUE(makeFile(existing, 7, 1000));
    std::vector<FileEntry> files = {
        sourceFile(home(), "/s", "kept.txt", 20, "/t"),
        entry("/s", "missing.bin", 10, "/t"),
        sourceFile(home(), "/s", "moved.bin", 5000, "/t"),
    };
    const auto moved = contents(home() + QStringLiteral("/s/moved.bin"));

    ASSERT_TRUE(copy(files).ok());

    EXPECT_EQ(files[0].result, ids::kCannotOverwrite);
    EXPECT_EQ(files[0].message, StringTable::text(ids::kCannotOverwrite));
    EXPECT_EQ(contents(existing), makeBytes(7, 1000));
    EXPECT_EQ(files[1].result, inet::kServerError);
    EXPECT_FALSE(QFile::exists(to_->home() + QStringLiteral("/t/missing.bin")));
    EXPECT_EQ(files[1].remoteFolder, QStringLiteral("/t/")) << "a resend goes to the same place";
    EXPECT_EQ(files[2].result, FileEntry::kSent);
    EXPECT_EQ(contents(to_->home() + QStringLiteral("/t/moved.bin")), moved);
    // DeleteGet takes only the source that was copied.
    EXPECT_TRUE(QFile::exists(home() + QStringLiteral("/s/kept.txt")));
    EXPECT_FALSE(QFile::exists(home() + QStringLiteral("/s/moved.bin")));
}

TEST_F(CopyEngineTest, ARefusedLoginOnEitherSideReturnsItsCodeAndCopiesNothing)
{
    const FtpFaults refused { .refuseLogin = { "*" } };
    for (const bool targetRefuses : { false, true }) {
        SCOPED_TRACE(targetRefuses ? "target refuses" : "source refuses");
        server_->setFaults(targetRefuses ? FtpFaults {} : refused);
        to_->setFaults(targetRefuses ? refused : FtpFaults {});
        std::vector<FileEntry> files = { sourceFile(home(), "/s", "a.txt", 20) };

        EXPECT_EQ(copy(files).code, inet::kLoginFailed);
        EXPECT_EQ(files[0].result, FileEntry::kNotTried);
        EXPECT_TRUE(files[0].message.startsWith(StringTable::errorMessage(inet::kLoginFailed)));
        EXPECT_EQ(server_->commandCount(QStringLiteral("RETR")), 0);
        EXPECT_EQ(to_->commandCount(QStringLiteral("STOR")), 0);
        EXPECT_EQ(to_->commandCount(QStringLiteral("USER")), targetRefuses ? 1 : 0);
    }
}

TEST_F(CopyEngineTest, ACopyJobEndsBothSessionsWhetherItRanOrWasCancelled)
{
    for (const bool cancel : { false, true }) {
        SCOPED_TRACE(cancel ? "cancelled" : "ran");
        to_->setFaults(
            cancel ? FtpFaults { .stall = { { "STOR", FtpFaults::kForever } } } : FtpFaults {});
        recorder_.clear();
        const int stored = to_->commandCount(QStringLiteral("STOR"));
        const QString name = cancel ? "cancelled.bin" : "ran.bin";
        TransferJob::Setup setup;
        setup.mode = TransferMode::Copy;
        setup.sites = { siteOf(*server_) };
        setup.target = siteOf(*to_);
        setup.files = { sourceFile(home(), "/j", name, 70'000) };
        RecordingOutcomes outcomes;
        const auto job
            = TransferJob::create(std::move(setup), recorder_.services, outcomes, threads_);
        job->start();
        if (cancel) {
            ASSERT_TRUE(
                waitUntil([&] { return to_->commandCount(QStringLiteral("STOR")) > stored; }, 20s));
            job->pause();
            job->cancel();
        }
        ASSERT_TRUE(waitUntil([&] { return job->done(); }, 20s));

        const auto ended = outcomes.of(siteOf(*server_).port);
        EXPECT_EQ(ended.targetPort, to_->port());
        ASSERT_EQ(ended.files.size(), 1u);
        const int result = ended.files[0].result;
        if (cancel) // whichever end was still moving was stopped, not left to time out
            EXPECT_TRUE(result == ids::kPutCanceled || result == ids::kGetCanceled) << result;
        else
            EXPECT_TRUE(sameBytes(home() + "/j/" + name, to_->home() + u'/' + name));
        EXPECT_EQ(timesLogged(ids::kLogFtpConnectionClosed), 2);
        EXPECT_EQ(timesLogged(ids::kLogSessionEnded), 2);
    }
}

} // namespace
} // namespace zelto::test
