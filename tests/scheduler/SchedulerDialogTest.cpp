// The scheduler's configurator: the words each frequency writes, the past refused, and the list's
// changes kept or dropped as the user says.

#include "TempSettings.h"
#include "TestFiles.h"
#include "TestNotifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scheduler/ScheduleStore.h"
#include "scheduler/ui/CSchedulerDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScreen>
#include <QSpinBox>
#include <QTreeWidget>

namespace zelto::test {
namespace {

// A Wednesday, half a minute into 10:00.
const QDateTime kNow(QDate(2026, 11, 25), QTime(10, 0, 30));

class SchedulerDialogTest : public testing::Test {
protected:
    SchedulerDialogTest() { writeFile(script_, {}); }

    std::unique_ptr<CSchedulerDlg> open()
    {
        auto dialog = std::make_unique<CSchedulerDlg>(notifier_, [] { return kNow; });
        dialog->scriptCheck()->setChecked(true);
        dialog->scriptEdit()->setText(script_);
        return dialog;
    }

    // Chooses the frequency and the date and time controls as a user would.
    static void choose(CSchedulerDlg& dialog, int frequency, int day, int month, int year,
        int weekday, int hour, int minute)
    {
        dialog.frequencyBox()->setCurrentIndex(frequency - ids::kFrequencyOnce);
        dialog.dayBox()->setCurrentIndex(day - 1);
        dialog.monthBox()->setCurrentIndex(month - 1);
        dialog.yearBox()->setValue(year);
        dialog.weekdayBox()->setCurrentIndex(weekday);
        dialog.hourBox()->setCurrentIndex(hour);
        dialog.minuteBox()->setCurrentIndex(minute);
    }

    static void storeValues(const QStringList& values)
    {
        std::vector<ScheduleEntry> entries;
        for (const QString& value : values)
            entries.push_back(ScheduleEntry::parse(value));
        ScheduleStore::writeEntries(entries);
    }

    TempSettings settings_;
    TestNotifier notifier_;
    QString script_ = settings_.root() + QStringLiteral("/run.cmd");
};

TEST_F(SchedulerDialogTest, EachFrequencyWritesItsWordsFromTheControlsItUses)
{
    const struct {
        int frequency;
        int day, month, year, weekday, hour, minute;
        const char* date;
        const char* time;
        // Enabled: day, month, year, weekday, hour.
        std::array<bool, 5> uses;
    } cases[] = {
        { ids::kFrequencyOnce, 5, 12, 2027, 0, 9, 7, "05/12/2027", "09:07",
            { true, true, true, false, true } },
        // Today's date, whatever the date controls say.
        { ids::kFrequencyToday, 5, 12, 2027, 0, 11, 0, "25/11/2026", "11:00",
            { false, false, false, false, true } },
        { ids::kFrequencyHourly, 5, 12, 2027, 0, 11, 45, "----", "--:45",
            { false, false, false, false, false } },
        { ids::kFrequencyDaily, 5, 12, 2027, 0, 7, 30, "----", "07:30",
            { false, false, false, false, true } },
        { ids::kFrequencyWeekly, 5, 12, 2027, 1, 7, 30, "Monday", "07:30",
            { false, false, false, true, true } },
        { ids::kFrequencyMonthly, 31, 12, 2027, 0, 0, 5, "31/--/--", "00:05",
            { true, false, false, false, true } },
        { ids::kFrequencyYearly, 24, 12, 2027, 0, 18, 0, "24/12/--", "18:00",
            { true, true, false, false, true } },
    };
    const auto dialog = open();
    for (const auto& c : cases) {
        SCOPED_TRACE(StringTable::text(c.frequency).toStdString());
        choose(*dialog, c.frequency, c.day, c.month, c.year, c.weekday, c.hour, c.minute);
        const std::array<bool, 5> enabled = { dialog->dayBox()->isEnabled(),
            dialog->monthBox()->isEnabled(), dialog->yearBox()->isEnabled(),
            dialog->weekdayBox()->isEnabled(), dialog->hourBox()->isEnabled() };
        EXPECT_EQ(enabled, c.uses);
        EXPECT_TRUE(dialog->minuteBox()->isEnabled());
        dialog->addEntry();
        ASSERT_TRUE(notifier_.messages.isEmpty()) << notifier_.messages.join(u'\n').toStdString();
        const ScheduleEntry added = dialog->entries().back();
        EXPECT_EQ(added,
            ScheduleEntry({ script_, StringTable::text(c.frequency), c.date, c.time,
                StringTable::text(ids::kStateOn) }));
    }
}

// Once and Today refuse the current minute and earlier; no frequency takes what could never run.
TEST_F(SchedulerDialogTest, AddRefusesThePastAndWhatCouldNeverRun)
{
    const QString past = StringTable::text(ids::kScheduleInPast);
    const QString unnamed = StringTable::text(ids::kSelectProfile);
    const struct {
        int frequency;
        int day, month, hour, minute;
        bool script;
        QString name;
        QString message; // a part of it; empty: added
    } cases[] = {
        { ids::kFrequencyToday, 1, 1, 10, 0, true, script_, past },
        { ids::kFrequencyToday, 1, 1, 9, 59, true, script_, past },
        { ids::kFrequencyToday, 1, 1, 10, 1, true, script_, {} },
        { ids::kFrequencyOnce, 25, 11, 10, 0, true, script_, past },
        { ids::kFrequencyOnce, 24, 11, 23, 59, true, script_, past },
        { ids::kFrequencyOnce, 26, 11, 0, 0, true, script_, {} },
        { ids::kFrequencyDaily, 1, 1, 9, 0, true, script_, {} },
        { ids::kFrequencyDaily, 1, 1, 9, 0, true, {}, unnamed },
        // No link exists to choose.
        { ids::kFrequencyDaily, 1, 1, 9, 0, false, {}, unnamed },
        { ids::kFrequencyDaily, 1, 1, 9, 0, true, settings_.root() + "/gone.cmd",
            "does not exist" },
        { ids::kFrequencyDaily, 1, 1, 9, 0, true, settings_.root() + "/my run.cmd", "blank" },
    };
    const auto dialog = open();
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message()
            << StringTable::text(c.frequency).toStdString() << ' ' << c.day << '/' << c.month << ' '
            << c.hour << ':' << c.minute << ' ' << c.name.toStdString());
        notifier_.reset({});
        const int rows = dialog->list()->topLevelItemCount();
        choose(*dialog, c.frequency, c.day, c.month, 2026, 0, c.hour, c.minute);
        dialog->scriptCheck()->setChecked(c.script);
        dialog->scriptEdit()->setText(c.name);
        dialog->addEntry();
        EXPECT_EQ(dialog->list()->topLevelItemCount(), rows + (c.message.isEmpty() ? 1 : 0));
        ASSERT_EQ(notifier_.messages.size(), c.message.isEmpty() ? 0 : 1);
        EXPECT_TRUE(c.message.isEmpty() || notifier_.messages[0].contains(c.message))
            << notifier_.messages.join(u'\n').toStdString();
    }
}

TEST_F(SchedulerDialogTest, CancelAsksToSaveOnlyAfterAChange)
{
    storeValues({ QStringLiteral("kept Daily ---- 07:00 On") });
    for (const bool yes : { false, true }) {
        SCOPED_TRACE(yes ? "saved" : "dropped");
        notifier_.reset({});
        notifier_.yes = yes;
        auto dialog = open();
        dialog->reject();
        EXPECT_TRUE(notifier_.yesNoQuestions.isEmpty()) << "nothing changed";

        dialog = open();
        choose(*dialog, ids::kFrequencyDaily, 1, 1, 2026, 0, 8, 0);
        dialog->addEntry();
        dialog->reject();
        EXPECT_EQ(notifier_.yesNoQuestions,
            QStringList { StringTable::text(ids::kSchedulesChangedSave) });
        EXPECT_EQ(ScheduleStore::readEntries().size(), yes ? 2u : 1u);
        storeValues({ QStringLiteral("kept Daily ---- 07:00 On") });
    }
}

TEST_F(SchedulerDialogTest, DeleteTakesEverySelectedRowAfterOneQuestion)
{
    storeValues({ QStringLiteral("a Daily ---- 07:00 On"), QStringLiteral("b Daily ---- 07:00 On"),
        QStringLiteral("c Daily ---- 07:00 On"), QStringLiteral("d Daily ---- 07:00 On") });
    const auto dialog = open();
    dialog->deleteEntries();
    EXPECT_EQ(notifier_.messages, QStringList { StringTable::text(ids::kSelectScheduleEntry) });

    for (const int row : { 0, 1, 3 })
        dialog->list()->topLevelItem(row)->setSelected(true);
    notifier_.reset({ Answer::Cancelled });
    dialog->deleteEntries();
    EXPECT_EQ(dialog->list()->topLevelItemCount(), 4);
    notifier_.reset({ Answer::Accepted });
    dialog->deleteEntries();
    EXPECT_EQ(notifier_.questions.size(), 1u);
    dialog->accept();
    ASSERT_EQ(ScheduleStore::readEntries().size(), 1u);
    EXPECT_EQ(ScheduleStore::readEntries()[0].name, QStringLiteral("c"));
}

// An entry with a bad word is shown and saved as it stands, marked; switching entries off and on
// keeps them in the list.
TEST_F(SchedulerDialogTest, EntriesAreSwitchedAndBadOnesKeptAsTheyStand)
{
    const QStringList values = { QStringLiteral("good Daily ---- 07:00 On"),
        QStringLiteral("bad daily ---- 25:00 maybe") };
    storeValues(values);
    const auto dialog = open();
    QTreeWidget* list = dialog->list();
    ASSERT_EQ(list->topLevelItemCount(), 2);
    EXPECT_EQ(dialog->entries()[1].format(), values[1]);
    EXPECT_TRUE(list->topLevelItem(0)->toolTip(0).isEmpty());
    EXPECT_FALSE(list->topLevelItem(1)->toolTip(0).isEmpty());
    EXPECT_NE(list->topLevelItem(0)->foreground(0), list->topLevelItem(1)->foreground(0));

    list->topLevelItem(0)->setSelected(true);
    dialog->switchEntries();
    EXPECT_EQ(dialog->entries()[0].state, StringTable::text(ids::kStateOff));
    dialog->switchEntries();
    EXPECT_EQ(dialog->entries()[0].state, StringTable::text(ids::kStateOn));
    dialog->switchEntries();
    dialog->accept();
    const auto stored = ScheduleStore::readEntries();
    ASSERT_EQ(stored.size(), 2u);
    EXPECT_EQ(stored[0].format(), QStringLiteral("good Daily ---- 07:00 Off"));
    EXPECT_EQ(stored[1].format(), values[1]);
}

// The window opens where the user left it; a place off every screen counts as none, so that the
// window opens on the screen at its first size.
TEST_F(SchedulerDialogTest, TheWindowComesBackWhereItWasLeft)
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    for (const QPoint left : { screen.topLeft() + QPoint(30, 40), screen.bottomRight() * 2 }) {
        SCOPED_TRACE(testing::Message() << left.x() << ',' << left.y());
        auto dialog = open();
        dialog->show();
        dialog->resize(700, 480);
        dialog->move(left);
        dialog->reject();
        dialog = open();
        EXPECT_TRUE(screen.contains(dialog->geometry())) << "on the screen";
        if (screen.contains(left)) {
            EXPECT_EQ(dialog->pos(), left);
            EXPECT_EQ(dialog->size(), QSize(700, 480));
        }
    }
}

} // namespace
} // namespace zelto::test
