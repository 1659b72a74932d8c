#pragma once

#include <QList>

#include <functional>

class QAction;
class QDockWidget;
class QWidget;

namespace zelto {

class CFileListView;
class CFtpView;
class CLogView;

// What other windows lend the main frame. The frame re-parents the views into its panes and keeps
// them for its whole life; a pane whose view is missing shows a muted hint instead, and a command
// whose handler is missing stays disabled.
struct FrameViews {
    // Under the work panes of every screen; the Logs menu and the printing commands act on it.
    CLogView* log = nullptr;
    // The two panes of the Multiple FTP Put screen. Files dropped on the frame while that screen
    // is shown go to the file list; the profile bar's choices fill both.
    CFtpView* sitesList = nullptr;
    CFileListView* fileList = nullptr;
    // The panes of the Standard FTP screen (a remote site and the local disks) and of the Remote
    // FTP screen (two remote sites).
    QWidget* remoteSite = nullptr;
    QWidget* localFiles = nullptr;
    QWidget* firstRemote = nullptr;
    QWidget* secondRemote = nullptr;
    // Commands of the Multiple FTP Put screen (Send Parallel, Send Serial ...): in the FTP menu
    // and on the tool bar, shown while that screen is.
    QList<QAction*> multiplePutActions;
    // FTP Get, FTP Get Wildcard, FTP Put and FTP Put Wildcard, in that order: in the FTP menu; the
    // Standard FTP screen enables them while it is shown and connected.
    QList<QAction*> standardFtpActions;
    // Opens the transfer statistics window over the frame ("Transfer Statistics" in the FTP and
    // tray menus); CStatisticsDlg::showOrRaise fits.
    std::function<void(QWidget* frame)> showStatistics;
    // "FTP Scripts...": asks for a command script over the frame and runs it in its progress
    // window.
    std::function<void(QWidget* frame)> runScript;
    // "List of Files Profiles...": opens the file-list screen over the frame, or raises it.
    std::function<void(QWidget* frame)> showFileLists;
    // "FTP Profiles..." and "Profile and File List Links...": each opens its one window over the
    // frame, or raises it when it is open.
    std::function<void(QWidget* frame)> showProfiles;
    std::function<void(QWidget* frame)> showLinks;
    // On the Standard FTP screen, a site chosen on the profile bar is connected in the remote
    // half instead of joining the sites to send to; the profile file is handed over.
    std::function<void(const QString& profile)> connectProfile;
    // "FTP Queue...": the queue window, modal over the frame.
    std::function<void(QWidget* frame)> showQueue;
    // "Configure Scheduler..." (main and tray menus): the configurator, modal over the frame.
    std::function<void(QWidget* frame)> configureScheduler;
    // "Configuration..." and the tray's "System Parameters": the options sheet over the frame.
    std::function<void(QWidget* frame)> showOptions;
    // Every running job of the program in one table, docked below the panes; the View menu
    // shows it, and it starts hidden.
    QDockWidget* transfers = nullptr;
};

} // namespace zelto
