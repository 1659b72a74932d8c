// The scheduler's switch and timer, and what a tick starts, with the clock set by the test.

#include "scheduler/Scheduler.h"

#include "TempSettings.h"
#include "TestWait.h"
#include "scheduler/ScheduleStore.h"
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

TEST(SchedulerTest, OnUnlessTheSettingSaysExactlyNo)
{
    TempSettings settings;
    EXPECT_FALSE(Scheduler::onInSettings()) << "absent";
    for (const auto& [value, on] : { std::pair { "NO", false }, { "no", true }, { "", true } }) {
        SettingsStore::set(settings::config::kScheduler, QString::fromLatin1(value));
        EXPECT_EQ(Scheduler::onInSettings(), on) << value;
    }
}

TEST(SchedulerTest, ATickStartsWhatIsDueAtTheClocksNowAndThenKeepsToAMinute)
{
    EventLoop loop; // the timer needs the thread's event loop
    TempSettings settings;
    std::vector<ScheduleEntry> entries;
    for (const char* value : { "report.cmd Daily ---- 07:30 On", "news Daily ---- 07:30 On",
             "late Daily ---- 07:31 On", "REPORT.CMD Weekly Monday 07:30 On" })
        entries.push_back(ScheduleEntry::parse(QString::fromLatin1(value)));
    ScheduleStore::writeEntries(entries);
    QStringList started;
    Scheduler scheduler({ [&](const QString& path) { started.append("script " + path); },
                            [&](const QString& link) { started.append("link " + link); } },
        [] { return QDateTime(QDate(2024, 9, 30), QTime(7, 30, 59)); }); // a Monday

    scheduler.tick();
    EXPECT_FALSE(scheduler.isOn());
    EXPECT_TRUE(started.isEmpty()) << "nothing is checked while off";

    scheduler.setScheduler(true);
    EXPECT_EQ(scheduler.period(), Scheduler::kFirstPeriod);
    for (int tick = 0; tick < 2; ++tick) {
        scheduler.tick();
        EXPECT_TRUE(scheduler.isOn());
        EXPECT_EQ(scheduler.period(), Scheduler::kPeriod);
    }
    // Both ticks fell in 07:30: each started the due entries, in their order.
    const QStringList once = { "script report.cmd", "link news", "script REPORT.CMD" };
    EXPECT_EQ(started, once + once);

    scheduler.setScheduler(false);
    EXPECT_FALSE(scheduler.isOn());
    scheduler.setScheduler(true);
    EXPECT_EQ(scheduler.period(), Scheduler::kFirstPeriod) << "switched on again";
}

} // namespace
} // namespace zelto::test
