#include "TempSettings.h"
#include "TestWait.h"
#include "ftp/ui/CStatisticsDlg.h"
#include "settings/SettingsStore.h"

#include <QApplication>
#include <QLabel>
#include <QMoveEvent>
#include <QScreen>

#include <gtest/gtest.h>

#include <array>

namespace zelto {
namespace {

using namespace std::chrono_literals;

// The value fields, in the order the window lists them.
constexpr std::array<const char*, 9> kFields { "localBytesRead", "localBytesWritten",
    "remoteBytesRead", "remoteBytesWritten", "filesTransferred", "localRate", "localTime",
    "remoteRate", "remoteTime" };

using Texts = std::array<QString, kFields.size()>;

Texts shown(const CStatisticsDlg& dialog)
{
    Texts texts;
    for (std::size_t i = 0; i < kFields.size(); ++i) {
        const auto* label = dialog.findChild<QLabel*>(QLatin1StringView(kFields[i]));
        texts[i] = label ? label->text() : QStringLiteral("<missing>");
    }
    return texts;
}

TEST(CStatisticsDlg, FieldsFollowTheCounters)
{
    test::TempSettings settings;
    TransferCounters::Snapshot counts;
    CStatisticsDlg dialog(nullptr, [&] { return counts; });

    struct Step {
        const char* name;
        TransferCounters::Snapshot counts;
        Texts expected;
    };
    const Step steps[] = {
        { "no transfer yet", {}, { "", "", "", "", "0", "", "", "", "" } },
        // Bytes but no time yet: the rate and time fields stay blank.
        { "bytes, no time", { 1500, 0, 0, 0, 0, 1, 0, 0 },
            { "1,500", "", "", "", "1", "", "", "", "" } },
        { "local transfers", { 1500, 500, 1234567, 0, 4000, 3, 2.0, 0 },
            { "1,500", "500", "1,234,567", "", "3", "1.00", "2 secs", "", "" } },
        // The remote rate pairs the received bytes with the copy time.
        { "a copy", { 1500, 500, 1234567, 2000, 7450000, 4, 2.0, 3725 },
            { "1,500", "500", "1,234,567", "2,000", "4", "1.00", "2 secs", "2.00",
                "1 hr 2 min 5 secs" } },
        // A time that is not above zero leaves rate and time as they were.
        { "no time again", { 9000, 1000, 1234567, 2000, 8000000, 5, 0, -1 },
            { "9,000", "1,000", "1,234,567", "2,000", "5", "1.00", "2 secs", "2.00",
                "1 hr 2 min 5 secs" } },
    };
    for (const Step& step : steps) {
        SCOPED_TRACE(step.name);
        counts = step.counts;
        dialog.refresh();
        EXPECT_EQ(shown(dialog), step.expected);
    }
}

TEST(CStatisticsDlg, RefreshesEverySecondWhileShown)
{
    test::TempSettings settings;
    TransferCounters::Snapshot counts;
    CStatisticsDlg dialog(nullptr, [&] { return counts; });
    dialog.show();
    EXPECT_EQ(shown(dialog)[4], u"0");
    counts.filesTransferred = 12;
    EXPECT_TRUE(test::waitUntil([&] { return shown(dialog)[4] == u"12"; }, 5s));
}

TEST(CStatisticsDlg, OpensAtTheStoredPlaceOrCentred)
{
    struct Case {
        int x;
        int y;
        bool centred;
    };
    const Case cases[] = {
        { 0, 0, true }, // never stored
        { -40, 200, true }, // left off the screen
        { 200, 0, true },
        { 150, 90, false },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.x << "," << c.y);
        test::TempSettings settings;
        SettingsStore::set(settings::config::kSysInfoX, c.x);
        SettingsStore::set(settings::config::kSysInfoY, c.y);
        CStatisticsDlg dialog;
        const QRect desktop = dialog.screen()->availableGeometry();
        const QPoint centred = desktop.center() - QPoint(dialog.width() / 2, dialog.height() / 2);
        EXPECT_EQ(dialog.pos(), c.centred ? centred : QPoint(c.x, c.y));
    }
}

TEST(CStatisticsDlg, MovesAfterTheFirstTwoAreStored)
{
    test::TempSettings settings;
    SettingsStore::set(settings::config::kSysInfoX, 150);
    SettingsStore::set(settings::config::kSysInfoY, 90);
    CStatisticsDlg dialog;
    const QPoint places[] = { { 10, 20 }, { 30, 40 }, { 50, 60 }, { 70, 80 } };
    const QPoint stored[] = { { 150, 90 }, { 150, 90 }, { 50, 60 }, { 70, 80 } };
    for (std::size_t i = 0; i < std::size(places); ++i) {
        SCOPED_TRACE(i);
        const QPoint from = dialog.pos();
        dialog.move(places[i]);
        QMoveEvent moved(places[i], from);
        QApplication::sendEvent(&dialog, &moved);
        EXPECT_EQ(QPoint(SettingsStore::get(settings::config::kSysInfoX),
                      SettingsStore::get(settings::config::kSysInfoY)),
            stored[i]);
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
