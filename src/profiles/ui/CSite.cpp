#include "CSite.h"

#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "profiles/ui/CFileListView.h"
#include "profiles/ui/CSiteTree.h"
#include "settings/SettingsKeys.h"
#include "widgets/CDirView.h"
#include "widgets/CDriveTree.h"
#include "widgets/CHelpWindow.h"
#include "widgets/StoredPlacement.h"
#include "widgets/StoredSplitter.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QStyle>
#include <QToolBar>

namespace zelto {
namespace {

using namespace settings::geometry;

QString placement()
{
    return QLatin1StringView(kFilesFrame);
}

} // namespace

CSite::CSite(Notifier& notifier, ProfileEvents& events, QWidget* frame)
    : QMainWindow(frame, Qt::Window), notifier_(notifier), store_(notifier, events)
{
    setObjectName(QStringLiteral("fileListScreen"));
    setWindowTitle(tr("List of Files Profiles"));
    CHelpWindow::bindHelpKey(*this, QStringLiteral("file-list-screen"));
    buildPanes();
    buildToolBar();
    wirePanes();
    // Readable at first: the whole tool bar, four columns of files on each side and some twenty
    // rows under each tree.
    const QFontMetrics metrics = fontMetrics();
    StoredPlacement::restore(*this, placement(),
        QSize(metrics.averageCharWidth() * 175, metrics.lineSpacing() * 44), frame);
    StoredPlacement::keep(*this, placement());
    driveTree_->selectFolder(QDir::homePath());
    siteTree_->setFocus();
    // The frame's close ends the program, and this screen with it, without a close of its own.
    if (frame)
        frame->installEventFilter(this);
}

CSite* CSite::showOrRaise(QWidget* frame, Notifier& notifier, ProfileEvents& events)
{
    static QPointer<CSite> open;
    if (!open) {
        open = new CSite(notifier, events, frame);
        open->setAttribute(Qt::WA_DeleteOnClose);
    }
    open->show();
    open->raise();
    open->activateWindow();
    return open;
}

void CSite::buildPanes()
{
    driveTree_ = new CDriveTree;
    dirView_ = new CDirView;
    siteTree_ = new CSiteTree(store_);
    filesView_ = new CFileListView(notifier_);
    driveTree_->setAccessibleName(tr("Local folders"));
    dirView_->setAccessibleName(tr("Local files"));
    siteTree_->setAccessibleName(tr("Lists of files"));
    filesView_->setAccessibleName(tr("Files of the list"));

    auto* halves = new StoredSplitter(QLatin1StringView(kFilesSplitter), Qt::Horizontal);
    auto* local = new StoredSplitter(QLatin1StringView(kFilesLocalSplitter), Qt::Vertical);
    auto* lists = new StoredSplitter(QLatin1StringView(kFilesListSplitter), Qt::Vertical);
    local->addWidget(driveTree_);
    local->addWidget(dirView_);
    lists->addWidget(siteTree_);
    lists->addWidget(filesView_);
    halves->addWidget(local);
    halves->addWidget(lists);
    splitters_ = { halves, local, lists };
    for (StoredSplitter* splitter : splitters_)
        splitter->restoreSizes();
    setCentralWidget(halves);

    // Each half from the top down, the local one first, as the panes read.
    setTabOrder(driveTree_, dirView_);
    setTabOrder(dirView_, siteTree_);
    setTabOrder(siteTree_, filesView_);
}

void CSite::buildToolBar()
{
    addAction_
        = new QAction(style()->standardIcon(QStyle::SP_ArrowRight), tr("&Add to List"), dirView_);
    addAction_->setShortcut(QKeySequence(Qt::Key_Insert));
    addAction_->setShortcutContext(Qt::WidgetShortcut);
    addAction_->setToolTip(tr("Add the selected local files to the list (Insert)"));
    connect(addAction_, &QAction::triggered, this, &CSite::addSelected);
    dirView_->addAction(addAction_);
    dirView_->setContextMenuPolicy(Qt::ActionsContextMenu);

    auto* close = new QAction(tr("&Close"), this);
    close->setShortcut(QKeySequence::Close);
    connect(close, &QAction::triggered, this, &QWidget::close);

    // The menus give every command an access key; the tool bar the same commands at a click.
    QMenu* lists = menuBar()->addMenu(tr("&List"));
    lists->addActions(siteTree_->actions());
    lists->addSeparator();
    lists->addAction(close);
    QMenu* files = menuBar()->addMenu(tr("&Files"));
    files->addAction(addAction_);
    files->addSeparator();
    files->addActions(filesView_->actions());

    auto* bar = addToolBar(tr("File Lists"));
    bar->setObjectName(QStringLiteral("fileListTools"));
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addActions(siteTree_->actions());
    bar->addSeparator();
    bar->addAction(addAction_);
    bar->addSeparator();
    bar->addActions(filesView_->actions());
}

void CSite::wirePanes()
{
    connect(driveTree_, &CDriveTree::folderSelected, dirView_, &CDirView::setFolder);
    connect(dirView_, &CDirView::folderActivated, this, [this](const QString& folder) {
        // A hidden folder has no item in the tree: the list goes there alone.
        if (!driveTree_->selectFolder(folder))
            dirView_->setFolder(folder);
    });
    connect(dirView_, &CDirView::fileActivated, this,
        [this](const QString& path) { filesView_->addPaths({ path }); });

    connect(siteTree_, &CSiteTree::listChosen, this, &CSite::openList);
    connect(siteTree_, &CSiteTree::listMade, this, &CSite::listsChanged);
    connect(siteTree_, &CSiteTree::listRenamed, this,
        [this](const QString& oldFolder, const QString& newFolder) {
            if (filesView_->listFolder() == oldFolder)
                filesView_->setListFolder(newFolder);
            Q_EMIT listsChanged();
        });
    connect(siteTree_, &CSiteTree::listDeleted, this, [this](const QString& folder) {
        // Its entries went with it: nothing is left to save.
        if (filesView_->listFolder() == folder)
            filesView_->openList({});
        Q_EMIT listsChanged();
    });
    connect(siteTree_, &QTreeWidget::itemActivated, this, [this] { filesView_->setFocus(); });
    connect(filesView_, &CFileListView::listSaved, this, &CSite::listSaved);
}

void CSite::addSelected()
{
    filesView_->addPaths(dirView_->selectedPaths());
}

void CSite::openList(const QString& folder)
{
    if (folder == filesView_->listFolder())
        return;
    leaveList();
    filesView_->openList(folder);
}

void CSite::leaveList()
{
    if (filesView_->changed() && notifier_.askYesNo(StringTable::text(ids::kListChangedSave)))
        filesView_->saveList();
}

void CSite::listSaved(const QString& folder)
{
    if (filesView_->listFolder() == folder)
        return;
    // Saved under a new name from the root: that is a new list, and the view now shows it.
    filesView_->setListFolder(folder);
    siteTree_->reload();
    siteTree_->selectList(folder);
    Q_EMIT listsChanged();
}

void CSite::closeEvent(QCloseEvent* event)
{
    leaveList();
    saveLayout();
    QMainWindow::closeEvent(event);
}

bool CSite::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::Close && isVisible()) {
        leaveList();
        saveLayout();
    }
    return QMainWindow::eventFilter(watched, event);
}

void CSite::saveLayout() const
{
    StoredPlacement::save(*this, placement());
    for (const StoredSplitter* splitter : splitters_)
        splitter->saveSizes();
}

} // namespace zelto
