// Schedule entries: how the store reads and replaces them, the words of a stored value, and which
// entries are due at a given "now".

#include "TempSettings.h"
#include "scheduler/ScheduleCheck.h"
#include "scheduler/ScheduleChoice.h"
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
        { "weekly Weekly Sunday 09:00 On", monday.addDays(-1), true },
        { "once Once 05/11/1999 10:00 On", at(2000, 11, 5, 10, 0), false },
        { "today Today 05/11/1999 10:00 On", at(1999, 11, 5, 10, 0), true },
        { "month Monthly 31/--/-- 08:00 On", at(2024, 9, 30, 8, 0), false }, // 30 days
        { "month Monthly 05/--/-- 08:00 On", at(2024, 9, 5, 8, 0), true },
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

// The run named next in the tray, and the entries the status bar counts: an entry that can never be
// due (Hourly, off, a bad word, a day already past) is neither.
TEST(ScheduleCheckTest, TheNextRunIsTheFirstMinuteTheDueTestAccepts)
{
    const QDateTime now(QDate(2024, 2, 28), QTime(10, 0, 30)); // a Wednesday
    struct Case {
        const char* value;
        QDateTime next; // invalid: never
    };
    const Case cases[] = {
        { "a Daily ---- 10:01 On", QDateTime(QDate(2024, 2, 28), QTime(10, 1)) },
        // The current minute is over for the next run.
        { "a Daily ---- 10:00 On", QDateTime(QDate(2024, 2, 29), QTime(10, 0)) },
        { "a Weekly Monday 09:00 On", QDateTime(QDate(2024, 3, 4), QTime(9, 0)) },
        { "a Monthly 31/--/-- 08:00 On", QDateTime(QDate(2024, 3, 31), QTime(8, 0)) },
        { "a Yearly 29/02/-- 08:00 On", QDateTime(QDate(2024, 2, 29), QTime(8, 0)) },
        { "a Yearly 28/02/-- 08:00 On", QDateTime(QDate(2025, 2, 28), QTime(8, 0)) },
        { "a Once 01/03/2024 07:00 On", QDateTime(QDate(2024, 3, 1), QTime(7, 0)) },
        { "a Once 27/02/2024 07:00 On", {} },
        { "a Today 28/02/2024 09:59 On", {} },
        { "a Hourly ---- --:30 On", {} },
        { "a Daily ---- 10:01 Off", {} },
        { "a Daily ---- 24:00 On", {} },
        { "a Monthly 32/--/-- 08:00 On", {} },
        { "a Fortnightly ---- 10:01 On", {} },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        const ScheduleEntry entry = ScheduleEntry::parse(QString::fromLatin1(c.value));
        const auto next = ScheduleCheck::next({ entry }, now);
        ASSERT_EQ(next.has_value(), c.next.isValid());
        if (next) {
            EXPECT_EQ(next->at, c.next);
            // The due test agrees at that minute.
            EXPECT_EQ(ScheduleCheck::due({ entry }, next->at).size(), 1u);
        }
    }
    const auto first = ScheduleCheck::next({ ScheduleEntry::parse("late Daily ---- 12:00 On"),
                                               ScheduleEntry::parse("soon Daily ---- 11:00 On") },
        now);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->entry.name, QStringLiteral("soon"));
}

// A stored entry that the configurator could not have made is named for its bad word; one it could
// have made has no fault, whatever its frequency.
TEST(ScheduleChoiceTest, FaultsNameTheWordTheSchedulerCannotUse)
{
    const struct {
        const char* value;
        const char* fault; // a part of the fault; empty: none
    } cases[] = {
        { "a Once 29/02/2024 10:00 On", "" },
        { "a Once 30/02/2024 10:00 On", "the date" },
        { "a Today 05/11/99 10:00 On", "the date" },
        { "a Hourly ---- --:59 Off", "" },
        { "a Hourly ---- 10:00 On", "the time" },
        { "a Daily ---- 10:60 On", "the time" },
        { "a Weekly Funday 10:00 On", "the date" },
        { "a Monthly 00/--/-- 10:00 On", "the date" },
        { "a Yearly 29/02/-- 10:00 On", "" },
        { "a Yearly 31/04/-- 10:00 On", "the date" },
        { "a daily ---- 10:00 On", "not a frequency" },
        { "a Daily ---- 10:00 on", "the state" },
        { "a Daily ----", "the time" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        const QString fault = ScheduleChoice::faultOf(ScheduleEntry::parse(c.value));
        if (*c.fault == 0)
            EXPECT_TRUE(fault.isEmpty()) << fault.toStdString();
        else
            EXPECT_TRUE(fault.contains(QLatin1StringView(c.fault))) << fault.toStdString();
    }
}

} // namespace
} // namespace zelto::test
