// Remote-to-remote copy between two real servers.

#include "FtpTestKit.h"
#include "TestFiles.h"
#include "ftp/CTransferSession.h"
#include "ftp/FtpErrors.h"
#include "ftp/TransferCounters.h"
#include "ftp/TransferRoutines.h"
#include "platform/StringIds.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

QByteArray contents(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class CopyFileTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (const auto reason = FtpServer::unavailableReason())
            GTEST_SKIP() << reason->toStdString();
        useQuickTimeouts(2);
        useDirectAccess();
        from_ = std::make_unique<FtpServer>();
        to_ = std::make_unique<FtpServer>();
    }

    void connect(std::stop_token stop = {})
    {
        source_ = std::make_unique<CTransferSession>(recorder_.services, nullptr, stop);
        target_ = std::make_unique<CTransferSession>(recorder_.services, nullptr, stop);
        ASSERT_TRUE(source_->connectJob(siteOf(*from_)).ok());
        ASSERT_TRUE(target_->connectJob(siteOf(*to_)).ok());
        recorder_.clear();
    }

    FtpResult copy(const QString& from, const QString& to, qint64 size = 0)
    {
        return copyFile(*source_, *target_, from, to, false, size, {});
    }

    TempSettings settings_;
    Recorder recorder_;
    std::unique_ptr<FtpServer> from_;
    std::unique_ptr<FtpServer> to_;
    std::unique_ptr<CTransferSession> source_;
    std::unique_ptr<CTransferSession> target_;
};

TEST_F(CopyFileTest, CopiesByteExactThroughTheBoundedBuffer)
{
    connect();
    struct Case {
        qint64 size;
        int readBuffer;
        int writeBuffer;
    };
    const Case cases[] = {
        { 0, 4096, 4096 }, // an empty source still makes an empty target
        { 1, 4096, 4096 },
        { 9'000'011, 4096, 1000 }, // more than the buffer between the two transfers
        { 3'000'017, 1000, 4096 },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.size);
        SettingsStore::set(settings::ftp::kReadBuffer, c.readBuffer);
        SettingsStore::set(settings::ftp::kWriteBuffer, c.writeBuffer);
        const auto name = QStringLiteral("c%1.bin").arg(c.size);
        ASSERT_TRUE(makeFile(from_->home() + u'/' + name, c.size, quint64(c.size)));
        const auto before = TransferCounters::instance().snapshot();
        const auto result = copy(name, "copy_" + name, c.size);
        ASSERT_TRUE(result.ok()) << result.text().toStdString();
        const auto stored = to_->home() + "/copy_" + name;
        EXPECT_TRUE(waitUntil([&] { return QFileInfo(stored).size() == c.size; }, 5s));
        EXPECT_TRUE(sameBytes(from_->home() + u'/' + name, stored));
        const auto after = TransferCounters::instance().snapshot();
        EXPECT_EQ(after.filesTransferred - before.filesTransferred, 1);
        EXPECT_EQ(after.remoteBytesRead - before.remoteBytesRead, c.size);
        EXPECT_EQ(after.remoteBytesWritten - before.remoteBytesWritten, c.size);
    }
    EXPECT_EQ(from_->commandCount("USER"), 1);
    EXPECT_EQ(to_->commandCount("USER"), 1);
}

// pyftpdlib keeps LF on disk and sends CRLF in TYPE A; vsftpd stores the wire as it comes. The
// copy hands the wire form on unchanged, in TYPE A at both ends.
TEST_F(CopyFileTest, TextPassesInTheWireForm)
{
    SKIP_WITHOUT(Vsftpd);
    SettingsStore::set(settings::config::kTextExtensions, "txt");
    Vsftpd vsftpd;
    QFile file(from_->home() + "/t.txt");
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("one\ntwo\n");
    file.close();
    source_ = std::make_unique<CTransferSession>(recorder_.services);
    target_ = std::make_unique<CTransferSession>(recorder_.services);
    ASSERT_TRUE(source_->connectJob(siteOf(*from_)).ok());
    ASSERT_TRUE(target_->connectJob(siteOf(vsftpd)).ok());
    ASSERT_TRUE(copy("t.txt", "pub/t.txt").ok());
    EXPECT_TRUE(
        waitUntil([&] { return contents(vsftpd.root() + "/pub/t.txt") == "one\r\ntwo\r\n"; }, 5s));
    const auto log = from_->commandLog();
    ASSERT_GE(log.size(), 2u);
    EXPECT_EQ(log[log.size() - 2].command + ' ' + log[log.size() - 2].argument, "TYPE A");
}

TEST_F(CopyFileTest, AMissingSourceLeavesNoTarget)
{
    connect();
    const auto result = copy("missing.bin", "target.bin");
    EXPECT_EQ(result.code, inet::kServerError);
    EXPECT_TRUE(result.detail.startsWith("550")) << result.detail.toStdString();
    EXPECT_EQ(to_->commandCount("STOR"), 0);
    EXPECT_FALSE(QFile::exists(to_->home() + "/target.bin"));
}

TEST_F(CopyFileTest, EitherSideFailingEndsTheCopyWithItsOwnReason)
{
    ASSERT_TRUE(makeFile(from_->home() + "/big.bin", 5'000'000, 3));
    connect();
    struct Case {
        const char* name;
        FtpServer* server;
        FtpFaults faults;
        int code;
        const char* detail;
    };
    FtpFaults refuseStor;
    refuseStor.refuse = { "STOR" };
    FtpFaults dropSource;
    dropSource.closeDataAfter = 1'000'000;
    dropSource.closeDataOn = { "RETR" };
    FtpFaults dropTarget;
    dropTarget.closeDataAfter = 1'000'000;
    dropTarget.closeDataOn = { "STOR" };
    const Case cases[] = {
        { "target refuses", to_.get(), refuseStor, inet::kServerError,
            "550 STOR refused by the test server." },
        { "source drops", from_.get(), dropSource, inet::kConnectionTerminated, nullptr },
        { "target drops", to_.get(), dropTarget, inet::kConnectionReset, nullptr },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        c.server->setFaults(c.faults);
        const auto started = std::chrono::steady_clock::now();
        const auto result = copy("big.bin", "big.bin", 5'000'000);
        c.server->setFaults({});
        EXPECT_LT(std::chrono::steady_clock::now() - started, 5s);
        if (c.code == inet::kConnectionReset) { // a cut upload sees a reset or a closed socket
            EXPECT_TRUE(
                result.code == inet::kConnectionReset || result.code == inet::kConnectionTerminated)
                << result.text().toStdString();
        } else {
            EXPECT_EQ(result.code, c.code) << result.text().toStdString();
        }
        if (c.detail) {
            EXPECT_EQ(result.detail, c.detail);
        }
        EXPECT_LT(QFileInfo(to_->home() + "/big.bin").size(), 5'000'000);
        // Both connections go on with the next file.
        ASSERT_TRUE(makeFile(from_->home() + "/small.bin", 100, 4));
        EXPECT_TRUE(copy("small.bin", "small.bin", 100).ok());
    }
}

TEST_F(CopyFileTest, StopRequestEndsACopyWaitingOnItsSource)
{
    useQuickTimeouts(30); // only the stop can end the wait within the test
    ASSERT_TRUE(makeFile(from_->home() + "/held.bin", 1000, 5));
    std::stop_source stop;
    connect(stop.get_token());
    FtpFaults faults;
    faults.stall["RETR"] = FtpFaults::kForever;
    from_->setFaults(faults);
    std::jthread user([&] {
        if (waitUntil([&] { return from_->commandCount("RETR") == 1; }, 10s))
            stop.request_stop();
    });
    const auto started = std::chrono::steady_clock::now();
    const auto result = copy("held.bin", "held.bin", 1000);
    EXPECT_EQ(result.code, ids::kGetCanceled) << result.text().toStdString();
    EXPECT_LT(std::chrono::steady_clock::now() - started, 10s);
    EXPECT_EQ(to_->commandCount("STOR"), 0);
}

TEST_F(CopyFileTest, DeleteGetRemovesTheSourceAfterACopy)
{
    SettingsStore::set(settings::config::kDeleteGet, "YES");
    ASSERT_TRUE(makeFile(from_->home() + "/moved.bin", 1000, 6));
    connect();
    ASSERT_TRUE(copy("moved.bin", "moved.bin", 1000).ok());
    EXPECT_FALSE(QFile::exists(from_->home() + "/moved.bin"));
    EXPECT_TRUE(
        waitUntil([&] { return QFileInfo(to_->home() + "/moved.bin").size() == 1000; }, 5s));
    ASSERT_EQ(recorder_.logIds(), std::vector<int> { ids::kLogDeletionOk });
    EXPECT_EQ(recorder_.events()[0].field1, "moved.bin");
    EXPECT_EQ(to_->commandCount("DELE"), 0);
}

} // namespace
} // namespace zelto::test
