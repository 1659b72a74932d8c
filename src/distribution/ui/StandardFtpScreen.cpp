#include "StandardFtpScreen.h"

#include "distribution/ui/BrowserTransfers.h"
#include "distribution/ui/CRemFilesView.h"
#include "distribution/ui/RemoteHalf.h"
#include "platform/Notifier.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "widgets/CDirView.h"
#include "widgets/CDriveTree.h"
#include "widgets/FileMask.h"

#include <QAction>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QSplitter>

namespace zelto {

StandardFtpScreen::StandardFtpScreen(JobServices& jobs, Notifier& notifier, WorkerThreads& threads,
    BrowserTransfers& transfers, QObject* parent)
    : QObject(parent)
    , notifier_(notifier)
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
    buildActions();

    for (QWidget* target : { files_->viewport(), drives_->viewport() }) {
        target->setAcceptDrops(true);
        target->installEventFilter(this);
    }
    const QString home = QDir::homePath();
    if (!drives_->selectFolder(home))
        files_->setFolder(home);
}

void StandardFtpScreen::buildActions()
{
    auto* putAction = new QAction(tr("&Put"), files_);
    putAction->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_U));
    putAction->setShortcutContext(Qt::WidgetShortcut);
    connect(putAction, &QAction::triggered, this, [this] { put(files_->selectedPaths()); });
    files_->addAction(putAction);
    files_->setContextMenuPolicy(Qt::ActionsContextMenu);

    // The frame's commands; the wildcard forms join the lists' own menus as well.
    const auto add = [this](const QString& text, const QKeySequence& key, auto slot) {
        auto* action = new QAction(text, this);
        action->setShortcut(key);
        action->setEnabled(false);
        connect(action, &QAction::triggered, this, slot);
        actions_.append(action);
        return action;
    };
    add(tr("FTP &Get"), QKeySequence(),
        [this] { get(remote_->selectedFileNames() + remote_->selectedFolderNames()); });
    remote_->files()->addAction(add(tr("FTP Get &Wildcard..."),
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_G), [this] { getMatching(); }));
    add(tr("FTP &Put"), QKeySequence(), [this] { put(files_->selectedPaths()); });
    files_->addAction(add(tr("FTP P&ut Wildcard..."),
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_U), [this] { putMatching(); }));
    connect(remote_, &RemoteHalf::busyChanged, this, &StandardFtpScreen::updateActions);
    // Shown or hidden with the screen.
    remote_->installEventFilter(this);
}

void StandardFtpScreen::updateActions()
{
    const bool ready = remote_->isVisible() && remote_->isConnected() && !remote_->isBusy();
    for (QAction* action : actions_)
        action->setEnabled(ready);
}

QWidget* StandardFtpScreen::remotePane() const
{
    return remote_;
}

bool StandardFtpScreen::eventFilter(QObject* watched, QEvent* event)
{
    const auto type = event->type();
    if (watched == remote_) {
        if (type == QEvent::Show || type == QEvent::Hide)
            updateActions();
        return QObject::eventFilter(watched, event);
    }
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto* drop = static_cast<QDropEvent*>(event);
    auto* source = CRemFilesView::dragSource(drop);
    if (!source || source != remote_->files() || !remote_->isConnected()) {
        return QObject::eventFilter(watched, event);
    }
    drop->acceptProposedAction();
    if (type == QEvent::Drop)
        get(remote_->selectedFileNames() + remote_->selectedFolderNames());
    return true;
}

void StandardFtpScreen::getMatching()
{
    if (!remote_->isConnected() || remote_->isBusy())
        return;
    const auto mask = remote_->ask(
        tr("FTP Get Wildcard"), tr("Get the files that match:"), QStringLiteral("*"));
    if (!mask)
        return;
    const QStringList names = remote_->fileNamesMatching(*mask);
    if (names.isEmpty())
        notifier_.showMessage(tr("No file here matches %1.").arg(*mask), MessageIcon::Information);
    get(names);
}

void StandardFtpScreen::putMatching()
{
    if (!remote_->isConnected() || remote_->isBusy() || files_->folder().isEmpty())
        return;
    const auto mask = remote_->ask(
        tr("FTP Put Wildcard"), tr("Put the files that match:"), QStringLiteral("*"));
    if (!mask)
        return;
    const FileMask pattern(*mask);
    const QDir folder(files_->folder());
    QStringList paths;
    for (const auto& name : folder.entryList(QDir::Files | QDir::Hidden, QDir::Name)) {
        if (pattern.matches(name))
            paths.append(folder.filePath(name));
    }
    if (paths.isEmpty())
        notifier_.showMessage(tr("No file here matches %1.").arg(*mask), MessageIcon::Information);
    put(paths);
}

void StandardFtpScreen::get(const QStringList& names)
{
    const QString folder = files_->folder();
    if (names.isEmpty() || folder.isEmpty())
        return;
    std::vector<BrowserTransfers::RemoteFile> files;
    QStringList folders;
    for (const auto& name : names) {
        if (remote_->isFolder(name))
            folders.append(name);
        else
            files.push_back({ name, remote_->sizeOf(name) });
    }
    transfers_.get(
        remote_->window(), remote_->site(), files, folder, files_, [this] { files_->refresh(); });
    if (!folders.isEmpty() && takesFolders(folders, false))
        getFolders(folders);
}

void StandardFtpScreen::getFolders(const QStringList& names)
{
    const QString target = files_->folder();
    remote_->prepareFolderGet(names, target, [this, target](FolderDownload download) {
        if (!download.unlisted.isEmpty())
            notifier_.showMessage(
                tr("These folders could not be listed:\n%1").arg(download.unlisted.join(u'\n')),
                MessageIcon::Stop);
        for (const auto& folder : download.localFolders)
            QDir().mkpath(folder);
        transfers_.transfer(remote_->window(), TransferMode::Get, remote_->site(),
            std::move(download.files), true, files_, [this] { files_->refresh(); });
        if (files_->folder() == target)
            files_->refresh();
    });
}

void StandardFtpScreen::put(const QStringList& paths, bool fromShell)
{
    if (paths.isEmpty() || !remote_->isConnected() || remote_->isBusy())
        return;
    QStringList files;
    QStringList folders;
    for (const auto& path : paths)
        (QFileInfo(path).isDir() ? folders : files).append(path);
    transfers_.put(
        remote_->window(), remote_->site(), files, remote_, [this] { remote_->refresh(); });
    if (folders.isEmpty() || !takesFolders(folders, fromShell))
        return;
    remote_->prepareFolderPut(folders, [this](std::vector<FileEntry> entries) {
        transfers_.transfer(remote_->window(), TransferMode::Put, remote_->site(),
            std::move(entries), true, remote_, [this] { remote_->refresh(); });
        remote_->refresh();
    });
}

bool StandardFtpScreen::takesFolders(const QStringList& folders, bool fromShell)
{
    const auto& key = fromShell ? settings::config::kDragDropSubDirs
                                : settings::config::kDragDropDirsRemoteBrowser;
    if (SettingsStore::get(key) == QLatin1StringView(settings::kYes))
        return true;
    notifier_.showMessage(tr("These folders were left out: whole folders go by drag and drop only "
                             "when the %1 page of the options says so.\n%2")
                              .arg(fromShell ? tr("System") : tr("Misc"), folders.join(u'\n')),
        MessageIcon::Information);
    return false;
}

void StandardFtpScreen::localActivated(const QString& path)
{
    if (SettingsStore::get(settings::config::kLocalDblClick) == u"TRANSFER")
        put({ path });
}

} // namespace zelto
