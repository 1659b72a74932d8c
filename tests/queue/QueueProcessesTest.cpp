// Two processes share one queue file: a cron run beside the windowed program, or two cron runs.

#include "queue/QueueStore.h"

#include <QProcess>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <array>
#include <memory>

namespace zelto {
namespace {

// Each process reads, changes and renames the file in its turn; without a lock that both honour,
// one process's rename throws away the other's appends.
TEST(QueueProcessesTest, TwoProcessesAppendingAtOnceLoseNoItem)
{
    constexpr int kEach = 200;
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("zeltoQue.ini"));
    std::array<std::unique_ptr<QProcess>, 2> children;
    for (std::size_t i = 0; i < children.size(); ++i) {
        children[i] = std::make_unique<QProcess>();
        children[i]->start(QStringLiteral(ZELTO_QUEUE_APPENDER),
            { file, QStringLiteral("p%1").arg(i), QString::number(kEach) });
    }
    for (const auto& child : children) {
        ASSERT_TRUE(child->waitForFinished(120'000)) << child->errorString().toStdString();
        EXPECT_EQ(child->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(child->exitCode(), 0);
    }

    QSet<QString> names;
    for (const QueueItem& item : QueueStore(file).loadAll())
        names.insert(item.localName);
    EXPECT_EQ(names.size(), 2 * kEach);
    EXPECT_EQ(QueueStore(file).count(), 2 * kEach);
}

} // namespace
} // namespace zelto
