#pragma once

#include "app/ui/FrameScreens.h"
#include "app/ui/FrameViews.h"
#include "log/LogRecord.h"
#include "profiles/ProfileEvents.h"

#include <QMainWindow>

#include <memory>

class QLabel;
class QMimeData;

namespace zelto {

class BackgroundWork;
class FrameMenus;
class FrameTray;
class Notifier;
class ProfileBar;
class ProgramServices;

// The main window of an interactive run: the three screens with their panes, the menus, the tool
// bar, profile bar and status bar, and the tray icon's menu. Its place and size, the sizes of its
// panes, the screen shown, the bars shown, the transfer mode, the log filter and the scheduler's
// switch live in the settings and are written when they change (the panes' sizes at close).
class CMainFrame final : public QMainWindow {
    Q_OBJECT
public:
    // `tray` outlives the frame (the transfer work reports to it); `views` become the frame's.
    CMainFrame(ProgramServices& services, BackgroundWork& background, Notifier& notifier,
        FrameTray& tray, FrameViews views = {}, QWidget* parent = nullptr);
    ~CMainFrame() override;
    CMainFrame(const CMainFrame&) = delete;
    CMainFrame& operator=(const CMainFrame&) = delete;

    // The action of a command id (cmd::...).
    [[nodiscard]] QAction* command(int id) const;
    [[nodiscard]] Screen currentScreen() const { return screens_->current(); }
    // What the profile, file-list and link operations tell, so that the profile bar follows.
    [[nodiscard]] ProfileEvents& profileEvents() { return profileEvents_; }
    [[nodiscard]] ProfileBar& profileBar() const { return *profileBar_; }

    // Local files dropped on the frame, or sent by another window, join the file list of the
    // Multiple FTP Put screen; any other screen refuses them with a message. False when refused.
    bool takeFiles(const QMimeData& files);
    // Site profiles join the sites list and a stored list's entries the file list of the Multiple
    // FTP Put screen; any other screen refuses them as it refuses files. False when refused.
    bool takeProfiles(const QStringList& siteProfiles, const QString& listFile);

    // Shows the window as WinState says: "ICONIC" starts minimised, in the tray only where there
    // is one.
    void showAtStart();

public Q_SLOTS:
    void chooseScreen(Screen screen);
    // Minimises and hides the window, or shows it again; WinState follows.
    void toggleWindow();
    // Asks whether to start (or stop) the scheduler and switches it on an OK.
    void switchScheduler();
    // The Options dialog calls this when it is confirmed: the screens follow ScreenSplit.
    void optionsChanged();

Q_SIGNALS:
    // The frame was closed: the program ends. A close while work runs asks first
    // (ids::kStopWorkAndQuit) and stops the work on Yes; on No the frame stays.
    void closed();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    QMenu* createPopupMenu() override;

private:
    void buildBars();
    void orderTabs();
    void connectCommands();
    void connectProfileBar();
    // True on the Multiple FTP Put screen; elsewhere says why the frame refuses its data.
    [[nodiscard]] bool acceptsListData();
    void restoreState(LogFilter logFilter);
    void restoreGeometry();
    void placeAtFirstStart();
    void setTransferMode(int id);
    void setLogFilter(int id);
    void showBar(int id, bool shown);
    [[nodiscard]] QWidget* barOf(int id);
    void showSchedulerState(bool on);
    void showAbout();

    BackgroundWork& background_;
    Notifier& notifier_;
    FrameTray& tray_;
    FrameViews views_;
    ProfileEvents profileEvents_;
    std::unique_ptr<FrameScreens> screens_;
    std::unique_ptr<FrameMenus> menus_;
    QToolBar* toolBar_ = nullptr;
    ProfileBar* profileBar_ = nullptr;
    QLabel* schedulerState_ = nullptr;
    int logFilter_ = 0;
};

} // namespace zelto
