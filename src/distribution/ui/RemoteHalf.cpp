#include "RemoteHalf.h"

#include "distribution/FolderUpload.h"
#include "distribution/RunOffThread.h"
#include "distribution/ui/CQuickConnectDlg.h"
#include "distribution/ui/CRemFilesView.h"
#include "distribution/ui/CRemoteTree.h"
#include "ftp/BrowserSession.h"
#include "platform/Notifier.h"
#include "platform/StringTable.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"
#include "widgets/FileMask.h"
#include "widgets/FileRow.h"

#include <QAction>
#include <QInputDialog>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace zelto {
namespace {

QString parentOf(const QString& folder)
{
    const auto slash = folder.lastIndexOf(u'/');
    return slash <= 0 ? QStringLiteral("/") : folder.left(slash);
}

FileRow rowOf(const RemoteEntry& entry)
{
    return { entry.name, std::max<qint64>(entry.size, 0), entry.isFolder(), entry.modified };
}

// The half that holds `widget`, if any.
RemoteHalf* halfOf(QWidget* widget)
{
    for (; widget; widget = widget->parentWidget()) {
        if (auto* half = qobject_cast<RemoteHalf*>(widget))
            return half;
    }
    return nullptr;
}

QString withArgs(int id, const QStringList& args)
{
    QString text = StringTable::text(id);
    for (const auto& arg : args)
        text.replace(text.indexOf(QLatin1String("%s")), 2, arg);
    return text;
}

} // namespace

RemoteHalf::RemoteHalf(
    JobServices& services, Notifier& notifier, WorkerThreads& threads, QWidget* parent)
    : QWidget(parent)
    , services_(services)
    , notifier_(notifier)
    , threads_(threads)
    , session_(std::make_shared<BrowserSession>(services, stop_.get_token()))
    , tree_(new CRemoteTree)
    , files_(new CRemFilesView)
    , status_(new QLabel(tr("Not connected")))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* split = new QSplitter(Qt::Horizontal);
    split->addWidget(tree_);
    split->addWidget(files_);
    split->setStretchFactor(1, 2);
    // Where a new user looks first: the connect and disconnect of this half, as buttons.
    auto* bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    bar->addAction(tr("Quick Connect..."), this, &RemoteHalf::quickConnect);
    bar->addAction(tr("Disconnect"), this, &RemoteHalf::disconnectSite);
    layout->addWidget(bar);
    layout->addWidget(split, 1);
    layout->addWidget(status_);
    files_->setAccessibleName(tr("Remote files"));
    setFocusProxy(tree_);
    prompt_ = [this](const QString& caption, const QString& label,
                  const QString& text) -> std::optional<QString> {
        QInputDialog dialog(this);
        dialog.setWindowTitle(caption);
        dialog.setLabelText(label);
        dialog.setTextValue(text);
        // Wide enough for its title and a long file name, at any font size.
        dialog.resize(
            std::max(dialog.sizeHint().width(), dialog.fontMetrics().averageCharWidth() * 50),
            dialog.sizeHint().height());
        if (dialog.exec() != QDialog::Accepted)
            return std::nullopt;
        return dialog.textValue();
    };
    buildActions();

    connect(tree_, &CRemoteTree::folderChosen, this, &RemoteHalf::openFolder);
    connect(tree_, &CRemoteTree::rowsDropped, this, &RemoteHalf::moveRows);
    connect(files_, &CFileView::rowActivated, this, &RemoteHalf::activated);
    connect(files_, &CRemFilesView::renameRequested, this, &RemoteHalf::renameSelected);
    connect(files_, &CRemFilesView::deleteRequested, this, &RemoteHalf::deleteSelected);
    connect(files_, &CRemFilesView::parentRequested, this, &RemoteHalf::parentFolder);
    connect(files_, &CRemFilesView::refreshRequested, this, &RemoteHalf::refresh);
    connect(files_, &CRemFilesView::localFilesDropped, this,
        [this](const QStringList& paths, bool fromShell) {
            if (connected_ && !busy_)
                Q_EMIT putRequested(paths, fromShell);
        });
    connect(files_, &CRemFilesView::remoteRowsDropped, this, [this](CRemFilesView* source) {
        auto* from = halfOf(source);
        if (from && connected_ && !busy_ && from->isConnected())
            Q_EMIT copyRequested(from, from->selectedFileNames());
    });
}

RemoteHalf::~RemoteHalf()
{
    // A worker still under way ends at its next libcurl callback and drops its session.
    stop_.request_stop();
}

void RemoteHalf::buildActions()
{
    const auto add = [this](QWidget* widget, const QString& text, const QKeySequence& key,
                         std::function<void()> slot) {
        auto* action = new QAction(text, widget);
        action->setShortcut(key);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, std::move(slot));
        widget->addAction(action);
    };
    const auto slot = [this](void (RemoteHalf::*member)()) {
        return std::function<void()>([this, member] { (this->*member)(); });
    };
    tree_->setContextMenuPolicy(Qt::ActionsContextMenu);
    files_->setContextMenuPolicy(Qt::ActionsContextMenu);
    for (QWidget* widget : { static_cast<QWidget*>(tree_), static_cast<QWidget*>(files_) }) {
        add(widget, tr("&Quick Connect..."), QKeySequence(Qt::CTRL | Qt::Key_K),
            slot(&RemoteHalf::quickConnect));
        add(widget, tr("&Disconnect"), QKeySequence(), slot(&RemoteHalf::disconnectSite));
    }
    add(tree_, tr("&New Folder..."), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N),
        slot(&RemoteHalf::makeFolder));
    add(tree_, tr("Re&move Folder"), QKeySequence(), slot(&RemoteHalf::removeFolder));
    add(tree_, tr("&Refresh"), QKeySequence(Qt::Key_F5), slot(&RemoteHalf::refresh));
    // F2, Delete, Backspace and F5 of the list are its own keys.
    add(files_, tr("&Get"), QKeySequence(Qt::CTRL | Qt::Key_G), [this] {
        if (connected_ && !busy_)
            if (const auto names = selectedFileNames() + selectedFolderNames(); !names.isEmpty())
                Q_EMIT getRequested(names);
    });
    add(files_, tr("Re&name...\tF2"), QKeySequence(), slot(&RemoteHalf::renameSelected));
    add(files_, tr("&Delete\tDel"), QKeySequence(), slot(&RemoteHalf::deleteSelected));
    add(files_, tr("&Filter..."), QKeySequence(Qt::CTRL | Qt::Key_L), slot(&RemoteHalf::filter));
    add(files_, tr("&Properties"), QKeySequence(Qt::ALT | Qt::Key_Return),
        slot(&RemoteHalf::properties));
    add(files_, tr("&Refresh\tF5"), QKeySequence(), slot(&RemoteHalf::refresh));
}

JobSite RemoteHalf::site() const
{
    JobSite site = site_;
    site.remoteFolder = folder_;
    return site;
}

QString RemoteHalf::siteName() const
{
    // Two sites of one host, as the Remote FTP screen may show, differ only by their ports.
    return site_.port == 21 ? site_.server : site_.server + u':' + QString::number(site_.port);
}

QStringList RemoteHalf::selectedFileNames() const
{
    QStringList names;
    QStringList refused;
    for (const auto& row : files_->selectedRows()) {
        if (row.folder)
            continue;
        (RemoteEntry::isPlainName(row.name) ? names : refused).append(row.name);
    }
    if (!refused.isEmpty())
        notifier_.showMessage(
            tr("These names cannot be used on this computer:\n%1").arg(refused.join(u'\n')),
            MessageIcon::Stop);
    return names;
}

QStringList RemoteHalf::fileNamesMatching(const QString& mask) const
{
    const FileMask pattern(mask);
    QStringList names;
    for (const auto& entry : listing_.entries()) {
        if (!entry.isFolder() && RemoteEntry::isPlainName(entry.name)
            && pattern.matches(entry.name))
            names.append(entry.name);
    }
    return names;
}

QStringList RemoteHalf::selectedFolderNames() const
{
    QStringList names;
    for (const auto& row : files_->selectedRows()) {
        if (row.folder && RemoteEntry::isPlainName(row.name))
            names.append(row.name);
    }
    return names;
}

bool RemoteHalf::isFolder(const QString& name) const
{
    const auto& entries = listing_.entries();
    return std::any_of(entries.begin(), entries.end(),
        [&](const RemoteEntry& entry) { return entry.name == name && entry.isFolder(); });
}

qint64 RemoteHalf::sizeOf(const QString& name) const
{
    for (const auto& entry : listing_.entries()) {
        if (entry.name == name)
            return std::max<qint64>(entry.size, 0);
    }
    return 0;
}

template <typename Work, typename Deliver> void RemoteHalf::run(Work work, Deliver deliver)
{
    setBusy(true);
    runOffThread(
        threads_, this, [session = session_, work = std::move(work)]() { return work(*session); },
        [this, deliver = std::move(deliver)](auto result) mutable {
            setBusy(false);
            deliver(std::move(result));
        });
}

void RemoteHalf::setBusy(bool busy)
{
    busy_ = busy;
    if (busy) {
        setCursor(Qt::BusyCursor);
        status_->setText(StringTable::text(ids::kRetrievingRemoteFiles));
    } else {
        unsetCursor();
        status_->setText(connected_
                ? StringTable::text(ids::kConnectedTo).replace(QLatin1String("%s"), siteName())
                : tr("Not connected"));
    }
    Q_EMIT busyChanged(busy);
}

void RemoteHalf::quickConnect()
{
    if (busy_)
        return;
    CQuickConnectDlg dialog(this);
    if (dialog.exec() == QDialog::Accepted)
        connectTo(dialog.site());
}

void RemoteHalf::connectTo(const JobSite& site)
{
    if (busy_)
        return;
    run([site](BrowserSession& session) { return session.connect(site); },
        [this, site](const FtpResult& result) {
            connected_ = result.ok();
            if (!connected_) {
                tree_->clearSite();
                files_->setRows({});
                setBusy(false);
                return;
            }
            site_ = site;
            folder_.clear();
            openFolder({});
        });
}

void RemoteHalf::disconnectSite()
{
    if (busy_ || !connected_)
        return;
    run(
        [](BrowserSession& session) {
            session.disconnect();
            return true;
        },
        [this](bool) {
            connected_ = false;
            folder_.clear();
            tree_->clearSite();
            files_->setRows({});
            setBusy(false);
        });
}

void RemoteHalf::refresh()
{
    openFolder(folder_);
}

void RemoteHalf::openFolder(const QString& folder)
{
    if (busy_ || !connected_)
        return;
    run(
        [folder](BrowserSession& session) {
            auto listed = session.list(folder);
            return std::pair(std::move(listed), session.currentFolder());
        },
        [this](std::pair<FtpValue<RemoteListing>, QString> listed) {
            if (!listed.first.ok()) {
                showFailure(listed.first.result);
                return;
            }
            showListing(listed.second, listed.first.value);
        });
}

void RemoteHalf::parentFolder()
{
    if (!folder_.isEmpty() && folder_ != u"/")
        openFolder(parentOf(folder_));
}

void RemoteHalf::showListing(const QString& folder, const RemoteListing& listing)
{
    folder_ = folder;
    listing_ = listing;
    const FileMask pattern(mask_);
    std::vector<FileRow> rows;
    QStringList subfolders;
    for (const auto& entry : listing.entries()) {
        if (entry.isFolder())
            subfolders.append(entry.name);
        if (entry.isFolder() || pattern.matches(entry.name))
            rows.push_back(rowOf(entry));
    }
    files_->setRows(std::move(rows));
    tree_->showFolder(siteName(), folder, subfolders);
}

void RemoteHalf::activated(const FileRow& row)
{
    if (row.folder) {
        if (RemoteEntry::isPlainName(row.name))
            openFolder(BrowserSession::join(folder_, row.name));
        return;
    }
    if (SettingsStore::get(settings::config::kRemoteDblClick) == u"TRANSFER") {
        files_->selectRow(row.name);
        if (const auto names = selectedFileNames(); !names.isEmpty())
            Q_EMIT getRequested(names);
    }
}

void RemoteHalf::filter()
{
    const auto mask = ask(
        StringTable::text(ids::kFilterCaption), StringTable::text(ids::kFilterMaskLabel), mask_);
    if (!mask)
        return;
    mask_ = mask->trimmed();
    files_->setFileTitle(mask_.isEmpty()
            ? QString()
            : StringTable::text(ids::kColumnFile) + QStringLiteral(" (") + mask_ + u')');
    refresh();
}

void RemoteHalf::renameSelected()
{
    if (busy_ || !connected_)
        return;
    const auto rows = files_->selectedRows();
    if (rows.size() != 1) {
        notifier_.showMessage(
            StringTable::text(rows.empty() ? ids::kSelectFileToRename : ids::kOnlyOneFileAtATime),
            MessageIcon::Stop);
        return;
    }
    const FileRow row = rows.front();
    const auto name = ask(StringTable::text(ids::kEnterNewFileName),
        StringTable::text(ids::kEnterNewFileName), row.name);
    if (!name || name->isEmpty() || *name == row.name)
        return;
    if (!notifier_.askOkCancel(QString(), withArgs(ids::kConfirmRename, { row.name, *name })))
        return;
    const RemoteEntry entry { row.name,
        row.folder ? RemoteEntry::Kind::Folder : RemoteEntry::Kind::File };
    run([folder = folder_, entry, newName = *name](
            BrowserSession& session) { return session.rename(folder, entry, newName); },
        [this, row, newName = *name](const FtpResult& result) {
            if (!result.ok()) {
                showFailure(result);
                return;
            }
            FileRow renamed = row;
            renamed.name = newName;
            files_->replaceRow(row.name, renamed);
        });
}

void RemoteHalf::deleteSelected()
{
    if (busy_ || !connected_)
        return;
    const auto rows = files_->selectedRows();
    std::vector<RemoteEntry> chosen;
    bool all = false;
    for (const auto& row : rows) {
        if (!all) {
            Question question;
            question.caption = StringTable::text(ids::kDeleteCaption);
            question.text = withArgs(ids::kConfirmRemoveFile, { row.name });
            question.acceptTextId = ids::kButtonYes;
            question.middleEnabled = rows.size() > 1;
            const auto answer = notifier_.ask(question);
            if (answer == Answer::Cancelled)
                break;
            all = answer == Answer::Middle;
        }
        chosen.push_back(
            { row.name, row.folder ? RemoteEntry::Kind::Folder : RemoteEntry::Kind::File });
    }
    if (chosen.empty())
        return;
    run(
        [folder = folder_, chosen](BrowserSession& session) {
            std::vector<std::pair<QString, FtpResult>> results;
            for (const auto& entry : chosen)
                results.emplace_back(entry.name,
                    entry.isFolder() ? session.removeFolder(folder, entry)
                                     : session.removeFile(folder, entry));
            return results;
        },
        [this](const std::vector<std::pair<QString, FtpResult>>& results) {
            for (const auto& [name, result] : results) {
                if (result.ok())
                    files_->removeRow(name);
                else
                    showFailure(result);
            }
        });
}

void RemoteHalf::properties()
{
    const auto row = files_->currentRow();
    if (!row)
        return;
    const QLocale locale;
    QMessageBox box(QMessageBox::Information, row->name + tr(" Properties"),
        tr("Name: %1\nFolder: %2\nSize: %3 bytes\nModified: %4")
            .arg(row->name, folder_, locale.toString(row->size),
                locale.toString(row->modified.toLocalTime(), QLocale::ShortFormat)),
        QMessageBox::Ok, this);
    box.exec();
}

void RemoteHalf::makeFolder()
{
    if (busy_ || !connected_)
        return;
    const QString parent = tree_->currentFolder().isEmpty() ? folder_ : tree_->currentFolder();
    const auto name = ask(tr("New Folder"), tr("Folder &name:"), QString());
    if (!name || name->trimmed().isEmpty())
        return;
    run([parent, name = name->trimmed()](
            BrowserSession& session) { return session.makeFolder(parent, name); },
        [this, parent](const FtpResult& result) {
            if (!result.ok()) {
                showFailure(result);
                return;
            }
            openFolder(parent);
        });
}

void RemoteHalf::removeFolder()
{
    if (busy_ || !connected_)
        return;
    const QString folder = tree_->currentFolder();
    if (folder.isEmpty() || folder == u"/") {
        notifier_.showMessage(StringTable::text(ids::kNoPathToRemoveDirectory), MessageIcon::Stop);
        return;
    }
    const QString parent = parentOf(folder);
    const RemoteEntry entry { folder.mid(folder.lastIndexOf(u'/') + 1), RemoteEntry::Kind::Folder };
    if (!notifier_.askOkCancel(
            StringTable::text(ids::kDeleteCaption), withArgs(ids::kConfirmRemoveFile, { folder })))
        return;
    run([parent, entry](BrowserSession& session) { return session.removeFolder(parent, entry); },
        [this, parent](const FtpResult& result) {
            if (!result.ok())
                showFailure(result);
            openFolder(parent);
        });
}

void RemoteHalf::prepareFolderPut(
    const QStringList& localFolders, std::function<void(std::vector<FileEntry>)> then)
{
    if (busy_ || !connected_)
        return;
    const auto placement = RemotePlacement::dirTreeSetting(true);
    const QString casing = SettingsStore::get(settings::config::kFileCasingPut);
    run(
        [localFolders, folder = folder_, placement, casing](BrowserSession& session) {
            auto upload = FolderUpload::plan(localFolders, folder, placement, casing);
            // A folder that cannot be made fails its files in the put, with the engine's message.
            for (const auto& path : upload.remoteFolders)
                (void)session.makeFolder(
                    parentOf(path), path.mid(path.lastIndexOf(u'/') + 1), true);
            return std::move(upload.files);
        },
        [then = std::move(then)](std::vector<FileEntry> files) { then(std::move(files)); });
}

void RemoteHalf::prepareFolderGet(
    const QStringList& names, const QString& localFolder, std::function<void(FolderDownload)> then)
{
    if (busy_ || !connected_ || names.isEmpty())
        return;
    const auto placement = RemotePlacement::dirTreeSetting(true);
    const QString casing = SettingsStore::get(settings::config::kFileCasingGet);
    run(
        [names, folder = folder_, localFolder, placement, casing](BrowserSession& session) {
            return FolderDownload::plan(session, folder, names, localFolder, placement, casing);
        },
        [then = std::move(then)](FolderDownload download) { then(std::move(download)); });
}

void RemoteHalf::moveRows(CRemFilesView* source, const QString& folder)
{
    // Rows of another site are copied by a drop on its list, not moved.
    if (source != files_ || busy_ || !connected_ || folder == folder_)
        return;
    std::vector<RemoteEntry> entries;
    for (const auto& name : selectedFileNames())
        entries.push_back({ name });
    run(
        [from = folder_, to = folder, entries](BrowserSession& session) {
            std::vector<FtpResult> results;
            for (const auto& entry : entries)
                results.push_back(session.move(from, entry, to));
            return results;
        },
        [this](const std::vector<FtpResult>& results) {
            for (const auto& result : results) {
                if (!result.ok())
                    showFailure(result);
            }
            refresh();
        });
}

void RemoteHalf::showFailure(const FtpResult& result)
{
    notifier_.showMessage(result.message(), MessageIcon::Stop);
}

std::optional<QString> RemoteHalf::ask(
    const QString& caption, const QString& label, const QString& text)
{
    return prompt_(caption, label, text);
}

} // namespace zelto
