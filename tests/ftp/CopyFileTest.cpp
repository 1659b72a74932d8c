// Remote-to-remote copy between two real servers.

#include "FtpTestKit.h"
#include "TestFiles.h"
#include "ftp/CTransferSession.h"
#include "ftp/FtpErrors.h"
#include "ftp/TransferCounters.h"
#include "ftp/TransferRoutines.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <memory>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

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

TEST_F(CopyFileTest, AMissingSourceLeavesNoTarget)
{
    connect();
    const auto result = copy("missing.bin", "target.bin");
    EXPECT_EQ(result.code, inet::kServerError);
    EXPECT_TRUE(result.detail.startsWith("550")) << result.detail.toStdString();
    EXPECT_EQ(to_->commandCount("STOR"), 0);
    EXPECT_FALSE(QFile::exists(to_->home() + "/target.bin"));
}

} // namespace
} // namespace zelto::test
