// The end of each site of a job: the log record of each file not sent, and the queue changes
// that the outcomes and the resend settings call for.

#include "queue/QueueBookkeeping.h"

#include "FtpTestKit.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

const JobSite kSite { QStringLiteral("ftp.example.org"), QStringLiteral("me"),
    QStringLiteral("secret"), 2121, QStringLiteral("/pub"), 0, {} };
const JobSite kTarget { QStringLiteral("second.example.org"), QStringLiteral("you"),
    QStringLiteral("word"), 21, QStringLiteral("/in"), 0, {} };

FileEntry fileNamed(const QString& name, int result, const QString& message = {})
{
    FileEntry file;
    file.localFolder = QStringLiteral("/home/me");
    file.localName = name;
    file.remoteName = name.toUpper(); // the log shows the local name
    file.remoteFolder = QStringLiteral("/pub");
    file.result = result;
    file.message = message;
    return file;
}

TEST(QueueBookkeepingTest, LogsEachFileNotSentWithItsSidesAndReason)
{
    const auto local = StringTable::text(ids::kLocalMachine);
    const auto putCanceled = StringTable::text(ids::kPutCanceled);
    const QString host = kSite.server;
    struct Case {
        TransferMode mode;
        const char* remoteFolder;
        int result;
        const char* message;
        QStringList record; // source, destination, file, reason; empty: no record
    };
    const Case cases[] = {
        // A distribution's site logs the file in its remote folder.
        { TransferMode::DistributionPut, "/pub", 12003, "refused",
            { local, host, "/pub/a.txt", "refused" } },
        { TransferMode::DistributionPut, "\\pub\\", 240, "no folder",
            { local, host, "\\pub\\a.txt", "no folder" } },
        // Cancelled: ended by the cancel, or never started after it.
        { TransferMode::DistributionPut, "/pub", ids::kPutCanceled, "FTP Put Canceled (by you)",
            { local, host, "/pub/a.txt", putCanceled } },
        { TransferMode::DistributionPut, "/pub", FileEntry::kNotTried, "",
            { local, host, "/pub/a.txt", putCanceled } },
        // Not tried because the site could not be reached: the connect's reason.
        { TransferMode::DistributionPut, "", FileEntry::kNotTried, "login refused",
            { local, host, "a.txt", "login refused" } },
        { TransferMode::DistributionPut, "/pub", FileEntry::kSent, "", {} },
        // Other jobs log the local name.
        { TransferMode::Put, "/pub", 12003, "refused", { local, host, "a.txt", "refused" } },
        { TransferMode::Get, "/pub", ids::kGetCanceled, "",
            { host, local, "a.txt", StringTable::text(ids::kGetCanceled) } },
        { TransferMode::Copy, "/pub", 12003, "refused",
            { host, kTarget.server, "a.txt", "refused" } },
    };
    TempSettings settings;
    Recorder recorder;
    QueueBookkeeping bookkeeping(recorder, recorder);
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.remoteFolder) + " " + std::to_string(c.result));
        recorder.clear();
        FileEntry file = fileNamed(QStringLiteral("a.txt"), c.result, QString::fromUtf8(c.message));
        file.remoteFolder = QString::fromUtf8(c.remoteFolder);
        const std::vector<FileEntry> files { file };
        bookkeeping.siteFinished({ c.mode, kSite, &kTarget, files });
        const auto events = recorder.events();
        if (c.record.isEmpty()) {
            EXPECT_TRUE(events.empty());
            continue;
        }
        ASSERT_EQ(events.size(), 1u);
        EXPECT_EQ(events[0].messageId, ids::kLogFtpTransferFailed);
        EXPECT_EQ(
            QStringList({ events[0].field1, events[0].field2, events[0].field3, events[0].detail }),
            c.record);
    }
}

TEST(QueueBookkeepingTest, QueueFollowsTheOutcomesAndTheResendSettings)
{
    using Attempts = std::vector<std::pair<std::string, int>>; // name, NumTimes
    struct Step {
        const char* what;
        int resendFail;
        const char* freq;
        TransferMode mode;
        std::vector<std::pair<const char*, int>> files; // name, result
        std::vector<std::pair<const char*, int>> queue;
    };
    const Step steps[] = {
        { "resend off: nothing queued", 0, "", TransferMode::Put, { { "a", 12003 } }, {} },
        { "queued with one attempt", 1, "", TransferMode::DistributionPut,
            { { "a", 12003 }, { "b", 12003 }, { "c", FileEntry::kSent } },
            { { "a", 1 }, { "b", 1 } } },
        { "failed again: counted up", 1, "", TransferMode::Put, { { "a", 12003 } },
            { { "a", 2 }, { "b", 1 } } },
        { "an empty file sent leaves the queue, resend off or not", 0, "", TransferMode::Put,
            { { "b", FileEntry::kSent } }, { { "a", 2 } } },
        { "FREQ_NUM 3 keeps a third failure", 1, "FREQ_NUM", TransferMode::Put, { { "a", 12003 } },
            { { "a", 3 } } },
        { "and drops a fourth", 1, "FREQ_NUM", TransferMode::Put, { { "a", 12003 } }, {} },
        { "a download and a copy", 1, "", TransferMode::Get, { { "d", 12003 } }, { { "d", 1 } } },
        { "", 1, "", TransferMode::Copy, { { "d", 12003 } }, { { "d", 1 }, { "d", 1 } } },
    };
    TempSettings settings;
    SettingsStore::set(settings::schedule::kResendFreqNum, 3);
    Recorder recorder;
    QueueBookkeeping bookkeeping(recorder, recorder);
    for (const Step& step : steps) {
        SCOPED_TRACE(step.what);
        SettingsStore::set(settings::schedule::kResendFail, step.resendFail);
        SettingsStore::set(settings::schedule::kResendFreq, QString::fromLatin1(step.freq));
        std::vector<FileEntry> files;
        for (const auto& [name, result] : step.files)
            files.push_back(
                fileNamed(QString::fromLatin1(name), result, QStringLiteral("refused")));
        bookkeeping.siteFinished({ step.mode, kSite, &kTarget, files });
        Attempts queue;
        for (const QueueItem& item : QueueStore().loadAll())
            queue.emplace_back(item.localName.toStdString(), item.numTimes);
        EXPECT_EQ(queue, Attempts(step.queue.begin(), step.queue.end()));
    }
    const auto items = QueueStore().loadAll();
    const QStringList download { items[0].source, items[0].destination, items[0].ftpMethod,
        items[0].port };
    EXPECT_EQ(download, QStringList({ kSite.server, "Local", "ZELTO_GET", "2121" }));
    const QStringList copy { items[1].source, items[1].destination, items[1].ftpMethod,
        items[1].remLogin, items[1].remPassword, items[1].remRemDir, items[1].remotePort };
    EXPECT_EQ(copy,
        QStringList({ kSite.server, kTarget.server, "ZELTO_XFER", "you", "word", "/in", "21" }));
}

} // namespace
} // namespace zelto::test
