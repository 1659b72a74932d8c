#include "log/ConsoleLogReporter.h"

#include "log/LogRecord.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QByteArray>
#include <QList>

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <thread>

namespace zelto {
namespace {

QByteArray readBack(std::FILE* file)
{
    std::rewind(file);
    QByteArray bytes;
    char buffer[4096];
    while (const size_t n = std::fread(buffer, 1, sizeof buffer, file))
        bytes.append(buffer, static_cast<qsizetype>(n));
    return bytes;
}

LogRecord record(int id, const QString& field1, const QString& detail)
{
    LogRecord r;
    r.setMessage(id);
    r.time = QStringLiteral("10:00");
    r.field1 = field1;
    r.field2 = QStringLiteral("site");
    r.detail = detail;
    return r;
}

TEST(ConsoleLogReporter, PrintsShownRecordsOneWholeLineEach)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> out(std::tmpfile(), &std::fclose);
    ASSERT_TRUE(out);
    ConsoleLogReporter reporter(out.get());
    const LogRecord ok = record(ids::kLogFtpTransferComplete, QStringLiteral("a.txt"), {});
    const LogRecord failed = record(
        ids::kLogFtpTransferFailed, QStringLiteral("b\n.txt"), QStringLiteral("550 denied"));
    constexpr int kEach = 200;
    const auto report = [&](const LogRecord& r) {
        for (int i = 0; i < kEach; ++i)
            reporter.recordAdded(r, true);
    };
    {
        std::jthread first(report, ok);
        std::jthread second(report, failed);
    }
    reporter.recordAdded(ok, false); // filtered out: not shown

    const QByteArray okLine = "10:00  "
        + StringTable::text(ids::kLogFtpTransferComplete).toLocal8Bit() + "  a.txt  site";
    const QByteArray failedLine = "10:00  "
        + StringTable::text(ids::kLogFtpTransferFailed).toLocal8Bit()
        + "  b .txt  site  550 denied";
    QList<QByteArray> lines = readBack(out.get()).split('\n');
    ASSERT_EQ(lines.takeLast(), QByteArray());
    ASSERT_EQ(lines.size(), 2 * kEach);
    EXPECT_EQ(lines.count(okLine), kEach);
    EXPECT_EQ(lines.count(failedLine), kEach);
}

} // namespace
} // namespace zelto
