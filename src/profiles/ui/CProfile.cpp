#include "CProfile.h"

#include "profiles/ui/CProfDialog.h"
#include "profiles/ui/CProfTree.h"
#include "profiles/ui/CProfView.h"
#include "settings/SettingsKeys.h"
#include "widgets/CHelpWindow.h"
#include "widgets/StoredPlacement.h"
#include "widgets/StoredSplitter.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

namespace zelto {
namespace {

const QString kPlacement = QLatin1StringView(settings::geometry::kProfileFrame);

// Wide enough that the folders, the names and the form each read without a scroll bar.
constexpr QSize kReadableSize(960, 520);

} // namespace

CProfile::CProfile(
    Notifier& notifier, ProfileEvents& events, WorkerThreads& threads, QWidget* frame)
    : QMainWindow(frame, Qt::Window)
    , store_(notifier, events)
    , splitter_(new StoredSplitter(QStringLiteral("Profile\\split1"), Qt::Horizontal, this))
    , tree_(new CProfTree(store_, splitter_))
    , list_(new CProfView(store_, splitter_))
    , form_(new CProfDialog(notifier, events, threads, splitter_))
{
    setObjectName(QStringLiteral("profileScreen"));
    setWindowTitle(tr("FTP Profiles"));
    CHelpWindow::bindHelpKey(*this, QStringLiteral("site-profiles"));
    chooseImport_ = [this] {
        return QFileDialog::getOpenFileName(this, tr("Import from previous Zelto Version"),
            QString(), tr("Server files (*.sts);;All files (*)"));
    };
    splitter_->addWidget(tree_);
    splitter_->addWidget(list_);
    splitter_->addWidget(form_);
    setCentralWidget(splitter_);
    splitter_->restoreSizes();
    createMenu();
    wirePanes();
    // Panes in reading order, left to right.
    setTabOrder(tree_, list_);
    setTabOrder(list_, form_->nameField());
    StoredPlacement::restore(*this, kPlacement, kReadableSize, frame);
    StoredPlacement::keep(*this, kPlacement);
}

CProfile::~CProfile() = default;

CProfile* CProfile::showOrRaise(
    Notifier& notifier, ProfileEvents& events, WorkerThreads& threads, QWidget* frame)
{
    static QPointer<CProfile> open;
    if (!open) {
        open = new CProfile(notifier, events, threads, frame);
        open->setAttribute(Qt::WA_DeleteOnClose);
    }
    open->show();
    open->raise();
    open->activateWindow();
    return open;
}

void CProfile::createMenu()
{
    QMenu* menu = menuBar()->addMenu(tr("&Profile"));
    QAction* site = menu->addAction(tr("New &Site"), this, &CProfile::newSite);
    site->setShortcut(QKeySequence::New);
    // F2, Delete and Insert belong to the pane that has the focus (a text field keeps its own
    // Delete), so the menu only shows them.
    menu->addAction(tr("New &Folder\tIns"), tree_, &CProfTree::newFolder);
    menu->addAction(tr("&Rename\tF2"), this, [this] {
        if (list_->hasFocus())
            list_->renameSelected();
        else
            tree_->renameSelected();
    });
    menu->addAction(tr("&Delete\tDel"), this, [this] {
        if (list_->hasFocus())
            list_->deleteSelected();
        else
            tree_->deleteSelected();
    });
    menu->addSeparator();
    menu->addAction(tr("&Import from previous Zelto Version..."), this, &CProfile::importProfiles);
    menu->addSeparator();
    QAction* close = menu->addAction(tr("&Close"), this, &QWidget::close);
    close->setShortcut(QKeySequence::Close);
}

void CProfile::wirePanes()
{
    connect(tree_, &CProfTree::folderChosen, this, [this](const QString& folder) {
        list_->showFolder(folder);
        form_->setFolder(folder);
        // The caption says where a new profile goes.
        const QString below = QDir(ProfileStore::root()).relativeFilePath(folder);
        setWindowTitle(below == u'.'
                ? tr("FTP Profiles")
                : tr("FTP Profiles - %1").arg(QDir::toNativeSeparators(below)));
    });
    connect(tree_, &CProfTree::opened, list_, qOverload<>(&QWidget::setFocus));
    connect(list_, &CProfView::profileChosen, form_, &CProfDialog::load);
    connect(list_, &CProfView::opened, form_, [this] {
        // The name of a profile is changed by renaming: the first field to edit is the server.
        (form_->nameField()->isEnabled() ? form_->nameField() : form_->hostField())->setFocus();
    });
    connect(form_, &CProfDialog::saved, this,
        [this](const QString& folder, const QString& file) { list_->showFolder(folder, file); });
    list_->showFolder(tree_->folder());
    form_->setFolder(tree_->folder());
}

void CProfile::newSite()
{
    form_->newSite();
}

void CProfile::importProfiles()
{
    const QString file = chooseImport_();
    if (file.isEmpty())
        return;
    if (store_.importServerFile(file, tree_->folder()) > 0)
        list_->showFolder(tree_->folder());
}

void CProfile::closeEvent(QCloseEvent* event)
{
    StoredPlacement::save(*this, kPlacement);
    splitter_->saveSizes();
    QMainWindow::closeEvent(event);
}

} // namespace zelto
