#include "TempSettings.h"
#include "TestWait.h"
#include "ftp/ui/CStatisticsDlg.h"
#include "settings/SettingsStore.h"

#include <QApplication>
#include <QLabel>
#include <QMoveEvent>
#include <QScreen>

#include <gtest/gtest.h>

#include <tuple>

namespace zelto {
namespace {

using namespace std::chrono_literals;

// The value fields, in the order the window lists them.
QStringList shown(const CStatisticsDlg& dialog)
{
    QStringList texts;
    for (const char* field :
        { "localBytesRead", "localBytesWritten", "remoteBytesRead", "remoteBytesWritten",
            "filesTransferred", "localRate", "localTime", "remoteRate", "remoteTime" }) {
        const auto* label = dialog.findChild<QLabel*>(QLatin1StringView(field));
        texts << (label ? label->text() : QStringLiteral("<missing>"));
    }
    return texts;
}

TEST(CStatisticsDlg, FieldsFollowTheCountersEverySecondWhileShown)
{
    test::TempSettings settings;
    TransferCounters::Snapshot counts;
    CStatisticsDlg dialog(nullptr, [&] { return counts; });

    // Each step: the counters, the fields, and whether the bar moves (bytes moved since the
    // step before).
    const std::tuple<TransferCounters::Snapshot, QStringList, bool> steps[] = {
        // Idle: an empty bar and zeros, not blanks.
        { {}, { "0", "0", "0", "0", "0", "0.00", "0 secs", "0.00", "0 secs" }, false },
        // Bytes but no time yet: the rate and time fields keep their zeros.
        { { 1500, 0, 0, 0, 0, 1, 0, 0 },
            { "1,500", "0", "0", "0", "1", "0.00", "0 secs", "0.00", "0 secs" }, true },
        // The remote rate pairs the received bytes with the copy time.
        { { 1500, 500, 1234567, 2000, 7450000, 4, 2.0, 3725 },
            { "1,500", "500", "1,234,567", "2,000", "4", "1.00", "2 secs", "2.00",
                "1 hr 2 min 5 secs" },
            true },
        // A time that is not above zero leaves rate and time as they were.
        { { 9000, 1000, 1234567, 2000, 8000000, 5, 0, -1 },
            { "9,000", "1,000", "1,234,567", "2,000", "5", "1.00", "2 secs", "2.00",
                "1 hr 2 min 5 secs" },
            true },
        // Nothing moved since: the bar is empty again.
        { { 9000, 1000, 1234567, 2000, 8000000, 5, 0, -1 },
            { "9,000", "1,000", "1,234,567", "2,000", "5", "1.00", "2 secs", "2.00",
                "1 hr 2 min 5 secs" },
            false },
    };
    for (const auto& [snapshot, expected, busy] : steps) {
        counts = snapshot;
        dialog.refresh();
        EXPECT_EQ(shown(dialog), expected);
        EXPECT_EQ(dialog.showsBusy(), busy) << expected.join(u' ').toStdString();
    }

    dialog.show();
    counts.filesTransferred = 12;
    EXPECT_TRUE(test::waitUntil([&] { return shown(dialog)[4] == u"12"; }, 5s));
}

TEST(CStatisticsDlg, OpensAtTheStoredPlaceOrCentred)
{
    // Never stored, left off the screen, or at its top edge: centred.
    for (const QPoint stored :
        { QPoint(0, 0), QPoint(-40, 200), QPoint(200, 0), QPoint(150, 90) }) {
        SCOPED_TRACE(testing::Message() << stored.x() << "," << stored.y());
        test::TempSettings settings;
        SettingsStore::set(settings::config::kSysInfoX, stored.x());
        SettingsStore::set(settings::config::kSysInfoY, stored.y());
        CStatisticsDlg dialog;
        const QPoint centred = dialog.screen()->availableGeometry().center()
            - QPoint(dialog.width() / 2, dialog.height() / 2);
        EXPECT_EQ(dialog.pos(), stored == QPoint(150, 90) ? stored : centred);
    }
}

TEST(CStatisticsDlg, MovesAfterTheFirstTwoAreStored)
{
    test::TempSettings settings;
    SettingsStore::set(settings::config::kSysInfoX, 150);
    SettingsStore::set(settings::config::kSysInfoY, 90);
    CStatisticsDlg dialog;
    const std::pair<QPoint, QPoint> moves[] = { { { 10, 20 }, { 150, 90 } },
        { { 30, 40 }, { 150, 90 } }, { { 50, 60 }, { 50, 60 } }, { { 70, 80 }, { 70, 80 } } };
    for (const auto& [place, stored] : moves) {
        QMoveEvent moved(place, dialog.pos());
        dialog.move(place);
        QApplication::sendEvent(&dialog, &moved);
        EXPECT_EQ(QPoint(SettingsStore::get(settings::config::kSysInfoX),
                      SettingsStore::get(settings::config::kSysInfoY)),
            stored);
    }
}

TEST(CStatisticsDlg, OneWindowAtATime)
{
    test::TempSettings settings;
    QWidget frame;
    CStatisticsDlg::showOrRaise(&frame);
    CStatisticsDlg::showOrRaise(&frame);
    auto windows = frame.findChildren<CStatisticsDlg*>();
    ASSERT_EQ(windows.size(), 1);
    EXPECT_TRUE(windows[0]->isVisible());

    windows[0]->close(); // the Close button's end
    EXPECT_TRUE(
        test::waitUntil([&] { return frame.findChildren<CStatisticsDlg*>().isEmpty(); }, 5s));
    CStatisticsDlg::showOrRaise(&frame);
    EXPECT_EQ(frame.findChildren<CStatisticsDlg*>().size(), 1);
}

} // namespace
} // namespace zelto
