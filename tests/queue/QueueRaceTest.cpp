// Jobs that end at the same moment append to the queue at the same moment.

#include "queue/QueueStore.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace zelto {
namespace {

// Each job's outcomes are one update under the file's lock: nothing is lost or mixed, and every
// count-up of the item that all jobs share is counted.
TEST(QueueRaceTest, ConcurrentJobsLoseNoItem)
{
    constexpr int kThreads = 4;
    constexpr int kJobs = 25;
    constexpr int kFiles = 4;
    QTemporaryDir dir;
    QueueStore store(dir.filePath(QStringLiteral("zeltoQue.ini")));
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&store, t] {
            for (int job = 0; job < kJobs; ++job) {
                store.update([&](QueueBatch& batch) {
                    QueueItem item;
                    item.localName = QStringLiteral("shared");
                    batch.appendFailed(item);
                    for (int f = 0; f < kFiles; ++f) {
                        item.localName = QStringLiteral("%1-%2-%3").arg(t).arg(job).arg(f);
                        item.destination = QStringLiteral("host%1").arg(t);
                        batch.appendFailed(item);
                    }
                });
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();

    const auto items = store.loadAll();
    ASSERT_EQ(items.size(), std::size_t(1 + kThreads * kJobs * kFiles));
    EXPECT_EQ(store.find(items.front()), 1);
    for (const QueueItem& item : items) {
        if (item.localName == QLatin1StringView("shared")) {
            EXPECT_EQ(item.numTimes, kThreads * kJobs);
            continue;
        }
        EXPECT_EQ(item.destination, QStringLiteral("host") + item.localName.front());
        EXPECT_EQ(item.numTimes, 1);
    }
}

} // namespace
} // namespace zelto
