#include "log/LogFile.h"

#include "LogTestSupport.h"
#include "TempSettings.h"
#include "app/SettingsStore.h"
#include "log/LogWriter.h"
#include "platform/StringIds.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <optional>

namespace zelto {
namespace {

TEST(LogFile, ReadRecordsKeepsRecordsAndSkipsTheRest)
{
    test::TempSettings temp;
    const QString path = temp.root() + QStringLiteral("/old.log");
    test::putFile(path,
        QByteArray("32861\tthe first line is never read\t\t\t\t\t\n")
            + "32863\t10:00\t01/02/2024\ta.txt\tsite\t/pub\tok\n"
            + "32864\t10:01\t01/02/2024\tb.txt\tsite\t/pub\t\n" // empty detail
            + "32862\t10:02\t01/02/2024\t\tsite\t/pub\tdetail\n" // empty field 1 shifts the rest
            + "32865\tonly\ttwo tabs\n" // too few tabs
            + "abc\t1\t2\t3\t4\t5\t6\n" // no number
            + "-5\t1\t2\t3\t4\t5\t6\n" // no event id
            + QByteArray("\x00\xff\xfe\t\x01\n\t\t\t\t\x80\xc3\n", 15) // binary garbage
            + "\n" // empty line
            + "32867\t10:03\t01/02/2024\tdir\tsite\t/pub\tüber\n"
            + "32875\t10:04\t01/02/2024\tsite\t\t\tno line feed");

    const QList<LogRecord> records = LogFile::readRecords(path);
    ASSERT_EQ(records.size(), 4);
    EXPECT_EQ(records[0].messageId, 32863u);
    EXPECT_EQ(records[0].outcome, 2);
    EXPECT_EQ(records[0].time, QStringLiteral("10:00"));
    EXPECT_EQ(records[0].date, QStringLiteral("01/02/2024"));
    EXPECT_EQ(records[0].field1, QStringLiteral("a.txt"));
    EXPECT_EQ(records[0].field2, QStringLiteral("site"));
    EXPECT_EQ(records[0].field3, QStringLiteral("/pub"));
    EXPECT_EQ(records[0].detail, QStringLiteral("ok"));
    EXPECT_EQ(records[1].outcome, 3);
    EXPECT_TRUE(records[1].detail.isEmpty());
    EXPECT_EQ(records[2].field1, QStringLiteral("site"));
    EXPECT_EQ(records[2].field3, QStringLiteral("detail"));
    EXPECT_TRUE(records[2].detail.isEmpty());
    EXPECT_EQ(records[3].detail, QStringLiteral("über"));
    for (qsizetype i = 0; i < records.size(); ++i)
        EXPECT_EQ(records[i].seq, static_cast<quint32>(i + 1));

    EXPECT_TRUE(LogFile::readRecords(temp.root() + QStringLiteral("/missing.log")).isEmpty());
    EXPECT_TRUE(LogFile::readRecords(temp.root()).isEmpty());
}

// The writer takes its folder from LOG and its name from CONFIG, the opposite of the pages that
// write them; the Log page's own file name must not be used.
TEST(LogFile, PathPairsLogFolderWithConfigName)
{
    struct Case {
        const char* name;
        std::optional<QString> logDir; // below the temporary root
        std::optional<QString> configName;
        bool inDataFolder;
        QString tail;
    };
    for (const Case& c : {
             Case { "nothing stored", {}, {}, true, QStringLiteral("/log1.log") },
             Case { "folder without separator", QStringLiteral("/logs"), QStringLiteral("run.log"),
                 false, QStringLiteral("/logs/run.log") },
             Case { "folder with separator", QStringLiteral("/logs/"), QStringLiteral("run.log"),
                 false, QStringLiteral("/logs/run.log") },
             Case { "name only", {}, QStringLiteral("run.log"), true, QStringLiteral("/run.log") },
         }) {
        SCOPED_TRACE(c.name);
        test::TempSettings temp;
        QDir().mkpath(temp.root() + QStringLiteral("/logs"));
        // What the Log page and the System page write: never read by the writer.
        SettingsStore::set(settings::log::kFileName, QStringLiteral("page.log"));
        SettingsStore::set(settings::config::kDefaultDir, temp.root() + QStringLiteral("/other"));
        if (c.logDir)
            SettingsStore::set(settings::log::kDefaultDir, temp.root() + *c.logDir);
        if (c.configName)
            SettingsStore::set(settings::config::kLogFileNameForWriter, *c.configName);
        const QString expected = (c.inDataFolder ? temp.appDataDir() : temp.root()) + c.tail;

        EXPECT_EQ(LogFile::configuredPath(), expected);
        test::RecordingNotifier notifier;
        LogWriter writer(notifier);
        EXPECT_EQ(writer.filePath(), expected);
        LogEvent event;
        event.messageId = ids::kLogFtpConnectionOk;
        writer.write(event);
        EXPECT_TRUE(QFile::exists(expected));
    }
}

} // namespace
} // namespace zelto
