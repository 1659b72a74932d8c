// Schedule entries: how the store reads and replaces them, the words of a stored value, and which
// entries are due at a given "now".

#include "TempSettings.h"
#include "scheduler/ScheduleCheck.h"
#include "scheduler/ScheduleStore.h"
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

const QString kSection = QStringLiteral("SCHEDULE");

QString timer(int index)
{
    return QStringLiteral("Timer%1").arg(index);
}

TEST(ScheduleStoreTest, ReadingStopsAtTheFirstMissingTimerAndWritingReplacesEveryEntry)
{
    TempSettings settings;
    SettingsStore::set(settings::schedule::kNumTimers, 5);
    SettingsStore::writeText(kSection, timer(0), QStringLiteral("a Daily ---- 07:30 On"));
    SettingsStore::writeText(kSection, timer(2), QStringLiteral("c Daily ---- 07:30 On"));
    EXPECT_EQ(ScheduleStore::readEntries().size(), 1u) << "Timer1 is missing";
    // Up to six words are read; a value with fewer has "B" as its sixth.
    SettingsStore::writeText(kSection, timer(1), QStringLiteral(" b\tDaily  ----\t07:30 On X Y"));
    auto entries = ScheduleStore::readEntries();
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].sixth, QStringLiteral("B"));
    EXPECT_EQ(entries[1], ScheduleEntry({ "b", "Daily", "----", "07:30", "On", "X" }));

    // Two rows after five.
    for (int k = 0; k < 5; ++k)
        SettingsStore::writeText(kSection, timer(k), QStringLiteral("old Daily ---- 07:30 On"));
    const std::vector<ScheduleEntry> rows = {
        { "report.cmd", "Once", "05/11/1999", "10:00", "On" },
        { "my link", "Daily", "----", "10:00", "On", "X" },
    };
    ScheduleStore::writeEntries(rows);
    EXPECT_EQ(SettingsStore::get(settings::schedule::kNumTimers), 2);
    for (int k = 2; k < 5; ++k)
        EXPECT_EQ(SettingsStore::getText(kSection, timer(k), timer(k)), timer(k)) << "deleted";
    EXPECT_EQ(SettingsStore::getText(kSection, timer(1), {}), "my link Daily ---- 10:00 On");
    // The sixth word is never written, and a name with a blank does not survive.
    entries = ScheduleStore::readEntries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0], rows[0]);
    EXPECT_EQ(entries[1], ScheduleEntry({ "my", "link", "Daily", "----", "10:00", "On" }));
}

TEST(ScheduleCheckTest, EachEntryIsDueInItsOwnMinuteOnly)
{
    const auto at = [](int year, int month, int day, int hour, int minute, int second = 0) {
        return QDateTime(QDate(year, month, day), QTime(hour, minute, second));
    };
    const auto monday = at(2024, 9, 30, 9, 0);
    const auto daily = at(2024, 9, 30, 7, 30);
    struct Case {
        const char* value;
        QDateTime now;
        bool due;
        bool script = false;
    };
    const Case cases[] = {
        { "report.cmd Daily ---- 07:30 On", daily, true, true },
        { "report.cmd Daily ---- 07:30 On", at(2024, 9, 30, 7, 30, 59), true, true },
        { "report.cmd Daily ---- 07:30 On", at(2024, 9, 30, 7, 31), false },
        { "REPORT.CMD Daily ---- 07:30 On", daily, true, true },
        { "weekly Weekly Monday 09:00 On", monday, true },
        { "weekly Weekly Sunday 09:00 On", monday.addDays(-1), true },
        { "once Once 05/11/1999 10:00 On", at(1999, 11, 5, 10, 0), true },
        { "once Once 05/11/1999 10:00 On", at(2000, 11, 5, 10, 0), false },
        { "today Today 05/11/1999 10:00 On", at(1999, 11, 5, 10, 0), true },
        { "month Monthly 31/--/-- 08:00 On", at(2024, 10, 31, 8, 0), true },
        { "month Monthly 31/--/-- 08:00 On", at(2024, 9, 30, 8, 0), false }, // 30 days
        { "month Monthly 05/--/-- 08:00 On", at(2024, 9, 5, 8, 0), true },
        { "year Yearly 24/12/-- 18:00 On", at(2024, 12, 24, 18, 0), true },
        // Hourly has no rule, even when its time word looks like now.
        { "hour Hourly ---- --:00 On", at(2024, 9, 30, 10, 0), false },
        { "hour Hourly ---- 10:00 On", at(2024, 9, 30, 10, 0), false },
        // Words are exact: letter case counts, and only "On" is on.
        { "a Daily ---- 07:30 Off", daily, false },
        { "a Daily ---- 07:30 off", daily, false },
        { "a daily ---- 07:30 On", daily, false },
        { "a Daily ---- 7:30 On", daily, false },
        // Six words: the sixth plays no part. Four words, or garbage: never.
        { "a Daily ---- 07:30 On X", daily, true },
        { "a Daily ---- 07:30", daily, false },
        { "Daily 07:30 On", daily, false },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.value) + " at " + c.now.toString().toStdString());
        const auto due
            = ScheduleCheck::due({ ScheduleEntry::parse(QString::fromLatin1(c.value)) }, c.now);
        ASSERT_EQ(due.size(), c.due ? 1u : 0u);
        if (c.due) {
            EXPECT_EQ(due[0].script, c.script);
        }
    }
}

} // namespace
} // namespace zelto::test
