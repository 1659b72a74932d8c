#include "log/LogWriter.h"

#include "LogTestSupport.h"
#include "TempSettings.h"
#include "TestWait.h"
#include "app/SettingsStore.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <future>
#include <latch>
#include <optional>
#include <sys/stat.h>
#include <thread>

namespace zelto {
namespace {

using namespace std::chrono_literals;
using test::contents;
using test::putFile;
using test::RecordingListener;
using test::RecordingNotifier;

constexpr char kHeader[] = "FTP_SERVER_FILE\n";
constexpr char kLineA[] = "32863\t10:00\t01/02/2024\ta.txt\tsite\t/pub\t\n";
constexpr char kLineB[] = "32864\t10:01\t01/02/2024\tb.txt\tsite\t/pub\t550 denied\n";
constexpr char kOldFile[] = "FTP_SERVER_FILE\n32861\t09:00\t01/02/2024\tsite\t\t\t\n";

LogEvent eventA()
{
    return { ids::kLogFtpTransferComplete, QStringLiteral("a.txt"), QStringLiteral("site"),
        QStringLiteral("/pub"), {}, QStringLiteral("10:00"), QStringLiteral("01/02/2024") };
}

LogEvent eventB()
{
    return { ids::kLogFtpTransferFailed, QStringLiteral("b.txt"), QStringLiteral("site"),
        QStringLiteral("/pub"), QStringLiteral("550 denied"), QStringLiteral("10:01"),
        QStringLiteral("01/02/2024") };
}

// Points the writer at folder/name through the keys it reads.
QString pointLogAt(const QString& folder, const QString& name)
{
    SettingsStore::set(settings::log::kDefaultDir, folder);
    SettingsStore::set(settings::config::kLogFileNameForWriter, name);
    return folder + u'/' + name;
}

void setText(const settings::TextKey& key, const std::optional<const char*>& value)
{
    if (value)
        SettingsStore::set(key, QString::fromLatin1(*value));
}

TEST(LogWriter, FileHeaderAndAppendRules)
{
    struct Case {
        const char* name;
        std::optional<QByteArray> existing;
        std::optional<const char*> appendLog;
        QByteArray expected;
        bool switchedOff;
    };
    const QByteArray fresh = QByteArray(kHeader) + kLineA + kLineB;
    const QByteArray appended = QByteArray(kOldFile) + kLineA + kLineB;
    for (const Case& c : {
             Case { "missing file", std::nullopt, std::nullopt, fresh, false },
             Case { "AppendLog absent starts afresh", kOldFile, std::nullopt, fresh, false },
             Case { "AppendLog NO starts afresh", kOldFile, "NO", fresh, false },
             Case { "AppendLog YES keeps the file", kOldFile, "YES", appended, false },
             // Only the exact word "NO" starts afresh.
             Case { "AppendLog no appends", kOldFile, "no", appended, false },
             Case { "empty file", QByteArray(), "YES", QByteArray(), true },
             Case {
                 "wrong header", "FTP_SERVER_FIL\n32861\n", "NO", "FTP_SERVER_FIL\n32861\n", true },
             Case { "short header", "FTP_SERVER", "YES", "FTP_SERVER", true },
         }) {
        SCOPED_TRACE(c.name);
        test::TempSettings temp;
        const QString path = pointLogAt(temp.root(), QStringLiteral("run.log"));
        if (c.existing)
            putFile(path, *c.existing);
        setText(settings::log::kAppendLog, c.appendLog);
        RecordingNotifier notifier;
        RecordingListener listener;
        LogWriter writer(notifier, &listener);
        writer.write(eventA());
        writer.write(eventB());

        EXPECT_EQ(contents(path), c.expected);
        // The screen goes on either way (after the earlier records of an appending log).
        const auto entries = listener.entries();
        ASSERT_GE(entries.size(), 2u);
        EXPECT_EQ(entries[entries.size() - 1].record.field1, QStringLiteral("b.txt"));
        const auto messages = notifier.messages();
        if (c.switchedOff) {
            ASSERT_EQ(messages.size(), 1u);
            EXPECT_EQ(messages[0].text, StringTable::text(ids::kBadLogFileFormat));
            EXPECT_EQ(messages[0].icon, MessageIcon::Stop);
            EXPECT_EQ(SettingsStore::get(settings::log::kToFile), QStringLiteral("NO"));
        } else {
            EXPECT_TRUE(messages.empty());
            EXPECT_EQ(SettingsStore::get(settings::log::kToFile), QStringLiteral("YES"));
        }
    }
}

TEST(LogWriter, UnusableLogPathFailsQuietly)
{
    struct Case {
        const char* name;
        // Makes the obstacle in `root` and returns the log file's name there (or empty to skip).
        QString (*prepare)(const QString& root);
    };
    for (const Case& c : {
             Case { "a folder",
                 [](const QString& root) {
                     QDir(root).mkdir(QStringLiteral("folder.log"));
                     return QStringLiteral("folder.log");
                 } },
             Case { "below a plain file",
                 [](const QString& root) {
                     putFile(root + QStringLiteral("/plain"), "x");
                     return QStringLiteral("plain/run.log");
                 } },
             // Opening a pipe to read its header would wait for a writer forever.
             Case { "a pipe",
                 [](const QString& root) {
                     const QString path = root + QStringLiteral("/pipe.log");
                     EXPECT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
                     return QStringLiteral("pipe.log");
                 } },
             Case { "a read-only log file",
                 [](const QString& root) {
                     const QString path = root + QStringLiteral("/ro.log");
                     putFile(path, kOldFile);
                     QFile::setPermissions(path, QFileDevice::ReadOwner);
                     // The superuser writes anyway: nothing to check then.
                     QFile probe(path);
                     return probe.open(QIODevice::Append) ? QString() : QStringLiteral("ro.log");
                 } },
         }) {
        SCOPED_TRACE(c.name);
        test::TempSettings temp;
        const QString name = c.prepare(temp.root());
        if (name.isEmpty())
            continue;
        const QString path = pointLogAt(temp.root(), name);
        const QByteArray before = contents(path);
        RecordingNotifier notifier;
        RecordingListener listener;
        LogWriter writer(notifier, &listener);
        writer.write(eventA());
        writer.write(eventB());

        EXPECT_EQ(listener.entries().size(), 2u);
        EXPECT_TRUE(notifier.messages().empty());
        EXPECT_EQ(SettingsStore::get(settings::log::kToFile), QStringLiteral("YES"));
        EXPECT_EQ(contents(path), before);
    }
}

TEST(LogWriter, DetailIsOneLineAndSessionEndIsStoredAsConnectionClosed)
{
    test::TempSettings temp;
    const QString path = pointLogAt(temp.root(), QStringLiteral("run.log"));
    RecordingNotifier notifier;
    RecordingListener listener;
    LogWriter writer(notifier, &listener);
    LogEvent event = eventA();
    event.messageId = ids::kLogSessionEnded;
    event.detail = QStringLiteral("550 No\r\nsuch file\nhere\r");
    writer.write(event);

    EXPECT_EQ(contents(path),
        QByteArray(kHeader)
            + "32876\t10:00\t01/02/2024\ta.txt\tsite\t/pub\t550 No  such file here \n");
    const auto entries = listener.entries();
    ASSERT_EQ(entries.size(), 1u);
    const LogRecord& record = entries[0].record;
    EXPECT_EQ(record.detail, QStringLiteral("550 No  such file here "));
    EXPECT_EQ(record.outcome, 16);
    EXPECT_EQ(record.seq, 1u);
}

TEST(LogWriter, StampsItsOwnTimeUnlessTheCallerGivesBoth)
{
    test::TempSettings temp;
    pointLogAt(temp.root(), QStringLiteral("run.log"));
    SettingsStore::set(settings::log::kTimeFormat, 1);
    SettingsStore::set(settings::log::kDateFormat, 4);
    RecordingNotifier notifier;
    RecordingListener listener;
    LogWriter writer(notifier, &listener);
    LogEvent event = eventA(); // both given
    writer.write(event);
    event.date.reset(); // a time alone is not enough
    writer.write(event);

    const auto entries = listener.entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].record.time + entries[0].record.date, QStringLiteral("10:0001/02/2024"));
    const QRegularExpression own(
        QStringLiteral("^\\d\\d:\\d\\d:\\d\\d \\d\\d-[A-Z][a-z][a-z]-\\d{4}$"));
    const QString stamped = entries[1].record.time + u' ' + entries[1].record.date;
    EXPECT_TRUE(own.match(stamped).hasMatch()) << stamped.toStdString();
}

TEST(LogWriter, SettingsDecideScreenFileAndFilter)
{
    struct Case {
        const char* name;
        std::optional<const char*> toScreen;
        std::optional<const char*> toFile;
        std::optional<const char*> view;
        bool toFileFlag;
        bool delivered;
        bool okVisible;
        bool failVisible;
        bool fileWritten;
    };
    for (const Case& c : {
             Case { "defaults", {}, {}, {}, true, true, true, true, true },
             Case { "only exact YES", "yes", "Yes", {}, true, false, false, false, false },
             Case { "screen off", "NO", {}, {}, true, false, false, false, true },
             Case { "caller keeps it off the file", {}, {}, {}, false, true, true, true, false },
             Case { "successful", {}, {}, "SUCCESS", true, true, true, false, true },
             Case { "unsuccessful", {}, {}, "UNSUCCESS", true, true, false, true, true },
             Case { "unknown view", {}, {}, "all", true, true, false, true, true },
         }) {
        SCOPED_TRACE(c.name);
        test::TempSettings temp;
        const QString path = pointLogAt(temp.root(), QStringLiteral("run.log"));
        setText(settings::log::kToScreen, c.toScreen);
        setText(settings::log::kToFile, c.toFile);
        setText(settings::log::kView, c.view);
        RecordingNotifier notifier;
        RecordingListener listener;
        LogWriter writer(notifier, &listener);
        for (LogEvent event : { eventA(), eventB() }) {
            event.toFile = c.toFileFlag;
            writer.write(event);
        }
        const auto entries = listener.entries();
        ASSERT_EQ(entries.size(), c.delivered ? 2u : 0u);
        if (c.delivered) {
            EXPECT_EQ(entries[0].visible, c.okVisible);
            EXPECT_EQ(entries[1].visible, c.failVisible);
        }
        EXPECT_EQ(QFile::exists(path), c.fileWritten);
    }
}

TEST(LogWriter, TwoThreadsWriteCompleteLinesWithConsecutiveNumbers)
{
    test::TempSettings temp;
    const QString path = pointLogAt(temp.root(), QStringLiteral("run.log"));
    RecordingNotifier notifier;
    RecordingListener listener;
    LogWriter writer(notifier, &listener);
    constexpr int kEach = 500;
    const auto writeMany = [&writer](const QString& who) {
        for (int i = 0; i < kEach; ++i) {
            LogEvent event = eventB();
            event.field1 = who + QString::number(i);
            writer.write(event);
        }
    };
    {
        std::jthread first(writeMany, QStringLiteral("first-"));
        std::jthread second(writeMany, QStringLiteral("second-"));
    }

    const auto entries = listener.entries();
    ASSERT_EQ(entries.size(), 2u * kEach);
    const QList<QByteArray> lines = contents(path).split('\n');
    ASSERT_EQ(lines.size(), 2 * kEach + 2); // header, records, nothing after the last line feed
    EXPECT_EQ(lines.first(), "FTP_SERVER_FILE");
    for (int i = 0; i < 2 * kEach; ++i) {
        // Numbers count up without gaps, and the file holds the records in that order.
        EXPECT_EQ(entries[i].record.seq, static_cast<quint32>(i + 1));
        const QList<QByteArray> fields = lines[i + 1].split('\t');
        ASSERT_EQ(fields.size(), 7) << lines[i + 1].constData();
        EXPECT_EQ(fields[3], entries[i].record.field1.toUtf8());
        EXPECT_EQ(fields[6], "550 denied");
    }
}

// Holds the writer's lock from inside the write of the record named "stuck".
class StuckListener final : public LogListener {
public:
    void recordAdded(const LogRecord& record, bool /*visible*/) override
    {
        if (record.field1 != QStringLiteral("stuck"))
            return;
        entered_ = true;
        release_.wait();
    }

    std::atomic<bool> entered_ { false };
    std::latch release_ { 1 };
};

TEST(LogWriter, StuckWriterDelaysOthersOnlyForTheBoundedWait)
{
    test::TempSettings temp;
    pointLogAt(temp.root(), QStringLiteral("run.log"));
    RecordingNotifier notifier;
    StuckListener stuck;
    LogWriter writer(notifier, &stuck);
    LogEvent held = eventA();
    held.field1 = QStringLiteral("stuck");
    std::jthread holder([&] { writer.write(held); });
    ASSERT_TRUE(test::waitUntil([&] { return stuck.entered_.load(); }, 5s));

    const auto start = std::chrono::steady_clock::now();
    auto next = std::async(std::launch::async, [&] { writer.write(eventB()); });
    const auto status = next.wait_for(15s);
    const auto waited = std::chrono::steady_clock::now() - start;
    stuck.release_.count_down();

    EXPECT_EQ(status, std::future_status::ready) << "a stuck writer blocked another";
    EXPECT_GE(waited, LogWriter::kLockWait);
}

TEST(LogWriter, ReloadShowsTheEarlierRecordsOfAnAppendingLog)
{
    struct Case {
        const char* appendLog;
        const char* toFile;
        bool shown;
    };
    for (const Case& c :
        { Case { "YES", "YES", true }, Case { "NO", "YES", false }, Case { "YES", "NO", false } }) {
        SCOPED_TRACE(std::string(c.appendLog) + "/" + c.toFile);
        test::TempSettings temp;
        const QString path = pointLogAt(temp.root(), QStringLiteral("run.log"));
        putFile(path, QByteArray(kHeader) + kLineA + kLineB);
        SettingsStore::set(settings::log::kAppendLog, QString::fromLatin1(c.appendLog));
        SettingsStore::set(settings::log::kToFile, QString::fromLatin1(c.toFile));
        RecordingNotifier notifier;
        RecordingListener listener;
        LogWriter writer(notifier, &listener);
        writer.reloadSettings(); // the same path again: nothing more to show

        const auto entries = listener.entries();
        ASSERT_EQ(entries.size(), c.shown ? 2u : 0u);
        if (c.shown) {
            EXPECT_EQ(entries[0].record.seq, 1u);
            EXPECT_EQ(entries[0].record.time, QStringLiteral("10:00"));
            EXPECT_EQ(entries[1].record.detail, QStringLiteral("550 denied"));
            EXPECT_EQ(entries[1].record.outcome, 3);
        }
        EXPECT_EQ(contents(path), QByteArray(kHeader) + kLineA + kLineB) << "shown, not re-written";
    }
}

} // namespace
} // namespace zelto
