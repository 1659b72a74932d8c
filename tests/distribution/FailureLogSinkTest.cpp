// The interim end of a site's run: one 32864 record per file not sent, as the queue's
// bookkeeping writes it for one site of a distribution.

#include "distribution/FailureLogSink.h"

#include "FtpTestKit.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

TEST(FailureLogSinkTest, LogsEachFileNotSentWithItsRemotePathAndReason)
{
    const auto canceled = StringTable::text(ids::kPutCanceled);
    struct Case {
        const char* remoteFolder;
        int result;
        const char* message;
        const char* file; // nullptr: no record
        QString reason;
    };
    const Case cases[] = {
        { "/pub", 12003, "refused", "/pub/a.txt", QStringLiteral("refused") },
        { "\\pub\\", 240, "no folder", "\\pub\\a.txt", QStringLiteral("no folder") },
        // Cancelled: ended by the cancel, or never started after it.
        { "/pub", ids::kPutCanceled, "FTP Put Canceled (by the user)", "/pub/a.txt", canceled },
        { "/pub", FileEntry::kNotTried, "", "/pub/a.txt", canceled },
        // Not tried because the site could not be reached: the connect's reason.
        { "", FileEntry::kNotTried, "login refused", "a.txt", QStringLiteral("login refused") },
        { "/pub", FileEntry::kSent, "", nullptr, {} },
    };
    Recorder recorder;
    FailureLogSink sink(recorder);
    const JobSite site { QStringLiteral("ftp.example.org"), QStringLiteral("me"),
        QStringLiteral("secret"), 21, QStringLiteral("/pub"), 0 };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.remoteFolder) + " " + std::to_string(c.result));
        recorder.clear();
        FileEntry entry;
        entry.localFolder = QStringLiteral("C:\\local");
        entry.localName = QStringLiteral("a.txt");
        entry.remoteName = QStringLiteral("A.TXT"); // the local name is what the log shows
        entry.remoteFolder = QString::fromUtf8(c.remoteFolder);
        entry.result = c.result;
        entry.message = QString::fromUtf8(c.message);
        const std::vector<FileEntry> files { entry };
        sink.siteFinished({ TransferMode::DistributionPut, site, nullptr, files });

        const auto events = recorder.events();
        if (!c.file) {
            EXPECT_TRUE(events.empty());
            continue;
        }
        ASSERT_EQ(events.size(), 1u);
        EXPECT_EQ(events[0].messageId, ids::kLogFtpTransferFailed);
        EXPECT_EQ(events[0].field1, StringTable::text(ids::kLocalMachine));
        EXPECT_EQ(events[0].field2, site.server);
        EXPECT_EQ(events[0].field3.toStdString(), c.file);
        EXPECT_EQ(events[0].detail, c.reason);
    }
}

} // namespace
} // namespace zelto::test
