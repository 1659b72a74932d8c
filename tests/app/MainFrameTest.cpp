// The main frame as the user meets it: screens, panes, bars, menus and the tray, and what each of
// them keeps in the settings.

#include "DataFiles.h"
#include "FtpServer.h"
#include "SilentPlayer.h"
#include "TempSettings.h"
#include "TestFiles.h"
#include "TestNotifier.h"
#include "TestWait.h"
#include "app/BackgroundWork.h"
#include "app/ProgramServices.h"
#include "app/ui/CMainFrame.h"
#include "app/ui/FrameTray.h"
#include "app/ui/ProfileBar.h"
#include "distribution/TransferJob.h"
#include "distribution/ui/CFtpView.h"
#include "distribution/ui/MultiplePut.h"
#include "log/ui/CLogView.h"
#include "platform/StringTable.h"
#include "profiles/ui/CFileListView.h"
#include "profiles/ui/CLinkDlg.h"
#include "profiles/ui/CProfDialog.h"
#include "profiles/ui/CProfile.h"
#include "queue/QueueStore.h"
#include "scheduler/ScheduleStore.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QSet>
#include <QSplitter>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QUrl>

#include <gtest/gtest.h>

#include <thread>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;
using namespace settings;

// An interactive run's parts around one frame, in settings of its own. Keys written before open()
// are the ones the frame starts from.
class FrameRun {
public:
    explicit FrameRun(bool systemHasTray = false) : tray(systemHasTray) { }

    CMainFrame& open(FrameViews views = {})
    {
        frame = std::make_unique<CMainFrame>(services, background, notifier, tray, views);
        return *frame;
    }
    CMainFrame& shown(FrameViews views = {})
    {
        open(std::move(views)).show();
        return *frame;
    }
    [[nodiscard]] QAction* command(int id) const { return frame->command(id); }

    TempSettings settings;
    TestNotifier notifier;
    SilentPlayer player;
    FrameTray tray;
    ProgramServices services { notifier, player, tray };
    BackgroundWork background { services };
    std::unique_ptr<CMainFrame> frame;
};

QString stored(const QString& section, const char* key)
{
    return SettingsStore::getText(section, QLatin1StringView(key), QStringLiteral("absent"));
}

QString splitterSection(int number)
{
    return QStringLiteral("Dimensions\\Main\\split%1").arg(number);
}

QSplitter* splitter(const CMainFrame& frame, int number)
{
    return frame.findChild<QSplitter*>(QStringLiteral("Main\\split%1").arg(number));
}

TEST(MainFrameTest, StartScreenChoosesTheScreenAndOnlyAChangeIsWritten)
{
    const std::pair<const char*, Screen> cases[] = { { "", Screen::MultiplePut },
        { "REMOTE_LOCAL", Screen::StandardFtp }, { "REMOTE_REMOTE", Screen::RemoteFtp },
        { "MULTIPLE_PUT", Screen::MultiplePut }, { "SOMETHING", Screen::MultiplePut } };
    for (const auto& [word, shown] : cases) {
        FrameRun run;
        if (*word)
            SettingsStore::set(config::kStartScreen, QLatin1StringView(word));
        run.open();
        EXPECT_EQ(run.frame->currentScreen(), shown) << word;
        EXPECT_TRUE(run.command(int(shown))->isChecked()) << word;
    }

    FrameRun run;
    run.open();
    run.command(cmd::kRemoteFtp)->trigger();
    EXPECT_EQ(SettingsStore::get(config::kStartScreen), QStringLiteral("REMOTE_REMOTE"));
    SettingsStore::remove(QLatin1StringView(section::kConfig), QStringLiteral("StartScreen"));
    run.command(cmd::kRemoteFtp)->trigger(); // the screen shown already: nothing written
    EXPECT_EQ(stored(QStringLiteral("CONFIG"), "StartScreen"), QStringLiteral("absent"));
    run.command(cmd::kStandardFtp)->trigger();
    EXPECT_EQ(SettingsStore::get(config::kStartScreen), QStringLiteral("REMOTE_LOCAL"));
}

TEST(MainFrameTest, SplitterSizesAreSavedAtCloseAndRestored)
{
    FrameRun run;
    SettingsStore::writeInt(QStringLiteral("Dimensions\\Main\\Mainframe"), "Width", 640);
    SettingsStore::writeInt(QStringLiteral("Dimensions\\Main\\Mainframe"), "Height", 520);
    SettingsStore::writeInt(splitterSection(2), "Col0", 77); // a screen not shown keeps its own
    CMainFrame& frame = run.shown();
    // Nothing stored: 50 each, so the panes share the room equally.
    for (const int number : { 1, 4 }) {
        const QList<int> sizes = splitter(frame, number)->sizes();
        ASSERT_EQ(sizes.size(), 2);
        EXPECT_LE(std::abs(sizes[0] - sizes[1]), 1) << number;
    }
    EXPECT_EQ(splitter(frame, 4)->orientation(), Qt::Horizontal);

    splitter(frame, 1)->setSizes({ 3, 1 });
    splitter(frame, 4)->setSizes({ 1, 3 });
    const QList<int> outer = splitter(frame, 1)->sizes();
    const QList<int> inner = splitter(frame, 4)->sizes();
    frame.close();
    const auto key = [](int number, const char* name) {
        return SettingsStore::getInt(splitterSection(number), name, -1);
    };
    EXPECT_EQ(QList<int>({ key(1, "Row0"), key(1, "Row1"), key(1, "NumRows"), key(1, "NumCols") }),
        QList<int>({ outer[0], outer[1], 2, 1 }));
    EXPECT_EQ(QList<int>({ key(4, "Col0"), key(4, "Col1"), key(4, "NumRows"), key(4, "NumCols") }),
        QList<int>({ inner[0], inner[1], 1, 2 }));
    EXPECT_EQ(key(4, "Row0"), splitter(frame, 4)->height());
    EXPECT_EQ(key(2, "Col0"), 77);
    EXPECT_EQ(key(2, "Col1"), -1);

    CMainFrame& again = run.shown();
    EXPECT_EQ(splitter(again, 1)->sizes(), outer);
    EXPECT_EQ(splitter(again, 4)->sizes(), inner);

    // ScreenSplit stacks the work panes, which then take their rows' sizes.
    FrameRun stacked;
    SettingsStore::set(config::kScreenSplit, QStringLiteral("VERT"));
    SettingsStore::writeInt(splitterSection(4), QStringLiteral("Row0"), 100);
    SettingsStore::writeInt(splitterSection(4), QStringLiteral("Row1"), 300);
    CMainFrame& vertical = stacked.shown();
    for (int number = 2; number <= 4; ++number)
        EXPECT_EQ(splitter(vertical, number)->orientation(), Qt::Vertical) << number;
    EXPECT_GT(splitter(vertical, 4)->sizes()[1], 2 * splitter(vertical, 4)->sizes()[0]);
    SettingsStore::set(config::kScreenSplit, QStringLiteral("HORIZ"));
    vertical.optionsChanged();
    EXPECT_EQ(splitter(vertical, 4)->orientation(), Qt::Horizontal);
}

TEST(MainFrameTest, ViewsStayInTheirPanesAcrossScreens)
{
    FrameRun run;
    auto* sites = new CFtpView;
    QAction send(QStringLiteral("Send &Parallel"));
    FrameViews views;
    views.sitesList = sites;
    views.multiplePutActions = { &send };
    CMainFrame& frame = run.shown(views);
    for (const int screen : { cmd::kMultiplePut, cmd::kStandardFtp, cmd::kMultiplePut }) {
        run.command(screen)->trigger();
        const bool multiplePut = screen == cmd::kMultiplePut;
        EXPECT_EQ(send.isVisible(), multiplePut);
        EXPECT_EQ(sites->isVisible(), multiplePut);
        EXPECT_EQ(sites->parentWidget(), splitter(frame, 4));
    }
}

// Tab goes through the panes in reading order and out of the log again, whichever views were
// made first.
TEST(MainFrameTest, TabGoesThroughThePanesInReadingOrder)
{
    FrameRun run;
    SettingsStore::set(config::kProfileBar, 1);
    FrameViews views;
    views.log = new CLogView(run.services.log(), run.notifier);
    views.fileList = new CFileListView(run.notifier);
    views.sitesList = new CFtpView;
    CMainFrame& frame = run.shown(views);
    // Wide enough for the whole profile bar: a list that does not fit is in its overflow menu.
    frame.resize(frame.screen()->availableGeometry().width(), 500);
    frame.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    const ProfileBar& bar = frame.profileBar();
    const QWidget* order[] = { bar.sites(), bar.fileLists(), bar.links(), views.sitesList,
        views.fileList, views.log, bar.sites() };
    bar.sites()->setFocus(Qt::TabFocusReason);
    for (std::size_t i = 1; i < std::size(order); ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const QWidget* focus = QApplication::focusWidget();
        EXPECT_TRUE(focus == order[i] || order[i]->isAncestorOf(focus))
            << i << ": " << (focus ? focus->metaObject()->className() : "none");
    }
}

// Every item of every menu is reached by a letter of its own in that menu.
TEST(MainFrameTest, EveryMenuItemHasItsOwnAccessKey)
{
    FrameRun run;
    FrameViews views;
    auto* sites = new CFtpView;
    auto* files = new CFileListView(run.notifier);
    MultiplePut multiplePut(
        *sites, *files, run.services.jobs(), run.services.threads(), run.background.bookkeeping());
    views.sitesList = sites;
    views.fileList = files;
    views.multiplePutActions = multiplePut.actions();
    CMainFrame& frame = run.open(views);
    std::vector<std::pair<QString, QList<QAction*>>> menus { { QStringLiteral("menu bar"),
        frame.menuBar()->actions() } };
    for (std::size_t i = 0; i < menus.size(); ++i) {
        for (QAction* action : menus[i].second) {
            if (action->menu())
                menus.emplace_back(action->text(), action->menu()->actions());
        }
    }
    menus.emplace_back(QStringLiteral("tray"),
        frame.findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly)->actions());
    for (const auto& [menu, actions] : menus) {
        QSet<QChar> keys;
        for (const QAction* action : actions) {
            if (action->isSeparator())
                continue;
            const QString text = action->text();
            const qsizetype at = text.indexOf(u'&');
            ASSERT_TRUE(at >= 0 && at + 1 < text.size())
                << menu.toStdString() << ": " << text.toStdString();
            const QChar key = text.at(at + 1).toLower();
            EXPECT_FALSE(keys.contains(key)) << menu.toStdString() << ": " << text.toStdString();
            keys.insert(key);
        }
    }
}

// The tool bar's buttons each have an icon of their own, drawn at the pixels of a 1.75 scale
// rather than blown up from a smaller picture.
TEST(MainFrameTest, ToolBarIconsDifferAndAreSharpAtAnyScale)
{
    FrameRun run;
    auto* sites = new CFtpView;
    auto* files = new CFileListView(run.notifier);
    MultiplePut multiplePut(
        *sites, *files, run.services.jobs(), run.services.threads(), run.background.bookkeeping());
    FrameViews views;
    views.sitesList = sites;
    views.fileList = files;
    views.multiplePutActions = multiplePut.actions();
    CMainFrame& frame = run.open(views);
    const auto* bar = frame.findChild<QToolBar*>(QStringLiteral("toolBar"));
    ASSERT_NE(bar, nullptr);
    std::vector<std::pair<QString, QImage>> icons;
    for (const QAction* action : bar->actions()) {
        if (action->isSeparator())
            continue;
        const QPixmap pixmap = action->icon().pixmap(QSize(24, 24), 1.75);
        EXPECT_EQ(pixmap.size(), QSize(42, 42)) << action->text().toStdString();
        EXPECT_EQ(pixmap.devicePixelRatio(), 1.75) << action->text().toStdString();
        for (const auto& [other, image] : icons)
            EXPECT_NE(image, pixmap.toImage())
                << action->text().toStdString() << " looks like " << other.toStdString();
        icons.emplace_back(action->text(), pixmap.toImage());
    }
    EXPECT_EQ(icons.size(), 6U);
}

TEST(MainFrameTest, GeometryIsRestoredAndWrittenOnEveryMoveAndResizeButNotAtClose)
{
    FrameRun run;
    const QString section = QStringLiteral("Dimensions\\Main\\Mainframe");
    const auto key = [&](const char* name) { return SettingsStore::getInt(section, name, -1); };
    for (const auto& [name, value] :
        { std::pair { "Width", 520 }, { "Height", 430 }, { "x", 30 }, { "y", 40 } })
        SettingsStore::writeInt(section, name, value);
    CMainFrame& frame = run.shown();
    EXPECT_EQ(frame.size(), QSize(520, 430));
    EXPECT_EQ(frame.pos(), QPoint(30, 40));

    frame.move(110, 120);
    EXPECT_TRUE(waitUntil([&] { return key("x") == 110 && key("y") == 120; }, 5s));
    frame.resize(600, 450);
    EXPECT_TRUE(waitUntil([&] { return key("Width") == 600 && key("Height") == 450; }, 5s));

    SettingsStore::writeInt(section, QStringLiteral("x"), 999);
    frame.close();
    EXPECT_EQ(key("x"), 999);
}

// A size kept at a larger scale, or on a larger screen, is cut to the screen's free area.
TEST(MainFrameTest, TheWindowFitsTheScreen)
{
    FrameRun run;
    const QString section = QStringLiteral("Dimensions\\Main\\Mainframe");
    for (const auto& [name, value] :
        { std::pair { "Width", 5000 }, { "Height", 4000 }, { "x", 0 }, { "y", 0 } })
        SettingsStore::writeInt(section, name, value);
    const CMainFrame& fitted = run.open();
    const QSize free = fitted.screen()->availableGeometry().size();
    EXPECT_LE(fitted.width(), free.width());
    EXPECT_LE(fitted.height(), free.height());
}

TEST(MainFrameTest, TrayMenuOpensTwiceOverAShownWindowAndCloseZeltoEndsTheProgram)
{
    FrameRun run(true);
    FrameViews views;
    QList<QWidget*> openedOver; // the windows that the menu's commands opened, over their parent
    views.showStatistics = [&](QWidget* frame) { openedOver << frame; };
    views.runScript = [&](QWidget* frame) { openedOver << frame; };
    views.showFileLists = [&](QWidget* frame) { openedOver << frame; };
    views.showOptions = [&](QWidget* frame) { openedOver << frame; };
    CMainFrame& frame = run.shown(views);
    QList<QMenu*> opened;
    run.tray.setMenuOpener([&](QMenu& menu) { opened << &menu; });

    run.tray.activate(QSystemTrayIcon::Context);
    ASSERT_EQ(opened.size(), 2);
    EXPECT_EQ(opened[0], opened[1]);
    opened[0]->actions()[1]->trigger(); // Transfer Statistics
    opened[0]->actions()[3]->trigger(); // System Parameters
    run.command(cmd::kFtpScripts)->trigger();
    run.command(cmd::kFileListProfiles)->trigger();
    run.command(cmd::kConfiguration)->trigger();
    EXPECT_EQ(openedOver, QList<QWidget*>(5, &frame));

    // Hidden in the tray, the menu opens once; the left button waits for a double click first.
    frame.toggleWindow();
    opened.clear();
    run.tray.activate(QSystemTrayIcon::Trigger);
    EXPECT_TRUE(waitUntil([&] { return !opened.isEmpty(); }, 5s));
    EXPECT_EQ(opened.size(), 1);
    // A double click drops the menu of its first press: none has opened once that wait is over.
    opened.clear();
    run.tray.activate(QSystemTrayIcon::Trigger);
    run.tray.activate(QSystemTrayIcon::DoubleClick);
    EXPECT_TRUE(frame.isVisible());
    bool waitOver = false;
    QTimer::singleShot(2 * QApplication::doubleClickInterval(), &frame, [&] { waitOver = true; });
    ASSERT_TRUE(waitUntil([&] { return waitOver; }, 10s));
    EXPECT_TRUE(opened.isEmpty());

    // A worker's state reaches the icon; Close Zelto saves the panes and tells the program.
    std::thread([&] { run.tray.setState(TrayState::Sending); }).join();
    EXPECT_TRUE(waitUntil([&] { return run.tray.state() == TrayState::Sending; }, 5s));
    bool closed = false;
    QObject::connect(&frame, &CMainFrame::closed, [&] { closed = true; });
    run.command(cmd::kCloseZelto)->trigger();
    EXPECT_TRUE(closed);
    EXPECT_FALSE(frame.isVisible());
    EXPECT_GT(SettingsStore::getInt(splitterSection(1), QStringLiteral("Row0"), 0), 0);
    EXPECT_TRUE(run.notifier.questions.empty());
}

TEST(MainFrameTest, ToggleAndMinimiseKeepWinStateWhereThereIsATray)
{
    for (const bool hasTray : { true, false }) {
        FrameRun run(hasTray);
        CMainFrame& frame = run.shown();
        frame.toggleWindow();
        EXPECT_FALSE(frame.isVisible());
        EXPECT_TRUE(frame.isMinimized());
        EXPECT_EQ(SettingsStore::get(config::kWinState), QStringLiteral("ICONIC"));
        frame.toggleWindow();
        EXPECT_TRUE(frame.isVisible());
        EXPECT_FALSE(frame.isMinimized());
        EXPECT_EQ(SettingsStore::get(config::kWinState), QStringLiteral("RESTORED"));

        // Minimising hides the window into the tray; without one it stays on the task bar.
        SettingsStore::remove(QStringLiteral("CONFIG"), QStringLiteral("WinState"));
        frame.showMinimized();
        ASSERT_TRUE(settle()); // the window is hidden once the minimising is over
        EXPECT_EQ(frame.isVisible(), !hasTray);
        EXPECT_EQ(stored(QStringLiteral("CONFIG"), "WinState"),
            hasTray ? QStringLiteral("ICONIC") : QStringLiteral("absent"));

        FrameRun iconic(hasTray);
        SettingsStore::set(config::kWinState, QStringLiteral("ICONIC"));
        iconic.open().showAtStart();
        EXPECT_EQ(iconic.frame->isVisible(), !hasTray) << hasTray;
        EXPECT_TRUE(iconic.frame->isMinimized()) << hasTray;
        iconic.frame->toggleWindow();
        EXPECT_TRUE(iconic.frame->isVisible());
        EXPECT_FALSE(iconic.frame->isMinimized());
    }
}

TEST(MainFrameTest, SchedulerSwitchesOnlyOnOk)
{
    FrameRun run;
    run.open();
    QLabel* indicator = run.frame->statusBar()->findChild<QLabel*>();
    ASSERT_NE(indicator, nullptr);
    EXPECT_TRUE(indicator->text().endsWith(StringTable::text(ids::kStateOff)));

    const struct {
        int command;
        Answer answer;
        int asked;
        bool on;
        const char* key;
    } steps[] = {
        { cmd::kScheduler, Answer::Cancelled, ids::kStartScheduler, false, "absent" },
        { cmd::kScheduler, Answer::Accepted, ids::kStartScheduler, true, "YES" },
        { cmd::kTrayScheduler, Answer::Cancelled, ids::kStopScheduler, true, "YES" },
        { cmd::kTrayScheduler, Answer::Accepted, ids::kStopScheduler, false, "NO" },
    };
    for (const auto& step : steps) {
        run.notifier.reset({ step.answer });
        run.command(step.command)->trigger();
        ASSERT_EQ(run.notifier.questions.size(), 1u);
        EXPECT_EQ(run.notifier.questions[0].text, StringTable::text(step.asked));
        EXPECT_EQ(run.background.scheduler().isOn(), step.on) << step.key;
        EXPECT_EQ(run.command(cmd::kScheduler)->isChecked(), step.on) << step.key;
        EXPECT_EQ(run.command(cmd::kTrayScheduler)->isChecked(), step.on) << step.key;
        // On over an empty schedule says so.
        EXPECT_EQ(indicator->text(),
            step.on ? QStringLiteral("Scheduler: On, nothing scheduled")
                    : QStringLiteral("Scheduler: Off"));
        EXPECT_EQ(stored(QStringLiteral("CONFIG"), "Scheduler"), QLatin1StringView(step.key));
    }

    FrameRun on;
    // Only the entries that can run are counted: not one that is off, nor an "Hourly" one.
    ScheduleStore::writeEntries({ ScheduleEntry::parse("a Daily ---- 07:00 On"),
        ScheduleEntry::parse("b Hourly ---- --:30 On"),
        ScheduleEntry::parse("c Daily ---- 08:00 Off"),
        ScheduleEntry::parse("d Weekly Monday 07:00 On") });
    SettingsStore::set(config::kScheduler, QStringLiteral("YES"));
    on.open();
    EXPECT_TRUE(on.command(cmd::kScheduler)->isChecked());
    EXPECT_TRUE(on.command(cmd::kTrayScheduler)->isChecked());
    EXPECT_EQ(on.frame->statusBar()->findChild<QLabel*>()->text(),
        QStringLiteral("Scheduler: On, 2 entries"));
}

// With nothing stored the frame opens centred at a readable size with every bar; from then on
// the stored place and bars hold.
TEST(MainFrameTest, FirstStartIsCentredWithEveryBarThenTheStoredChoicesHold)
{
    FrameRun run;
    CMainFrame& first = run.shown();
    const QRect desktop = first.screen()->availableGeometry();
    EXPECT_GT(first.width(), 400);
    EXPECT_GT(first.height(), 400);
    EXPECT_LE((first.geometry().center() - desktop.center()).manhattanLength(), 4);
    for (const char* name : { "toolBar", "profileBar" })
        EXPECT_TRUE(first.findChild<QWidget*>(QLatin1StringView(name))->isVisible()) << name;
    EXPECT_TRUE(first.statusBar()->isVisible());

    run.command(cmd::kToolBar)->trigger();
    first.move(50, 60);
    const QString section = QStringLiteral("Dimensions\\Main\\Mainframe");
    EXPECT_TRUE(waitUntil(
        [&] { return SettingsStore::getInt(section, QStringLiteral("y"), -1) == 60; }, 5s));
    CMainFrame& second = run.shown();
    EXPECT_EQ(second.pos(), QPoint(50, 60));
    EXPECT_FALSE(second.findChild<QWidget*>(QStringLiteral("toolBar"))->isVisible());
    EXPECT_TRUE(second.statusBar()->isVisible());
}

// The Transfers dock starts hidden; as it was at a close, so it is at the next start.
TEST(MainFrameTest, TransfersDockComesBackAsItWasLeft)
{
    FrameRun run;
    for (const bool shownAtStart : { false, true, false }) {
        FrameViews views;
        views.transfers = new QDockWidget(QStringLiteral("Transfers"));
        CMainFrame& frame = run.shown(views);
        EXPECT_EQ(!views.transfers->isHidden(), shownAtStart);
        views.transfers->toggleViewAction()->trigger();
        frame.close();
    }
}

// The bars, the transfer modes and the log filters: each command writes its key's word, and the
// frame starts from the words stored.
TEST(MainFrameTest, CommandsWriteTheirWordsAndTheFrameStartsFromThem)
{
    FrameRun run;
    SettingsStore::writeInt(
        QStringLiteral("Dimensions\\Main\\Mainframe"), QStringLiteral("Width"), 500);
    SettingsStore::set(config::kStatusBar, 1);
    SettingsStore::set(ftp::kTransferType, QStringLiteral("TEXT"));
    SettingsStore::set(log::kView, QStringLiteral("UNSUCCESS"));
    run.services.log().reloadSettings();
    auto* logView = new CLogView(run.services.log(), run.notifier);
    FrameViews views;
    views.log = logView;
    CMainFrame& frame = run.shown(views);
    const auto bar = [&](const char* name) -> QWidget* {
        return *name ? frame.findChild<QWidget*>(QLatin1StringView(name)) : frame.statusBar();
    };
    EXPECT_FALSE(bar("toolBar")->isVisible());
    EXPECT_FALSE(bar("profileBar")->isVisible());
    EXPECT_TRUE(bar("")->isVisible());
    for (const int id : { cmd::kStatusBar, cmd::kAscii, cmd::kViewUnsuccessful })
        EXPECT_TRUE(run.command(id)->isChecked()) << id;

    const struct {
        int id;
        const char* section;
        const char* key;
        const char* word;
        const char* bar = nullptr; // the bar the command shows or hides ("" the status bar)
    } choices[] = {
        { cmd::kToolBar, "CONFIG", "ToolBar", "1", "toolBar" },
        { cmd::kToolBar, "CONFIG", "ToolBar", "0", "toolBar" },
        { cmd::kProfileBar, "CONFIG", "ProfileBar", "1", "profileBar" },
        { cmd::kStatusBar, "CONFIG", "StatusBar", "0", "" },
        { cmd::kBinary, "FTP", "TransferType", "BINARY" },
        { cmd::kAutomatic, "FTP", "TransferType", "AUTOMATIC" },
        { cmd::kAscii, "FTP", "TransferType", "TEXT" },
        { cmd::kViewAll, "LOG", "View", "ALL" },
        { cmd::kViewSuccessful, "LOG", "View", "SUCCESS" },
        { cmd::kViewUnsuccessful, "LOG", "View", "UNSUCCESS" },
    };
    for (const auto& c : choices) {
        run.command(c.id)->trigger();
        EXPECT_EQ(stored(QLatin1StringView(c.section), c.key), QLatin1StringView(c.word)) << c.id;
        EXPECT_EQ(run.command(c.id)->isChecked(), *c.word != '0') << c.id;
        EXPECT_TRUE(!c.bar || bar(c.bar)->isVisible() == (*c.word == '1')) << c.id;
    }
    EXPECT_EQ(logView->filter(), LogFilter::Unsuccessful);
    run.command(cmd::kViewSuccessful)->trigger();
    EXPECT_EQ(logView->filter(), LogFilter::Successful);

    // The filter already in force is not chosen again.
    SettingsStore::remove(QStringLiteral("LOG"), QStringLiteral("View"));
    run.command(cmd::kViewSuccessful)->trigger();
    EXPECT_EQ(stored(QStringLiteral("LOG"), "View"), QStringLiteral("absent"));
}

// The profile bar lists the sites, file lists and links; its choices and dropped files fill the
// multiple-put screen, which every other screen refuses.
TEST(MainFrameTest, ProfileBarAndDroppedFilesFillTheMultiplePutScreenOnly)
{
    FrameRun run;
    const QString beta = DataFolders::profiles() + "/europe/beta.ini";
    const QString list = DataFolders::files() + "/website/flist.ini";
    writeFile(DataFolders::profiles() + "/alpha.ini", "[Settings]\nHost=alpha.example\n");
    writeFile(beta, "[Settings]\nHost=beta.example\n");
    writeList(list, { "/srv|a.txt" });
    writeLink(DataFolders::links() + "/nightly.ini", { beta }, list);
    QTemporaryDir local;
    writeFile(local.filePath("b.txt"), {});
    QMimeData dropped;
    dropped.setUrls({ QUrl::fromLocalFile(local.filePath("b.txt")) });
    auto* sites = new CFtpView;
    auto* files = new CFileListView(run.notifier);
    FrameViews views;
    views.sitesList = sites;
    views.fileList = files;
    QStringList connected; // the profiles the Standard FTP screen was asked to connect to
    views.connectProfile = [&](const QString& profile) { connected << profile; };
    CMainFrame& frame = run.shown(views);
    const ProfileBar& bar = frame.profileBar();
    const auto items = [](const QComboBox* list) {
        QStringList result;
        for (int i = 0; i < list->count(); ++i)
            result << list->itemText(i);
        return result;
    };
    EXPECT_EQ(items(bar.sites()), QStringList({ "alpha", "europe/beta" }));
    EXPECT_EQ(items(bar.fileLists()), QStringList({ "website" }));
    EXPECT_EQ(items(bar.links()), QStringList({ "nightly" }));
    const auto servers = [&] {
        QStringList names;
        for (const JobSite& site : sites->sites())
            names << site.server;
        return names;
    };

    run.command(cmd::kStandardFtp)->trigger();
    EXPECT_FALSE(frame.takeFiles(dropped));
    Q_EMIT bar.links()->activated(0);
    const QString refused = StringTable::text(ids::kMainScreenRefusesData);
    EXPECT_EQ(run.notifier.messages, QStringList({ refused, refused }));
    EXPECT_EQ(run.notifier.icons, QList({ MessageIcon::Stop, MessageIcon::Stop }));
    EXPECT_TRUE(servers().isEmpty());
    EXPECT_TRUE(files->entries().empty());
    // There a chosen site is connected to in the remote half, not added to the sites to send to.
    Q_EMIT bar.sites()->activated(1);
    EXPECT_EQ(connected, QStringList { beta });
    EXPECT_TRUE(servers().isEmpty());

    run.command(cmd::kMultiplePut)->trigger();
    Q_EMIT bar.sites()->activated(0);
    EXPECT_EQ(servers(), QStringList({ "alpha.example" }));
    Q_EMIT bar.fileLists()->activated(0);
    ASSERT_EQ(files->entries().size(), 1u);
    EXPECT_EQ(files->entries()[0].localName, QStringLiteral("a.txt"));
    // A link brings its sites and its list; what is shown already stays once.
    Q_EMIT bar.links()->activated(0);
    EXPECT_EQ(servers(), QStringList({ "alpha.example", "beta.example" }));
    EXPECT_EQ(files->entries().size(), 1u);
    EXPECT_TRUE(files->listFolder().isEmpty());
    EXPECT_TRUE(frame.takeFiles(dropped));
    EXPECT_TRUE(waitUntil([&] { return files->entries().size() == 2; }, 5s));
    EXPECT_EQ(run.notifier.messages.size(), 2);

    // A new profile joins the bar, whose choice stays.
    bar.sites()->setCurrentIndex(1);
    writeFile(DataFolders::profiles() + "/aardvark.ini", {});
    Q_EMIT frame.profileEvents().profilesChanged();
    EXPECT_EQ(items(bar.sites()), QStringList({ "aardvark", "alpha", "europe/beta" }));
    EXPECT_EQ(bar.sites()->currentText(), QStringLiteral("europe/beta"));
}

TEST(MainFrameTest, ProfileScreensOpenOnceAndTheBarFollowsTheirChanges)
{
    FrameRun run;
    FrameViews views;
    views.showProfiles = [&run](QWidget* frame) {
        CProfile::showOrRaise(run.notifier, static_cast<CMainFrame*>(frame)->profileEvents(),
            run.services.threads(), frame);
    };
    views.showLinks = [&run](QWidget* frame) {
        CLinkDlg::showOrRaise(
            run.notifier, static_cast<CMainFrame*>(frame)->profileEvents(), frame);
    };
    CMainFrame& frame = run.shown(std::move(views));
    for (const int id : { cmd::kFtpProfiles, cmd::kLinks }) {
        ASSERT_TRUE(run.command(id)->isEnabled());
        run.command(id)->trigger();
        run.command(id)->trigger();
    }
    const QList<CProfile*> screens = frame.findChildren<CProfile*>();
    ASSERT_EQ(screens.size(), 1);
    EXPECT_EQ(frame.findChildren<CLinkDlg*>().size(), 1);

    // A profile saved in the screen is in the bar at once, and in the link dialog's picker.
    CProfDialog& form = screens.front()->form();
    form.newSite();
    form.nameField()->setText(QStringLiteral("fresh"));
    form.hostField()->setText(QStringLiteral("h"));
    form.userField()->setText(QStringLiteral("u"));
    form.passwordField()->setText(QStringLiteral("p"));
    form.ok();
    EXPECT_EQ(frame.profileBar().sites()->findText(QStringLiteral("fresh")), 0);
    EXPECT_EQ(frame.findChild<CLinkDlg*>()
                  ->profiles()
                  ->findItems(QStringLiteral("fresh"), Qt::MatchExactly | Qt::MatchRecursive)
                  .size(),
        1);

    // A list saved from the Multiple FTP Put screen, likewise.
    const QString folder = DataFolders::files() + QStringLiteral("/saved");
    QDir().mkpath(folder);
    Q_EMIT frame.profileEvents().fileListsChanged();
    EXPECT_EQ(frame.profileBar().fileLists()->findText(QStringLiteral("saved")), 0);
    for (QWidget* window : { static_cast<QWidget*>(screens.front()),
             static_cast<QWidget*>(frame.findChild<CLinkDlg*>()) })
        window->close();
}

TEST(MainFrameTest, QuitWhileATransferRunsAsksAndQueuesTheFilesItStopped)
{
    if (const auto reason = FtpServer::unavailableReason())
        GTEST_SKIP() << reason->toStdString();
    FrameRun run;
    SettingsStore::set(schedule::kResendFail, 1);
    FtpServer server;
    FtpFaults faults;
    faults.stall[QStringLiteral("STOR")] = FtpFaults::kForever;
    server.setFaults(faults);
    QTemporaryDir local;
    ASSERT_TRUE(makeFile(local.filePath(QStringLiteral("late.bin")), 1000, 1));
    TransferJob::Setup setup;
    const FtpUser& user = server.users().front();
    setup.sites = { { FtpServer::host(), user.name, user.password, server.port(), {}, 0, {} } };
    FileEntry& file = setup.files.emplace_back();
    file.localFolder = local.path();
    file.localName = QStringLiteral("late.bin");
    file.remoteName = file.localName;
    file.size = 1000;
    const auto job = TransferJob::create(std::move(setup), run.services.jobs(),
        run.background.bookkeeping(), run.services.threads());
    CMainFrame& frame = run.shown();
    bool closed = false;
    QObject::connect(&frame, &CMainFrame::closed, [&] { closed = true; });
    job->start();
    ASSERT_TRUE(waitUntil([&] { return server.commandCount(QStringLiteral("STOR")) == 1; }, 10s));

    const QStringList question { StringTable::text(ids::kStopWorkAndQuit) };
    // No: the frame and the transfer go on.
    run.command(cmd::kExit)->trigger();
    EXPECT_EQ(run.notifier.yesNoQuestions, question);
    EXPECT_FALSE(closed);
    EXPECT_TRUE(frame.isVisible());
    EXPECT_FALSE(job->done());

    // Yes: the transfer is stopped, its file queued, and then the frame closes.
    run.notifier.yes = true;
    run.command(cmd::kExit)->trigger();
    EXPECT_EQ(run.notifier.yesNoQuestions, question + question);
    EXPECT_TRUE(closed);
    EXPECT_TRUE(job->done());
    const auto queued = QueueStore().loadAll();
    ASSERT_EQ(queued.size(), 1u);
    EXPECT_EQ(queued[0].localName, QStringLiteral("late.bin"));
    EXPECT_EQ(queued[0].destination, FtpServer::host());
}

} // namespace
} // namespace zelto::test
