#include "log/LogWriter.h"

#include "TempSettings.h"
#include "TestFiles.h"
#include "TestNotifier.h"
#include "TestWait.h"
#include "log/LogFile.h"
#include "log/LogListener.h"
#include "log/LogStamp.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <future>
#include <latch>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <thread>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr char kLineA[] = "32863\t10:00\t01/02/2024\ta.txt\tsite\t/pub\t\n";
constexpr char kLineB[] = "32864\t10:01\t01/02/2024\tb.txt\tsite\t/pub\t550 denied\n";
constexpr char kOldFile[] = "FTP_SERVER_FILE\n32861\t09:00\t01/02/2024\tsite\t\t\t\n";

// Keeps every record handed to the screen; the "stuck" one holds the writer's lock until released.
struct RecordingListener final : LogListener {
    void recordAdded(const LogRecord& record, bool visible) override
    {
        if (record.field1 == QStringLiteral("stuck")) {
            entered = true;
            release.wait();
        }
        const std::lock_guard guard(mutex);
        records.append(record);
        shown.append(visible);
    }
    std::mutex mutex;
    QList<LogRecord> records;
    QList<bool> shown;
    std::atomic<bool> entered { false };
    std::latch release { 1 };
};

LogEvent event(const char* line) // a kLineA/kLineB record as the engine reports it
{
    const QStringList f = QString::fromLatin1(line).chopped(1).split(u'\t');
    return { f[0] == u"32863" ? ids::kLogFtpTransferComplete : ids::kLogFtpTransferFailed, f[3],
        f[4], f[5], f[6], f[1], f[2] };
}

// Points the writer at folder/name through the keys it reads.
QString pointLogAt(const QString& folder, const QString& name)
{
    SettingsStore::set(settings::log::kDefaultDir, folder);
    SettingsStore::set(settings::config::kLogFileNameForWriter, name);
    return folder + u'/' + name;
}

// A writer on run.log in a fresh settings store, made once the test has set the keys it reads.
struct LogRun {
    LogWriter& start() { return writer.emplace(notifier, &listener); }
    test::TempSettings temp;
    QString path = pointLogAt(temp.root(), QStringLiteral("run.log"));
    TestNotifier notifier;
    RecordingListener listener;
    std::optional<LogWriter> writer;
};

void setText(const settings::TextKey& key, const char* value)
{
    if (value)
        SettingsStore::set(key, QString::fromLatin1(value));
}

TEST(LogRecord, OutcomeParityAndTheSessionEndMapping)
{
    // Id, the id stored, the outcome; an even outcome is a success.
    const std::tuple<int, quint32, qint32> cases[] = {
        { ids::kLogFtpConnectionOk, 32861, 0 },
        { ids::kLogFtpConnectionFailed, 32862, 1 },
        { ids::kLogInternetConnectionClosed, 32876, 15 },
        // Shown with the text of 32876, yet counted from its own id: a success by parity.
        { ids::kLogSessionEnded, 32876, 16 },
    };
    for (const auto& [id, storedId, outcome] : cases) {
        LogRecord record;
        record.setMessage(id);
        EXPECT_EQ(std::pair(record.messageId, record.outcome), std::pair(storedId, outcome));
        EXPECT_EQ(record.shownUnder(LogFilter::Successful), outcome % 2 == 0) << id;
        EXPECT_EQ(record.shownUnder(LogFilter::Unsuccessful), outcome % 2 == 1) << id;
    }
}

TEST(LogStamp, TimeAndDateFormats)
{
    const QDateTime midnight(QDate(1999, 3, 7), QTime(0, 5));
    const QDateTime noon(QDate(1999, 3, 7), QTime(12, 30));
    const QDateTime march(QDate(1999, 3, 7), QTime(13, 7, 9));
    const QDateTime december(QDate(2024, 12, 25), QTime(8, 0));
    // Now, the format, the time and the date it gives (nullptr: not checked).
    const std::tuple<QDateTime, int, const char*, const char*> cases[] = {
        { midnight, 2, "00:05am", nullptr }, // midnight is not folded to 12
        { noon, 3, "12:30:00pm", nullptr }, // noon stays 12, already afternoon
        { march, 0, "13:07", "07/03/1999" },
        { march, 1, "13:07:09", "03/07/1999" },
        { march, 2, "01:07pm", "07/03" },
        { march, 5, "13:07", "Mar-07-1999" },
        { march, 4, "13:07", "07-Mar-1999" }, // unknown time formats are format 0
        { march, 8, nullptr, "07/03/1999" }, // unknown date formats are format 0
        { december, 7, nullptr, "Dec-25" },
    };
    for (const auto& [now, format, time, date] : cases) {
        EXPECT_TRUE(!time || LogStamp::time(now, format) == QLatin1String(time)) << format;
        EXPECT_TRUE(!date || LogStamp::date(now, format) == QLatin1String(date)) << format;
    }
}

TEST(LogFile, ReadRecordsKeepsRecordsAndSkipsTheRest)
{
    test::TempSettings temp;
    const QString path = temp.root() + QStringLiteral("/old.log");
    writeFile(path,
        QByteArray("32861\tthe first line is never read\t\t\t\t\t\n")
            + "32864\t10:01\t01/02/2024\tb.txt\tsite\t/pub\t\n" // empty detail
            + "32862\t10:02\t01/02/2024\t\tsite\t/pub\tdetail\n" // empty field 1 shifts the rest
            + "32865\tonly\ttwo tabs\n" + "abc\t1\t2\t3\t4\t5\t6\n" + "-5\t1\t2\t3\t4\t5\t6\n"
            + QByteArray("\x00\xff\xfe\t\x01\n\t\t\t\t\x80\xc3\n", 13) + "\n"
            + "32867\t10:03\t01/02/2024\tdir\tsite\t/pub\tüber\n"
            + "32875\t10:04\t01/02/2024\tsite\t\t\tunfinished");
    QStringList read;
    for (const LogRecord& r : LogFile::readRecords(path))
        read << QStringList { QString::number(r.seq), QString::number(r.outcome), r.time, r.date,
            r.field1, r.field2, r.field3, r.detail }
                    .join(u'|');
    EXPECT_EQ(read,
        QStringList({ "1|3|10:01|01/02/2024|b.txt|site|/pub|",
            "2|1|10:02|01/02/2024|site|/pub|detail|", "3|6|10:03|01/02/2024|dir|site|/pub|über" }));
    EXPECT_TRUE(LogFile::readRecords(temp.root() + QStringLiteral("/missing.log")).isEmpty());
    EXPECT_TRUE(LogFile::readRecords(temp.root()).isEmpty());
}

TEST(LogWriter, FileHeaderAndAppendRules)
{
    const QByteArray fresh = QByteArray("FTP_SERVER_FILE\n") + kLineA + kLineB;
    const QByteArray appended = QByteArray(kOldFile) + kLineA + kLineB;
    // The file there (nullptr: none), AppendLog, the file afterwards.
    const std::tuple<const char*, const char*, QByteArray> cases[] = {
        { nullptr, nullptr, fresh }, // missing file
        { kOldFile, nullptr, fresh }, // AppendLog absent starts afresh
        { kOldFile, "YES", appended }, // AppendLog YES keeps the file
        { kOldFile, "no", appended }, // only the exact NO starts afresh
        // A file that is not a log is left alone and logging to file is switched off.
        { "", "YES", "" }, // empty file
        { "FTP_SERVER_FIL\n32861\n", "NO", "FTP_SERVER_FIL\n32861\n" }, // wrong header
        { "FTP_SERVER", "YES", "FTP_SERVER" }, // short header
    };
    for (const auto& [existing, appendLog, expected] : cases) {
        LogRun run;
        if (existing)
            writeFile(run.path, existing);
        setText(settings::log::kAppendLog, appendLog);
        LogWriter& writer = run.start();
        writer.write(event(kLineA));
        writer.write(event(kLineB));

        EXPECT_EQ(contents(run.path), expected) << existing << appendLog;
        EXPECT_EQ(run.listener.records.value(run.listener.records.size() - 1).field1, "b.txt")
            << "the screen goes on either way";
        const bool off = !expected.startsWith("FTP_SERVER_FILE\n");
        EXPECT_EQ(run.notifier.messages,
            off ? QStringList { StringTable::text(ids::kBadLogFileFormat) } : QStringList());
        EXPECT_EQ(SettingsStore::get(settings::log::kToFile), off ? "NO" : "YES");
    }
}

TEST(LogWriter, EarlierRecordsOfAnAppendingLogReachTheFirstListener)
{
    enum class Attach { AtStart, Later, AfterAWrite };
    for (const auto& [attach, earlierShown] : { std::pair { Attach::AtStart, true },
             { Attach::Later, true }, { Attach::AfterAWrite, false } }) {
        LogRun run;
        writeFile(run.path, kOldFile);
        setText(settings::log::kAppendLog, "YES");
        LogWriter& writer
            = attach == Attach::AtStart ? run.start() : run.writer.emplace(run.notifier);
        if (attach == Attach::AfterAWrite)
            writer.write(event(kLineA));
        if (attach != Attach::AtStart)
            writer.addListener(&run.listener);
        const bool shown = !run.listener.records.isEmpty()
            && run.listener.records.front().field1 == QStringLiteral("site");
        EXPECT_EQ(shown, earlierShown) << int(attach);
        EXPECT_EQ(contents(run.path).startsWith(kOldFile), true) << "never written again";
    }
}

// A log file that cannot be written is told once, naming it; the records still reach the screen
// and the setting stays, as the path may work again.
TEST(LogWriter, UnusableLogPathIsToldOnce)
{
    for (const char* name : { "folder.log", "plain/run.log", "pipe.log" }) {
        LogRun run;
        const QString root = run.temp.root();
        QDir(root).mkdir(QStringLiteral("folder.log"));
        writeFile(root + QStringLiteral("/plain"), "x");
        // Opening a pipe to read its header would wait for a writer forever.
        ASSERT_EQ(
            ::mkfifo(QFile::encodeName(root + QStringLiteral("/pipe.log")).constData(), 0600), 0);
        run.path = pointLogAt(root, QString::fromLatin1(name));
        LogWriter& writer = run.start();
        writer.write(event(kLineA));
        writer.write(event(kLineA));
        EXPECT_EQ(run.listener.records.size(), 2);
        EXPECT_EQ(writer.recordsNotWritten(), 2);
        ASSERT_EQ(run.notifier.messages.size(), 1);
        EXPECT_TRUE(run.notifier.messages.front().contains(run.path));
        EXPECT_EQ(SettingsStore::get(settings::log::kToFile), QStringLiteral("YES"));
        EXPECT_FALSE(QFileInfo(run.path).isFile()) << name;
    }
}

TEST(LogWriter, RecordIsOneLineOfItsColumnsAndSessionEndIsStoredAsConnectionClosed)
{
    LogRun run;
    LogWriter& writer = run.start();
    LogEvent e = event(kLineA);
    e.messageId = ids::kLogSessionEnded;
    e.field1 = QStringLiteral("a\tb\nc.txt"); // a name from a hostile listing
    e.detail = QStringLiteral("550 No\r\nsuch\tfile\nhere\r");
    writer.write(e);
    EXPECT_EQ(contents(run.path).split('\n')[1],
        "32876\t10:00\t01/02/2024\ta b c.txt\tsite\t/pub\t550 No  such file here ");
    EXPECT_EQ(run.listener.records.value(0).outcome, 16);
}

TEST(LogWriter, SettingsDecideScreenFileAndFilter)
{
    struct Case {
        const char* toScreen;
        const char* toFile;
        const char* view;
        bool toFileFlag;
        QList<bool> shown; // of the success and the failure
        bool fileWritten;
    };
    for (const Case& c : {
             Case { nullptr, nullptr, nullptr, true, { true, true }, true },
             Case { "yes", "Yes", nullptr, true, {}, false },
             Case { nullptr, nullptr, nullptr, false, { true, true }, false },
             Case { nullptr, nullptr, "SUCCESS", true, { true, false }, true },
             Case { nullptr, nullptr, "all", true, { false, true }, true },
         }) {
        LogRun run;
        setText(settings::log::kToScreen, c.toScreen);
        setText(settings::log::kToFile, c.toFile);
        setText(settings::log::kView, c.view);
        LogWriter& writer = run.start();
        for (LogEvent e : { event(kLineA), event(kLineB) }) {
            e.toFile = c.toFileFlag;
            writer.write(e);
        }
        EXPECT_EQ(run.listener.shown, c.shown) << c.toScreen << c.toFile << c.view;
        EXPECT_EQ(QFile::exists(run.path), c.fileWritten) << c.toScreen << c.toFile << c.view;
    }
}

// The writer takes its folder from LOG and its name from CONFIG, the opposite of the pages that
// write them; the Log page's own file name must not be used.
TEST(LogWriter, PathPairsLogFolderWithConfigName)
{
    // LOG's folder below the temporary root, CONFIG's name, the path's tail.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        { nullptr, nullptr, "/log1.log" },
        { "/logs/", "run.log", "/logs/run.log" },
        { nullptr, "run.log", "/run.log" },
    };
    for (const auto& [logDir, configName, tail] : cases) {
        test::TempSettings temp;
        QDir().mkpath(temp.root() + QStringLiteral("/logs"));
        SettingsStore::set(settings::log::kFileName, QStringLiteral("page.log"));
        SettingsStore::set(settings::config::kDefaultDir, temp.root() + QStringLiteral("/other"));
        if (logDir)
            SettingsStore::set(settings::log::kDefaultDir, temp.root() + QLatin1String(logDir));
        setText(settings::config::kLogFileNameForWriter, configName);
        const QString expected = (logDir ? temp.root() : temp.appDataDir()) + QLatin1String(tail);
        EXPECT_EQ(LogFile::configuredPath(), expected);
        TestNotifier notifier;
        LogWriter(notifier).write(event(kLineA));
        EXPECT_TRUE(QFile::exists(expected)) << tail;
    }
}

TEST(LogWriter, TwoThreadsWriteCompleteLinesWithConsecutiveNumbers)
{
    LogRun run;
    LogWriter& writer = run.start();
    constexpr int kEach = 500;
    const auto writeMany = [&writer](const QString& who) {
        for (int i = 0; i < kEach; ++i) {
            LogEvent e = event(kLineB);
            e.field1 = who + QString::number(i);
            writer.write(e);
        }
    };
    {
        std::jthread first(writeMany, QStringLiteral("first-"));
        std::jthread second(writeMany, QStringLiteral("second-"));
    }
    const QList<QByteArray> lines = contents(run.path).split('\n');
    ASSERT_EQ(lines.size(), 2 * kEach + 2); // header, records, nothing after the last line feed
    ASSERT_EQ(run.listener.records.size(), 2 * kEach);
    for (int i = 0; i < 2 * kEach; ++i) {
        // Numbers count up without gaps, and the file holds the records in that order.
        EXPECT_EQ(run.listener.records[i].seq, static_cast<quint32>(i + 1));
        EXPECT_EQ(lines[i + 1],
            "32864\t10:01\t01/02/2024\t" + run.listener.records[i].field1.toUtf8()
                + "\tsite\t/pub\t550 denied");
    }
}

// A writer stuck while it holds the lock delays another only for the bounded wait: the other's
// record is then written anyway.
TEST(LogWriter, StuckWriterDoesNotHoldUpTheOthers)
{
    LogRun run;
    LogWriter& writer = run.start();
    LogEvent held = event(kLineA);
    held.field1 = QStringLiteral("stuck");
    std::jthread holder([&] { writer.write(held); });
    ASSERT_TRUE(test::waitUntil([&] { return run.listener.entered.load(); }, 5s));

    auto next = std::async(std::launch::async, [&] { writer.write(event(kLineB)); });
    const auto status = next.wait_for(15s);
    const QByteArray written = contents(run.path); // while the stuck one still holds the lock
    run.listener.release.count_down();
    EXPECT_EQ(status, std::future_status::ready) << "a stuck writer blocked another";
    EXPECT_TRUE(written.endsWith(kLineB)) << written.toStdString();
}

} // namespace
} // namespace zelto::test
