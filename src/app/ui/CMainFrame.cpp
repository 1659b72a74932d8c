#include "CMainFrame.h"

#include "app/BackgroundWork.h"
#include "app/ProgramInfo.h"
#include "app/ProgramServices.h"
#include "app/ui/AppIcons.h"
#include "app/ui/FrameMenus.h"
#include "app/ui/FrameTray.h"
#include "app/ui/ProfileBar.h"
#include "app/ui/SchedulerStatus.h"
#include "distribution/ui/CFtpView.h"
#include "log/ui/CLogView.h"
#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "profiles/FileListStore.h"
#include "profiles/LinkFile.h"
#include "profiles/ui/CFileListView.h"
#include "scheduler/ScheduleStore.h"
#include "settings/SettingsStore.h"
#include "widgets/CFileView.h"
#include "widgets/CHelpWindow.h"
#include "widgets/StoredPlacement.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDockWidget>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QTimer>
#include <QToolBar>

#include <algorithm>
#include <iterator>

namespace zelto {
namespace {

using namespace settings;

struct Word {
    int id;
    const char* word;
};

constexpr Word kTransferModes[] = { { cmd::kBinary, ftp::kTransferBinary },
    { cmd::kAscii, ftp::kTransferText }, { cmd::kAutomatic, ftp::kTransferAutomatic } };

struct LogChoice {
    int id;
    LogFilter filter;
    const char* word;
};

constexpr LogChoice kLogFilters[] = { { cmd::kViewAll, LogFilter::All, log::kViewAll },
    { cmd::kViewSuccessful, LogFilter::Successful, log::kViewSuccess },
    { cmd::kViewUnsuccessful, LogFilter::Unsuccessful, log::kViewUnsuccess } };

const LogChoice& choiceOf(LogFilter filter)
{
    return *std::find_if(std::begin(kLogFilters), std::end(kLogFilters),
        [filter](const LogChoice& choice) { return choice.filter == filter; });
}

struct Bar {
    int id;
    IntKey key;
};

// In the order in which the frame reads them when it is created.
constexpr Bar kBars[] = { { cmd::kProfileBar, config::kProfileBar },
    { cmd::kToolBar, config::kToolBar }, { cmd::kStatusBar, config::kStatusBar } };

void checkById(QActionGroup* group, int id)
{
    for (QAction* action : group->actions())
        action->setChecked(action->data().toInt() == id);
}

bool hasLocalFile(const QMimeData* data)
{
    const QList<QUrl> urls = data->urls();
    return std::any_of(urls.begin(), urls.end(), [](const QUrl& url) { return url.isLocalFile(); });
}

} // namespace

CMainFrame::CMainFrame(ProgramServices& services, BackgroundWork& background, Notifier& notifier,
    FrameTray& tray, FrameViews views, QWidget* parent)
    : QMainWindow(parent)
    , background_(background)
    , notifier_(notifier)
    , tray_(tray)
    , views_(std::move(views))
    , screens_(std::make_unique<FrameScreens>(views_, this))
    , menus_(
          std::make_unique<FrameMenus>(*this, views_.multiplePutActions, views_.standardFtpActions))
{
    setObjectName(QStringLiteral("mainFrame"));
    setWindowTitle(StringTable::text(ids::kAppTitle));
    setWindowIcon(AppIcons::application());
    setAcceptDrops(true);
    setCentralWidget(screens_->widget());
    buildBars();
    orderTabs();
    connectCommands();
    // No place stored yet: the user's first start shows every bar, from then on the keys decide.
    const bool firstStart = SettingsStore::getInt(QLatin1StringView(geometry::kMainFrame),
                                QLatin1StringView(geometry::kWidth), -1)
        == -1;
    if (firstStart) {
        for (const Bar& bar : kBars)
            SettingsStore::set(bar.key, 1);
    }
    // The log view's own choice, or the log writer's reading of the same setting.
    restoreState(views_.log ? views_.log->filter() : services.log().filter());
    if (firstStart)
        placeAtFirstStart();
    else
        restoreGeometry();
    StoredPlacement::keep(*this, QLatin1StringView(geometry::kMainFrame));
    tray_.attach(menus_->trayMenu(), this);
    connect(&tray_, &FrameTray::toggleWindowRequested, this, &CMainFrame::toggleWindow);
    tray_.show();
}

CMainFrame::~CMainFrame() = default;

QAction* CMainFrame::command(int id) const
{
    return menus_->command(id);
}

void CMainFrame::buildBars()
{
    toolBar_ = new QToolBar(tr("Toolbar"), this);
    toolBar_->setObjectName(QStringLiteral("toolBar"));
    menus_->fillToolBar(*toolBar_);
    addToolBar(toolBar_);
    addToolBarBreak();
    profileBar_ = new ProfileBar(profileEvents_, this);
    addToolBar(profileBar_);

    if (QDockWidget* transfers = views_.transfers) {
        addDockWidget(Qt::BottomDockWidgetArea, transfers);
        transfers->setVisible(SettingsStore::get(config::kTransfersDock) != 0);
        QAction* shown = transfers->toggleViewAction();
        shown->setText(tr("T&ransfers"));
        menus_->viewMenu()->addAction(shown);
    }

    schedulerState_ = new QLabel;
    schedulerState_->setToolTip(StringTable::text(ids::kPromptScheduler));
    statusBar()->addPermanentWidget(schedulerState_);
}

void CMainFrame::orderTabs()
{
    // In reading order: the profile bar, the sites, the files, the log; the views are made
    // before the frame, so the order they were made in is not the one on the screen.
    QList<QWidget*> chain { profileBar_->sites(), profileBar_->fileLists(), profileBar_->links() };
    for (QWidget* view : { static_cast<QWidget*>(views_.sitesList),
             static_cast<QWidget*>(views_.fileList), static_cast<QWidget*>(views_.log) }) {
        if (view)
            chain.append(view);
    }
    for (qsizetype i = 1; i < chain.size(); ++i)
        setTabOrder(chain[i - 1], chain[i]);
}

void CMainFrame::connectCommands()
{
    connect(menus_->screens(), &QActionGroup::triggered, this,
        [this](QAction* action) { chooseScreen(Screen(action->data().toInt())); });
    connect(menus_->transferModes(), &QActionGroup::triggered, this,
        [this](QAction* action) { setTransferMode(action->data().toInt()); });
    connect(menus_->logFilters(), &QActionGroup::triggered, this,
        [this](QAction* action) { setLogFilter(action->data().toInt()); });
    for (QAction* bar : menus_->barSwitches()) {
        connect(bar, &QAction::triggered, this,
            [this, bar](bool shown) { showBar(bar->data().toInt(), shown); });
    }
    connect(command(cmd::kScheduler), &QAction::triggered, this, &CMainFrame::switchScheduler);
    connect(command(cmd::kTrayScheduler), &QAction::triggered, this, &CMainFrame::switchScheduler);
    connect(command(cmd::kToggleWindow), &QAction::triggered, this, &CMainFrame::toggleWindow);
    connect(command(cmd::kExit), &QAction::triggered, this, &QWidget::close);
    connect(command(cmd::kCloseZelto), &QAction::triggered, this, &QWidget::close);
    connect(command(cmd::kAbout), &QAction::triggered, this, &CMainFrame::showAbout);
    // The manual opens at the screen shown; the Multiple FTP Put screen is the program's own.
    connect(command(cmd::kHelpTopics), &QAction::triggered, this, [this] {
        const char* section = currentScreen() == Screen::StandardFtp ? "standard-ftp-screen"
            : currentScreen() == Screen::RemoteFtp                   ? "remote-ftp-screen"
                                                                     : "";
        CHelpWindow::showSection(QLatin1StringView(section), this);
    });

    // Commands that open another window: enabled when the frame was lent one.
    const std::pair<int, std::function<void(QWidget*)>*> windows[]
        = { { cmd::kTransferStatistics, &views_.showStatistics },
              { cmd::kFtpScripts, &views_.runScript }, { cmd::kFtpProfiles, &views_.showProfiles },
              { cmd::kLinks, &views_.showLinks }, { cmd::kFileListProfiles, &views_.showFileLists },
              { cmd::kFtpQueue, &views_.showQueue },
              { cmd::kConfigureScheduler, &views_.configureScheduler },
              { cmd::kTrayConfigureScheduler, &views_.configureScheduler },
              { cmd::kConfiguration, &views_.showOptions },
              { cmd::kSystemParameters, &views_.showOptions } };
    for (const auto& [id, open] : windows) {
        command(id)->setEnabled(bool(*open));
        if (*open)
            connect(command(id), &QAction::triggered, this, [this, open] { (*open)(this); });
    }
    // The configurator is modal: once it is closed the schedule says what it holds now.
    for (const int id : { cmd::kConfigureScheduler, cmd::kTrayConfigureScheduler }) {
        connect(command(id), &QAction::triggered, this,
            [this] { showSchedulerState(background_.scheduler().isOn()); });
    }
    // The next run named in the tray's tip moves on as the minutes pass.
    auto* minute = new QTimer(this);
    connect(minute, &QTimer::timeout, this,
        [this] { showSchedulerState(background_.scheduler().isOn()); });
    minute->start(Scheduler::kPeriod);

    CLogView* log = views_.log;
    const std::pair<int, void (CLogView::*)()> logCommands[]
        = { { cmd::kOpenLog, &CLogView::openLog }, { cmd::kSaveLog, &CLogView::saveLog },
              { cmd::kClearLog, &CLogView::clearLog }, { cmd::kPrintLog, &CLogView::print },
              { cmd::kPrintPreview, &CLogView::printPreview },
              { cmd::kPrintSetup, &CLogView::pageSetup } };
    for (const auto& [id, slot] : logCommands) {
        command(id)->setEnabled(log != nullptr);
        if (log)
            connect(command(id), &QAction::triggered, log, slot);
    }
    if (log) {
        // The view may change its filter itself; the marks follow it.
        connect(log, &CLogView::filterChanged, this, [this](LogFilter filter) {
            logFilter_ = choiceOf(filter).id;
            checkById(menus_->logFilters(), logFilter_);
        });
    }
    connectProfileBar();
}

void CMainFrame::connectProfileBar()
{
    connect(profileBar_, &ProfileBar::siteChosen, this, [this](const QString& profile) {
        if (currentScreen() == Screen::StandardFtp && views_.connectProfile)
            views_.connectProfile(profile);
        else
            takeProfiles({ profile }, {});
    });
    connect(profileBar_, &ProfileBar::fileListChosen, this,
        [this](const QString& folder) { takeProfiles({}, FileListStore::listFile(folder)); });
    connect(profileBar_, &ProfileBar::linkChosen, this, [this](const QString& file) {
        const Link link = LinkFile::read(file);
        QStringList profiles;
        for (const LinkSite& site : link.sites)
            profiles << site.profile;
        takeProfiles(profiles, link.files);
    });
}

void CMainFrame::restoreState(LogFilter logFilter)
{
    const Screen screen = FrameScreens::fromWord(SettingsStore::get(config::kStartScreen));
    screens_->show(screen);
    checkById(menus_->screens(), int(screen));
    menus_->showMultiplePut(screen == Screen::MultiplePut);
    optionsChanged();

    // An empty or unknown word leaves the choice to each file's extension, as Automatic does.
    const QString mode = SettingsStore::get(ftp::kTransferTypeAtFrameStart);
    int modeId = cmd::kAutomatic;
    for (const Word& word : kTransferModes) {
        if (mode == QLatin1StringView(word.word))
            modeId = word.id;
    }
    checkById(menus_->transferModes(), modeId);

    logFilter_ = choiceOf(logFilter).id;
    checkById(menus_->logFilters(), logFilter_);

    // The bars are there from the start; those whose key is 0 (or absent) are hidden.
    for (const Bar& bar : kBars) {
        const bool shown = SettingsStore::get(bar.key) != 0;
        command(bar.id)->setChecked(shown);
        barOf(bar.id)->setVisible(shown);
    }
    showSchedulerState(Scheduler::onInSettings());
}

void CMainFrame::showAtStart()
{
    if (SettingsStore::get(config::kWinState) != QLatin1StringView(config::kWinStateIconic)) {
        show();
        return;
    }
    // Minimised and hidden: the tray icon brings it back. Without a tray it stays on the task bar.
    if (tray_.present())
        setWindowState(Qt::WindowMinimized);
    else
        showMinimized();
}

void CMainFrame::chooseScreen(Screen screen)
{
    checkById(menus_->screens(), int(screen));
    if (screen == screens_->current())
        return;
    screens_->show(screen);
    menus_->showMultiplePut(screen == Screen::MultiplePut);
    SettingsStore::set(config::kStartScreen, FrameScreens::wordOf(screen));
    setWindowTitle(StringTable::text(ids::kAppTitle));
}

void CMainFrame::optionsChanged()
{
    const bool stacked
        = SettingsStore::get(config::kScreenSplit) == QLatin1StringView(config::kSplitVertical);
    screens_->setSplit(stacked ? Qt::Vertical : Qt::Horizontal);
    CFileView::readDateOrder();
}

void CMainFrame::setTransferMode(int id)
{
    for (const Word& word : kTransferModes) {
        if (word.id == id)
            SettingsStore::set(ftp::kTransferType, QLatin1StringView(word.word));
    }
}

void CMainFrame::setLogFilter(int id)
{
    if (id == logFilter_)
        return;
    logFilter_ = id;
    for (const LogChoice& choice : kLogFilters) {
        if (choice.id != id)
            continue;
        // The log view keeps the word too; without it the choice waits in the settings.
        SettingsStore::set(log::kView, QLatin1StringView(choice.word));
        if (views_.log)
            views_.log->setFilter(choice.filter);
    }
}

void CMainFrame::showBar(int id, bool shown)
{
    for (const Bar& bar : kBars) {
        if (bar.id == id)
            SettingsStore::set(bar.key, shown ? 1 : 0);
    }
    barOf(id)->setVisible(shown);
}

QWidget* CMainFrame::barOf(int id)
{
    if (id == cmd::kToolBar)
        return toolBar_;
    if (id == cmd::kProfileBar)
        return profileBar_;
    return statusBar();
}

void CMainFrame::switchScheduler()
{
    Scheduler& scheduler = background_.scheduler();
    const bool on = scheduler.isOn();
    if (notifier_.askOkCancel(QApplication::applicationName(),
            StringTable::text(on ? ids::kStopScheduler : ids::kStartScheduler))) {
        scheduler.setScheduler(!on);
        SettingsStore::set(config::kScheduler, QLatin1StringView(on ? kNo : kYes));
    }
    // A checkable item checks itself when chosen; the marks show the scheduler as it is.
    showSchedulerState(scheduler.isOn());
}

void CMainFrame::showSchedulerState(bool on)
{
    command(cmd::kScheduler)->setChecked(on);
    command(cmd::kTrayScheduler)->setChecked(on);
    const std::vector<ScheduleEntry> entries = ScheduleStore::readEntries();
    schedulerState_->setText(SchedulerStatus::statusText(on, entries));
    tray_.setTipLine(SchedulerStatus::nextText(on, entries, QDateTime::currentDateTime()));
}

void CMainFrame::toggleWindow()
{
    if (isVisible() && !isMinimized()) {
        setWindowState(windowState() | Qt::WindowMinimized);
        hide();
        SettingsStore::set(config::kWinState, QLatin1StringView(config::kWinStateIconic));
        return;
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
    SettingsStore::set(config::kWinState, QLatin1StringView(config::kWinStateRestored));
}

void CMainFrame::restoreGeometry()
{
    using namespace geometry;
    const QString section = QLatin1StringView(kMainFrame);
    const auto read = [&](const char* key, int fallback) {
        return SettingsStore::getInt(section, QLatin1StringView(key), fallback);
    };
    const QPoint place(read(kX, kPlaceFallback), read(kY, kPlaceFallback));
    const QScreen* shown = QGuiApplication::screenAt(place);
    QSize size(read(kWidth, kSizeFallback), read(kHeight, kSizeFallback));
    const QScreen* fitting = shown ? shown : QGuiApplication::primaryScreen();
    // A size kept at another scale or on a larger screen would put the window's edges out of
    // reach: it is cut to the screen's free area, less room for the title bar and borders.
    const QRect free = fitting ? fitting->availableGeometry() : QRect();
    const int border = style()->pixelMetric(QStyle::PM_DefaultFrameWidth) * 2;
    const QSize room = free.size()
        - QSize(2 * border, style()->pixelMetric(QStyle::PM_TitleBarHeight) + 2 * border);
    if (fitting)
        size = size.boundedTo(room);
    resize(size);
    // A place on a screen that is gone would leave the window where nobody sees it; one that
    // would push the window past the screen's edge moves it back in.
    if (shown) {
        const QPoint last = free.topLeft() + QPoint(room.width(), room.height())
            - QPoint(size.width(), size.height());
        move(std::clamp(place.x(), free.left(), std::max(free.left(), last.x())),
            std::clamp(place.y(), free.top(), std::max(free.top(), last.y())));
    }
}

void CMainFrame::placeAtFirstStart()
{
    // Large enough for the three panes and the log to be read, centred on the screen.
    constexpr QSize kComfortable(1100, 760);
    const QRect desktop = screen()->availableGeometry();
    resize(kComfortable.boundedTo(desktop.size() * 0.85));
    move(desktop.center() - QPoint(width() / 2, height() / 2));
}

void CMainFrame::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || !isMinimized())
        return;
    if (!tray_.present() || !isEnabled() || !isVisible())
        return;
    SettingsStore::set(config::kWinState, QLatin1StringView(config::kWinStateIconic));
    // Hidden once the minimising is over; a window restored meanwhile stays.
    QTimer::singleShot(0, this, [this] {
        if (isMinimized())
            hide();
    });
}

void CMainFrame::closeEvent(QCloseEvent* event)
{
    // Work under way is stopped, never dropped: each job hands the files it has not sent to the
    // queue before the program ends.
    if (background_.busy()) {
        if (!notifier_.askYesNo(StringTable::text(ids::kStopWorkAndQuit))) {
            event->ignore();
            return;
        }
        background_.stopAll();
    }
    screens_->saveSizes();
    // Hidden with the frame in the tray, the dock is still the user's choice: isHidden() tells.
    if (views_.transfers)
        SettingsStore::set(config::kTransfersDock, views_.transfers->isHidden() ? 0 : 1);
    tray_.remove();
    event->accept();
    Q_EMIT closed();
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event)
{
    if (hasLocalFile(event->mimeData()))
        event->acceptProposedAction();
}

void CMainFrame::dropEvent(QDropEvent* event)
{
    if (takeFiles(*event->mimeData()))
        event->acceptProposedAction();
}

bool CMainFrame::acceptsListData()
{
    if (screens_->current() == Screen::MultiplePut)
        return true;
    notifier_.showMessage(StringTable::text(ids::kMainScreenRefusesData), MessageIcon::Stop);
    return false;
}

bool CMainFrame::takeFiles(const QMimeData& files)
{
    return acceptsListData() && views_.fileList && views_.fileList->addDropped(files);
}

bool CMainFrame::takeProfiles(const QStringList& siteProfiles, const QString& listFile)
{
    if (!acceptsListData())
        return false;
    if (views_.sitesList && !siteProfiles.isEmpty())
        views_.sitesList->addProfiles(siteProfiles);
    if (views_.fileList && !listFile.isEmpty())
        views_.fileList->loadList(listFile);
    return true;
}

QMenu* CMainFrame::createPopupMenu()
{
    // A right click on the bars offers the View menu's switches, which keep the settings.
    auto* menu = new QMenu(this);
    menu->addActions(menus_->barSwitches());
    return menu;
}

void CMainFrame::showAbout()
{
    QMessageBox::about(this, tr("About Zelto"),
        tr("<b>%1</b><p>An FTP client for distributing files to many sites.</p>")
            .arg(ProgramInfo::versionLine()));
}

} // namespace zelto
