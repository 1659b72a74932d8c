#include "FrameMenus.h"

#include "app/ui/FrameCommands.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "widgets/ToolIcons.h"

#include <QAction>
#include <QActionGroup>
#include <QMainWindow>
#include <QMenuBar>
#include <QStyle>
#include <QToolBar>

#include <utility>

namespace zelto {
namespace {

struct Look {
    int id;
    const char* themeName;
    QStyle::StandardPixmap fallback;
};

// Icons from the desktop's theme, or the style's own where the theme has none.
constexpr Look kLooks[] = {
    { cmd::kOpenLog, "document-open", QStyle::SP_DialogOpenButton },
    { cmd::kSaveLog, "document-save", QStyle::SP_DialogSaveButton },
    { cmd::kClearLog, "edit-clear", QStyle::SP_DialogResetButton },
    { cmd::kExit, "application-exit", QStyle::SP_DialogCloseButton },
    { cmd::kHelpTopics, "help-contents", QStyle::SP_DialogHelpButton },
    { cmd::kConfiguration, "preferences-system", QStyle::SP_FileDialogDetailedView },
};

// The tool bar's buttons: drawn, so that each differs from the others and stays sharp at any
// scale.
constexpr std::pair<int, ToolIcons::Kind> kDrawn[] = {
    { cmd::kStandardFtp, ToolIcons::Kind::StandardFtp },
    { cmd::kRemoteFtp, ToolIcons::Kind::RemoteFtp },
    { cmd::kMultiplePut, ToolIcons::Kind::MultiplePut },
    { cmd::kTransferStatistics, ToolIcons::Kind::Statistics },
};

} // namespace

FrameMenus::FrameMenus(
    QMainWindow& frame, const QList<QAction*>& multiplePut, const QList<QAction*>& standardFtp)
    : frame_(frame), multiplePut_(multiplePut)
{
    QMenuBar* bar = frame.menuBar();

    QMenu* file = bar->addMenu(QObject::tr("&File"));
    file->addAction(add(cmd::kPrintLog, QObject::tr("P&rint Log")));
    file->addAction(add(cmd::kPrintPreview, QObject::tr("Log Print Pre&view")));
    file->addAction(add(cmd::kPrintSetup, QObject::tr("Print &Setup...")));
    file->addSeparator();
    file->addAction(add(cmd::kExit, QObject::tr("E&xit")));

    QMenu* ftp = bar->addMenu(QObject::tr("F&TP"));
    add(cmd::kStandardFtp, QObject::tr("&Standard FTP"));
    add(cmd::kRemoteFtp, QObject::tr("&Remote FTP"));
    add(cmd::kMultiplePut, QObject::tr("&Multiple FTP Put"));
    screens_ = radioGroup({ cmd::kStandardFtp, cmd::kRemoteFtp, cmd::kMultiplePut });
    ftp->addActions(screens_->actions());
    ftp->addSeparator();
    const int standardFtpIds[]
        = { cmd::kFtpGet, cmd::kFtpGetWildcard, cmd::kFtpPut, cmd::kFtpPutWildcard };
    for (qsizetype i = 0; i < standardFtp.size() && i < qsizetype(std::size(standardFtpIds)); ++i) {
        standardFtp[i]->setData(standardFtpIds[i]);
        commands_.insert(standardFtpIds[i], standardFtp[i]);
        ftp->addAction(standardFtp[i]);
    }
    if (!standardFtp.isEmpty())
        ftp->addSeparator();
    ftp->addActions(multiplePut);
    ftp->addSeparator();
    ftp->addAction(add(cmd::kFtpProfiles, QObject::tr("FTP Pr&ofiles...")));
    ftp->addAction(add(cmd::kFileListProfiles, QObject::tr("&List of Files Profiles...")));
    ftp->addAction(add(cmd::kLinks, QObject::tr("Profile and File List Lin&ks...")));
    ftp->addSeparator();
    ftp->addAction(add(cmd::kFtpScripts, QObject::tr("FTP Scr&ipts...")));
    ftp->addAction(add(cmd::kFtpQueue, QObject::tr("FTP &Queue...")));
    ftp->addSeparator();
    ftp->addAction(add(cmd::kTransferStatistics, QObject::tr("&Transfer Statistics")));

    QMenu* mode = bar->addMenu(QObject::tr("Transfer &Mode"));
    add(cmd::kBinary, QObject::tr("&Binary"));
    add(cmd::kAscii, QObject::tr("&Ascii"));
    add(cmd::kAutomatic, QObject::tr("Au&tomatic"));
    transferModes_ = radioGroup({ cmd::kBinary, cmd::kAscii, cmd::kAutomatic });
    mode->addActions(transferModes_->actions());

    QMenu* logs = bar->addMenu(QObject::tr("&Logs"));
    add(cmd::kViewAll, QObject::tr("View &All"));
    add(cmd::kViewSuccessful, QObject::tr("View &Successful"));
    add(cmd::kViewUnsuccessful, QObject::tr("View &Unsuccessful"));
    logFilters_ = radioGroup({ cmd::kViewAll, cmd::kViewSuccessful, cmd::kViewUnsuccessful });
    logs->addActions(logFilters_->actions());
    logs->addSeparator();
    logs->addAction(add(cmd::kOpenLog, QObject::tr("&Open Log...")));
    logs->addAction(add(cmd::kSaveLog, QObject::tr("Sa&ve Log...")));
    logs->addAction(add(cmd::kClearLog, QObject::tr("&Clear Log")));

    QMenu* view = viewMenu_ = bar->addMenu(QObject::tr("&View"));
    view->addAction(add(cmd::kToolBar, QObject::tr("&Toolbar")));
    view->addAction(add(cmd::kProfileBar, QObject::tr("&Profile Bar")));
    view->addAction(add(cmd::kStatusBar, QObject::tr("&Status Bar")));
    for (QAction* barSwitch : barSwitches())
        barSwitch->setCheckable(true);

    QMenu* options = bar->addMenu(QObject::tr("&Options"));
    options->addAction(add(cmd::kConfiguration, QObject::tr("&Configuration...")));
    options->addSeparator();
    QMenu* scheduler = options->addMenu(QObject::tr("&Scheduler"));
    scheduler->addAction(add(cmd::kScheduler, QObject::tr("&Scheduler")));
    scheduler->addAction(add(cmd::kConfigureScheduler, QObject::tr("&Configure Scheduler...")));

    QMenu* help = bar->addMenu(QObject::tr("&Help"));
    help->addAction(add(cmd::kHelpTopics, QObject::tr("&Help Topics")));
    help->addSeparator();
    help->addAction(add(cmd::kAbout, QObject::tr("&About Zelto")));

    trayMenu_ = new QMenu(&frame);
    trayMenu_->addAction(add(cmd::kToggleWindow, QObject::tr("Toggle &Window")));
    trayMenu_->addAction(command(cmd::kTransferStatistics));
    trayMenu_->addSeparator();
    trayMenu_->addAction(add(cmd::kSystemParameters, QObject::tr("System &Parameters")));
    trayMenu_->addSeparator();
    trayMenu_->addAction(add(cmd::kTrayConfigureScheduler, QObject::tr("&Configure Scheduler")));
    trayMenu_->addAction(add(cmd::kTrayScheduler, QObject::tr("&Scheduler")));
    trayMenu_->addSeparator();
    trayMenu_->addAction(add(cmd::kCloseZelto, QObject::tr("Close &Zelto")));

    command(cmd::kScheduler)->setCheckable(true);
    command(cmd::kTrayScheduler)->setCheckable(true);
    command(cmd::kScheduler)->setStatusTip(StringTable::text(ids::kPromptScheduler));
    command(cmd::kTrayScheduler)->setStatusTip(StringTable::text(ids::kPromptTrayScheduler));
    command(cmd::kCloseZelto)->setStatusTip(StringTable::text(ids::kPromptClose));

    const QList<std::pair<int, QKeySequence>> keys { { cmd::kPrintLog, QKeySequence::Print },
        { cmd::kExit, QKeySequence::Quit }, { cmd::kOpenLog, QKeySequence::Open },
        { cmd::kSaveLog, QKeySequence::Save }, { cmd::kHelpTopics, QKeySequence::HelpContents },
        { cmd::kStandardFtp, QKeySequence(Qt::CTRL | Qt::Key_1) },
        { cmd::kRemoteFtp, QKeySequence(Qt::CTRL | Qt::Key_2) },
        { cmd::kMultiplePut, QKeySequence(Qt::CTRL | Qt::Key_3) } };
    for (const auto& [id, key] : keys)
        command(id)->setShortcut(key);
    for (const Look& look : kLooks) {
        command(look.id)->setIcon(QIcon::fromTheme(
            QLatin1StringView(look.themeName), frame.style()->standardIcon(look.fallback)));
    }
    for (const auto& [id, kind] : kDrawn)
        command(id)->setIcon(ToolIcons::icon(kind));
}

void FrameMenus::fillToolBar(QToolBar& bar)
{
    bar.addActions(screens_->actions());
    // A tool bar keeps two separators in a row, so the one before the screen's own commands
    // comes and goes with them.
    multiplePutSeparator_ = bar.addSeparator();
    bar.addActions(multiplePut_);
    bar.addSeparator();
    bar.addAction(command(cmd::kTransferStatistics));
}

void FrameMenus::showMultiplePut(bool shown)
{
    for (QAction* action : multiplePut_)
        action->setVisible(shown);
    if (multiplePutSeparator_)
        multiplePutSeparator_->setVisible(shown && !multiplePut_.isEmpty());
}

QList<QAction*> FrameMenus::barSwitches() const
{
    return { command(cmd::kToolBar), command(cmd::kProfileBar), command(cmd::kStatusBar) };
}

QAction* FrameMenus::add(int id, const QString& text)
{
    auto* action = new QAction(text, &frame_);
    action->setData(id);
    commands_.insert(id, action);
    return action;
}

QActionGroup* FrameMenus::radioGroup(std::initializer_list<int> ids)
{
    auto* group = new QActionGroup(&frame_);
    for (const int id : ids) {
        command(id)->setCheckable(true);
        group->addAction(command(id));
    }
    return group;
}

} // namespace zelto
