// Put and get against both fixture servers, byte for byte, and every way a file can end early.

#include "ftp/TransferRoutines.h"

#include "BothServersTest.h"
#include "TestFiles.h"
#include "ftp/CTransferSession.h"
#include "ftp/FtpErrors.h"
#include "ftp/GetPump.h"
#include "ftp/JobProgress.h"
#include "ftp/TransferCounters.h"
#include "platform/StringIds.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <iostream>
#include <memory>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

class TransferRoutinesTest : public BothServersTest {
protected:
    // A session connected to `target`, reporting to this test's recorder and progress.
    std::unique_ptr<CTransferSession> connect(const ServedFolder& target, std::stop_token stop = {})
    {
        auto session = std::make_unique<CTransferSession>(recorder_.services, &progress_, stop);
        const auto result = session->connectJob(target.site);
        EXPECT_TRUE(result.ok()) << result.text().toStdString();
        return session;
    }

    QTemporaryDir local_;
};

TEST_F(TransferRoutinesTest, PutAndGetAreByteExactWithBothServers)
{
    struct Case {
        qint64 size;
        int readBuffer;
        int writeBuffer;
    };
    const Case cases[] = {
        { 0, 4096, 4096 },
        { 1, 4096, 4096 },
        { 3'000'017, 4096, 1000 }, // each block written in four pieces and a rest
        { 3'000'017, 1000, 4096 }, // four blocks gathered into one piece
        { 700'001, 65536, 65536 },
    };
    for (const auto& target : served_) {
        auto session = connect(target);
        for (const auto& c : cases) {
            SCOPED_TRACE(testing::Message() << target.name << ": " << c.size << " bytes, "
                                            << c.readBuffer << '/' << c.writeBuffer);
            SettingsStore::set(settings::ftp::kReadBuffer, c.readBuffer);
            SettingsStore::set(settings::ftp::kWriteBuffer, c.writeBuffer);
            const auto name = QStringLiteral("f%1_%2.bin").arg(c.size).arg(c.readBuffer);
            const auto source = local_.filePath(name);
            ASSERT_TRUE(makeFile(source, c.size, quint64(c.size + c.readBuffer)));
            const auto before = TransferCounters::instance().snapshot();
            recorder_.clear();

            const auto put
                = putFile(*session, { .from = source, .to = target.remote(name), .size = c.size });
            ASSERT_TRUE(put.ok()) << put.text().toStdString();
            EXPECT_TRUE(
                waitUntil([&] { return QFileInfo(target.stored(name)).size() == c.size; }, 5s));
            EXPECT_TRUE(sameBytes(source, target.stored(name)));
            const auto afterPut = progress_.snapshot();
            EXPECT_EQ(afterPut.fileDone, c.size);
            if (c.size > 0) {
                EXPECT_EQ(afterPut.text(JobProgress::Text::FileBytes),
                    QStringLiteral("Sent %1 bytes out of %1 (100.00%)").arg(c.size));
            }

            const auto back = local_.filePath("back_" + name);
            const auto get
                = getFile(*session, { .from = target.remote(name), .to = back, .size = c.size });
            ASSERT_TRUE(get.ok()) << get.text().toStdString();
            EXPECT_TRUE(sameBytes(source, back));
            // The tray changes once per file and direction, never per block.
            using Tray = TrayState;
            EXPECT_TRUE(c.size == 0
                || (recorder_.tray()
                    == std::vector { Tray::Sending, Tray::Idle, Tray::Busy, Tray::Idle }));

            const auto after = TransferCounters::instance().snapshot();
            EXPECT_EQ(after.filesTransferred - before.filesTransferred, 2);
            using Counts = TransferCounters::Snapshot;
            for (const auto bytes : { &Counts::remoteBytesWritten, &Counts::remoteBytesRead,
                     &Counts::localBytesRead, &Counts::localBytesWritten })
                EXPECT_EQ(after.*bytes - before.*bytes, c.size);
        }
    }
    // Every file of the job went over the one login.
    EXPECT_EQ(pyftpd_->commandCount("USER"), 1);
}

TEST_F(TransferRoutinesTest, TextModeSendsCrlfAndBringsBackLocalLineEnds)
{
    SettingsStore::set(settings::config::kTextExtensions, "htm,txt");
    // Lines across many rounds and libcurl buffers, so that line ends fall on every boundary.
    QByteArray lines;
    for (int i = 0; lines.size() < 600'000; ++i)
        lines += QByteArray::number(i * 7919) + (i % 3 ? "\n" : " a longer line here\n");
    QByteArray wire = lines;
    wire.replace("\n", "\r\n");
    struct Case {
        const char* name;
        QByteArray local;
        int readBuffer;
        int writeBuffer;
    };
    const Case cases[] = {
        { "small.txt", "one\ntwo\r\nthree\n", 4096, 4096 }, // a CRLF already there stays one
        { "lines.txt", lines, 1000, 4096 },
        { "lines2.txt", lines, 4096, 1000 },
    };
    for (const auto& target : served_) {
        auto session = connect(target);
        for (const auto& c : cases) {
            SCOPED_TRACE(target.name + ": " + c.name);
            SettingsStore::set(settings::ftp::kReadBuffer, c.readBuffer);
            SettingsStore::set(settings::ftp::kWriteBuffer, c.writeBuffer);
            const auto source = local_.filePath(c.name);
            writeFile(source, c.local);
            const auto put = putFile(*session,
                { .from = source,
                    .to = target.remote(c.name),
                    .size = c.local.size(),
                    .honourTransferType = false });
            ASSERT_TRUE(put.ok()) << put.text().toStdString();

            auto crlf = c.local;
            crlf.replace("\r\n", "\n").replace("\n", "\r\n");
            auto lf = crlf;
            lf.replace("\r\n", "\n");
            // vsftpd keeps the bytes of the wire; pyftpdlib stores its own line ends (LF here).
            const auto expectedStored = target.name == "vsftpd" ? crlf : lf;
            EXPECT_TRUE(
                waitUntil([&] { return contents(target.stored(c.name)) == expectedStored; }, 5s));

            const auto back = local_.filePath(QStringLiteral("back_") + c.name);
            const auto get = getFile(*session,
                { .from = target.remote(c.name), .to = back, .honourTransferType = false });
            ASSERT_TRUE(get.ok()) << get.text().toStdString();
            EXPECT_EQ(contents(back), lf);
        }
        // The TransferType option wins over the extension when honoured: bytes as they are.
        SettingsStore::set(settings::ftp::kTransferType, "BINARY");
        const auto source = local_.filePath("small.txt");
        ASSERT_TRUE(
            putFile(*session, { .from = source, .to = target.remote("raw.txt"), .size = 15 }).ok());
        EXPECT_TRUE(waitUntil(
            [&] { return contents(target.stored("raw.txt")) == "one\ntwo\r\nthree\n"; }, 5s));
        SettingsStore::set(settings::ftp::kTransferType, "NotFound");
    }
}

TEST_F(TransferRoutinesTest, DeleteOptionsAfterASuccessfulFile)
{
    auto session = connect(served_.front());
    // DeletePut, whether the caller keeps its source, whether the local file stays.
    for (const auto& [deletePut, keepSource, localStays] : { std::tuple { "YES", false, false },
             std::tuple { "YES", true, true }, std::tuple { "NO", false, true } }) {
        SCOPED_TRACE(std::string(deletePut) + (keepSource ? " keep" : ""));
        SettingsStore::set(settings::config::kDeletePut, deletePut);
        const auto source = local_.filePath("put.bin");
        ASSERT_TRUE(makeFile(source, 5000, 3));
        recorder_.clear();
        ASSERT_TRUE(putFile(*session,
            { .from = source,
                .to = "put.bin",
                .size = 5000,
                .honourTransferType = false,
                .keepSource = keepSource })
                        .ok());
        EXPECT_EQ(QFile::exists(source), localStays);
        EXPECT_TRUE(recorder_.events().empty()); // deleting the local file is not logged
    }
    // A source that nobody may delete: the file arrived, and the failed delete is logged.
    SettingsStore::set(settings::config::kDeletePut, "YES");
    recorder_.clear();
    const QString kept = QStringLiteral("/proc/self/comm");
    ASSERT_TRUE(putFile(*session, { .from = kept, .to = "comm", .keepSource = false }).ok());
    EXPECT_EQ(recorder_.logIds(), std::vector<int> { ids::kLogDeletionFailed });
    EXPECT_EQ(recorder_.events().at(0).field1, kept);
    EXPECT_TRUE(recorder_.events().at(0).detail.contains(kept));

    // DeleteGet, whether the server refuses DELE, and what is logged (the remote file goes only
    // with a logged success).
    const std::tuple<const char*, bool, std::vector<int>> gets[] = {
        { "YES", false, { ids::kLogDeletionOk } },
        { "YES", true, { ids::kLogDeletionFailed } },
        { "NO", false, {} },
    };
    for (const auto& [deleteGet, refuse, logged] : gets) {
        SCOPED_TRACE(std::string(deleteGet) + (refuse ? " refused" : ""));
        SettingsStore::set(settings::config::kDeleteGet, deleteGet);
        ASSERT_TRUE(makeFile(pyftpd_->home() + "/get.bin", 5000, 4));
        pyftpd_->setFaults({ .refuse = refuse ? QStringList { "DELE" } : QStringList() });
        recorder_.clear();
        ASSERT_TRUE(getFile(*session,
            { .from = "get.bin",
                .to = local_.filePath("get.bin"),
                .size = 5000,
                .honourTransferType = false })
                        .ok());
        EXPECT_EQ(recorder_.logIds(), logged);
        for (const auto& event : recorder_.events()) {
            EXPECT_EQ(event.field1, "get.bin");
            EXPECT_EQ(event.detail.contains("550"), refuse);
        }
        EXPECT_EQ(QFile::exists(pyftpd_->home() + "/get.bin"),
            logged != std::vector { int(ids::kLogDeletionOk) });
    }
}

TEST_F(TransferRoutinesTest, CancelBeforeTheRemoteOpenCreatesNothing)
{
    auto session = connect(served_.front());
    const auto source = local_.filePath("c.bin");
    ASSERT_TRUE(makeFile(source, 10'000, 5));
    session->requestCancel();
    const auto result = putFile(*session, { .from = source, .to = "c.bin", .size = 10'000 });
    EXPECT_EQ(result.code, ids::kPutCanceled);
    EXPECT_EQ(result.message(), "FTP Put Canceled");
    EXPECT_EQ(pyftpd_->commandCount("STOR"), 0);
    EXPECT_FALSE(QFile::exists(pyftpd_->home() + "/c.bin"));
}

// The source is a pipe that the test feeds: the put sends what came, then waits in a read for
// more, and the cancel falls between two known rounds.
TEST_F(TransferRoutinesTest, CancelDuringAPutLeavesThePartialFile)
{
    auto session = connect(served_.front());
    const auto pipe = local_.filePath("pipe");
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const auto stored = pyftpd_->home() + "/part.bin";
    // More than libcurl's buffer, so that a full buffer went out before the pump waits.
    constexpr qint64 kFirst = 2 * FtpConnection::kCurlBufferSize;
    constexpr qint64 kSent = FtpConnection::kCurlBufferSize;
    // The feeder may still be writing when the put closes its end of the pipe.
    const auto oldHandler = std::signal(SIGPIPE, SIG_IGN);
    std::jthread feeder([&] {
        QFile writer(pipe);
        if (!writer.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return;
        writer.write(makeBytes(kFirst, 6));
        if (!waitUntil([&] { return QFileInfo(stored).size() >= kSent; }, 10s))
            return;
        session->requestCancel();
        writer.write(makeBytes(kFirst, 7));
    });
    const auto result = putFile(*session, { .from = pipe, .to = "part.bin", .size = 100 * kFirst });
    feeder.join();
    std::signal(SIGPIPE, oldHandler);
    EXPECT_EQ(result.code, ids::kPutCanceled) << result.text().toStdString();
    EXPECT_GE(QFileInfo(stored).size(), kSent);
    EXPECT_LT(QFileInfo(stored).size(), 100 * kFirst);
}

// A get waiting on a server that holds its reply: only the worker's stop request can end it.
TEST_F(TransferRoutinesTest, StopRequestEndsAGet)
{
    useQuickTimeouts(30); // far beyond the test: only the stop can end the wait
    ASSERT_TRUE(makeFile(pyftpd_->home() + "/held.bin", 10'000, 8));
    std::stop_source stop;
    auto session = connect(served_.front(), stop.get_token());
    pyftpd_->setFaults({ .stall = { { "RETR", FtpFaults::kForever } } });
    std::jthread user([&] {
        if (waitUntil([&] { return pyftpd_->commandCount("RETR") == 1; }, 10s))
            stop.request_stop();
    });
    const auto result = getFile(
        *session, { .from = "held.bin", .to = local_.filePath("held.bin"), .size = 10'000 });
    EXPECT_EQ(result.code, ids::kGetCanceled) << result.text().toStdString();
    EXPECT_FALSE(QFile::exists(local_.filePath("held.bin")));
}

TEST_F(TransferRoutinesTest, FailuresEndTheFileWithACodeAndTheConnectionGoesOn)
{
    // Passive: in active mode the server's 426 can overtake the data connection it closed, and
    // libcurl then takes none of the bytes that were sent (the code is the same).
    SettingsStore::set(settings::ftp::kPassive, "YES");
    auto session = connect(served_.front());
    const auto home = pyftpd_->home();
    // After each failure the connection goes on with the next file.
    const auto nextFileGoes = [&] {
        pyftpd_->setFaults({});
        const auto next = local_.filePath("next.bin");
        return makeFile(next, 1000, 11)
            && putFile(*session, { .from = next, .to = "next.bin", .size = 1000 }).ok();
    };

    const auto gone = local_.filePath("gone.bin");
    auto result = putFile(*session, { .from = gone, .to = "gone.bin", .size = 10 });
    EXPECT_EQ(result.code, int(LocalFileError::FileNotFound)) << result.text().toStdString();
    EXPECT_TRUE(result.message().contains(gone));
    EXPECT_FALSE(QFile::exists(home + "/gone.bin"));
    EXPECT_TRUE(nextFileGoes());

    // The size was taken when the job was built; the file shrank before it was sent.
    const auto shrunk = local_.filePath("shrunk.bin");
    ASSERT_TRUE(makeFile(shrunk, 200'000, 10) && QFile::resize(shrunk, 50'000));
    result = putFile(*session, { .from = shrunk, .to = "shrunk.bin", .size = 200'000 });
    EXPECT_EQ(result.code, int(LocalFileError::EndOfFile)) << result.text().toStdString();
    EXPECT_TRUE(result.message().contains(shrunk));
    EXPECT_TRUE(result.message().contains("50000 of 200000 bytes"));
    EXPECT_TRUE(nextFileGoes());

    ASSERT_TRUE(makeFile(home + "/remote.bin", 1'000'000, 9));
    pyftpd_->setFaults({ .closeDataAfter = 100'000, .closeDataOn = { "RETR" } });
    const auto partial = local_.filePath("partial.bin");
    result = getFile(*session, { .from = "remote.bin", .to = partial, .size = 1'000'000 });
    EXPECT_EQ(result.code, inet::kConnectionTerminated) << result.text().toStdString();
    EXPECT_FALSE(QFile::exists(partial)); // nothing of a cut get stays
    EXPECT_FALSE(QFile::exists(GetPump::partialPath(partial)));
    EXPECT_TRUE(nextFileGoes());
}

// The server closed the control connection between two files, as at the end of its idle
// time-out: libcurl would log in again for the next file; it fails at once instead.
TEST_F(TransferRoutinesTest, AConnectionTheServerClosedIsNotLoggedInAgain)
{
    auto session = connect(served_.front());
    FtpFaults faults;
    faults.hangUpAfterUpload = true;
    pyftpd_->setFaults(faults);
    const auto source = local_.filePath("one.bin");
    ASSERT_TRUE(makeFile(source, 1000, 13));
    ASSERT_TRUE(putFile(*session, { .from = source, .to = "one.bin", .size = 1000 }).ok());
    ASSERT_TRUE(waitUntil([&] { return pyftpd_->commandCount("HANGUP") == 1; }, 5s));

    const auto next = putFile(*session, { .from = source, .to = "two.bin", .size = 1000 });
    EXPECT_EQ(next.code, inet::kConnectionTerminated) << next.text().toStdString();
    EXPECT_EQ(pyftpd_->commandCount("USER"), 1);
}

// The local disk fills up: a tiny file system mounted for the test (root only), or a file-size
// limit on this process.
TEST_F(TransferRoutinesTest, FullDiskOnAGetSaysSoAndNamesThePartialFile)
{
    constexpr qint64 kRoom = 64 * 1024;
    ASSERT_TRUE(makeFile(pyftpd_->home() + "/big.bin", 1'000'000, 12));
    auto session = connect(served_.front());
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN); // a write past the limit fails instead
    for (const bool tmpfs : { true, false }) {
        SCOPED_TRACE(tmpfs ? "full file system" : "file-size limit");
        const auto folder = local_.filePath(tmpfs ? "small-disk" : "limited");
        ASSERT_TRUE(QDir().mkpath(folder));
        const auto mountPoint = QFile::encodeName(folder);
        rlimit old {};
        ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
        if (tmpfs
            && (::geteuid() != 0
                || ::mount("tmpfs", mountPoint.constData(), "tmpfs", 0, "size=64k") != 0)) {
            std::cout << "[ SKIPPED  ] mounting a tmpfs needs root\n";
            continue;
        }
        rlimit limited = old;
        limited.rlim_cur = kRoom;
        ASSERT_TRUE(tmpfs || ::setrlimit(RLIMIT_FSIZE, &limited) == 0);
        const auto target = folder + "/big.bin";
        const auto result
            = getFile(*session, { .from = "big.bin", .to = target, .size = 1'000'000 });
        if (tmpfs)
            ::umount2(mountPoint.constData(), MNT_DETACH);
        else
            ::setrlimit(RLIMIT_FSIZE, &old);
        EXPECT_EQ(result.code, int(LocalFileError::DiskFull)) << result.text().toStdString();
        EXPECT_TRUE(result.message().startsWith("The local disk is full"));
        EXPECT_TRUE(result.message().contains(target)) << result.message().toStdString();
        EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList {});
    }
    std::signal(SIGXFSZ, oldHandler);
}

} // namespace
} // namespace zelto::test
