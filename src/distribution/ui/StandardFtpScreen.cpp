#include "StandardFtpScreen.h"

#include "distribution/ui/BrowserTransfers.h"
#include "distribution/ui/CRemFilesView.h"
#include "distribution/ui/RemoteHalf.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "widgets/CDirView.h"
#include "widgets/CDriveTree.h"

#include <QAction>
#include <QDir>
#include <QDropEvent>
#include <QSplitter>

namespace zelto {

StandardFtpScreen::StandardFtpScreen(JobServices& jobs, Notifier& notifier, WorkerThreads& threads,
    BrowserTransfers& transfers, QObject* parent)
    : QObject(parent)
    , transfers_(transfers)
    , remote_(new RemoteHalf(jobs, notifier, threads))
    , local_(new QSplitter(Qt::Horizontal))
    , drives_(new CDriveTree)
    , files_(new CDirView)
{
    auto* split = static_cast<QSplitter*>(local_);
    split->addWidget(drives_);
    split->addWidget(files_);
    split->setStretchFactor(1, 2);
    drives_->setAccessibleName(tr("Local folders"));
    files_->setAccessibleName(tr("Local files"));
    connect(drives_, &CDriveTree::folderSelected, files_, &CDirView::setFolder);
    connect(files_, &CDirView::folderActivated, this, [this](const QString& folder) {
        drives_->selectFolder(folder);
        files_->setFolder(folder);
    });
    connect(files_, &CDirView::fileActivated, this, &StandardFtpScreen::localActivated);
    connect(remote_, &RemoteHalf::getRequested, this, &StandardFtpScreen::get);
    connect(remote_, &RemoteHalf::putRequested, this, &StandardFtpScreen::put);

    auto* putAction = new QAction(tr("&Put"), files_);
    putAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_U));
    putAction->setShortcutContext(Qt::WidgetShortcut);
    connect(putAction, &QAction::triggered, this, [this] { put(files_->selectedPaths()); });
    files_->addAction(putAction);
    files_->setContextMenuPolicy(Qt::ActionsContextMenu);

    for (QWidget* target : { files_->viewport(), drives_->viewport() }) {
        target->setAcceptDrops(true);
        target->installEventFilter(this);
    }
    const QString home = QDir::homePath();
    if (!drives_->selectFolder(home))
        files_->setFolder(home);
}

QWidget* StandardFtpScreen::remotePane() const
{
    return remote_;
}

bool StandardFtpScreen::eventFilter(QObject* watched, QEvent* event)
{
    const auto type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto* drop = static_cast<QDropEvent*>(event);
    auto* source = CRemFilesView::dragSource(drop);
    if (!source || source != remote_->files() || !remote_->isConnected()) {
        return QObject::eventFilter(watched, event);
    }
    drop->acceptProposedAction();
    if (type == QEvent::Drop)
        get(remote_->selectedFileNames());
    return true;
}

void StandardFtpScreen::get(const QStringList& names)
{
    const QString folder = files_->folder();
    if (names.isEmpty() || folder.isEmpty())
        return;
    std::vector<BrowserTransfers::RemoteFile> files;
    for (const auto& name : names)
        files.push_back({ name, remote_->sizeOf(name) });
    transfers_.get(
        remote_->window(), remote_->site(), files, folder, files_, [this] { files_->refresh(); });
}

void StandardFtpScreen::put(const QStringList& paths)
{
    if (paths.isEmpty() || !remote_->isConnected() || remote_->isBusy())
        return;
    transfers_.put(
        remote_->window(), remote_->site(), paths, remote_, [this] { remote_->refresh(); });
}

void StandardFtpScreen::localActivated(const QString& path)
{
    if (SettingsStore::get(settings::config::kLocalDblClick) == u"TRANSFER")
        put({ path });
}

} // namespace zelto
