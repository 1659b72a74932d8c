#include "CFileListView.h"

#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "profiles/FileListStore.h"
#include "profiles/FolderTree.h"
#include "widgets/ReportList.h"

#include <QAction>
#include <QCoreApplication>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QInputDialog>
#include <QMimeData>
#include <QStyle>
#include <QUrl>

#include <algorithm>
#include <chrono>

namespace zelto {
namespace {

// How long one slice of adding may hold the event loop.
constexpr std::chrono::milliseconds kSlice { 20 };

QStringList localPaths(const QMimeData& data)
{
    QStringList paths;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            paths.append(url.toLocalFile());
    }
    return paths;
}

} // namespace

CFileListView::CFileListView(Notifier& notifier, QWidget* parent)
    : QTreeView(parent), notifier_(notifier)
{
    setModel(&model_);
    setUpReportList(*this);
    setAcceptDrops(true);
    viewport()->setAcceptDrops(true);
    // The last column takes what is left, so that a pane of usual width needs no scroll bar.
    header()->resizeSection(FileListModel::Name, 130);
    header()->resizeSection(FileListModel::Folder, 160);
    header()->resizeSection(FileListModel::RemoteName, 120);
    connect(&model_, &FileListModel::changedFlagChanged, this, &CFileListView::changedFlagChanged);
    slices_.setInterval(0);
    connect(&slices_, &QTimer::timeout, this, &CFileListView::addSlice);
    createActions();
    setDefaultDialogs();
}

void CFileListView::createActions()
{
    const auto make = [this](const QString& text, const char* themeIcon,
                          QStyle::StandardPixmap fallback, auto slot, const QKeySequence& keys) {
        auto* action = new QAction(
            QIcon::fromTheme(QLatin1String(themeIcon), style()->standardIcon(fallback)), text,
            this);
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
    };
    make(tr("&Add Files..."), "list-add", QStyle::SP_FileIcon, &CFileListView::addFiles,
        QKeySequence(Qt::Key_Insert));
    make(tr("Add F&older..."), "folder-new", QStyle::SP_DirIcon, &CFileListView::addFolder, {});
    make(tr("&Remove"), "list-remove", QStyle::SP_TrashIcon, &CFileListView::removeSelected,
        QKeySequence::Delete);
    make(tr("Change Remote &Name..."), "edit-rename", QStyle::SP_FileLinkIcon,
        &CFileListView::changeRemoteName, QKeySequence(Qt::Key_F2));
    auto* separator = new QAction(this);
    separator->setSeparator(true);
    addAction(separator);
    make(tr("&Load Server File..."), "document-open", QStyle::SP_DialogOpenButton,
        &CFileListView::loadServerFile, {});
    make(tr("&Save List..."), "document-save", QStyle::SP_DialogSaveButton,
        &CFileListView::saveList, {});
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void CFileListView::setDefaultDialogs()
{
    dialogs_.chooseFiles = [this] { return QFileDialog::getOpenFileNames(this, tr("Add Files")); };
    dialogs_.chooseFolder
        = [this] { return QFileDialog::getExistingDirectory(this, tr("Add Folder")); };
    dialogs_.chooseServerFile = [this] {
        return QFileDialog::getOpenFileName(this, tr("Load Server File"), {}, tr("Files (*.fls)"));
    };
    dialogs_.askText
        = [this](const QString& prompt, const QString& initial) -> std::optional<QString> {
        bool ok = false;
        const QString text = QInputDialog::getText(
            this, QCoreApplication::applicationName(), prompt, QLineEdit::Normal, initial, &ok);
        return ok ? std::optional(text) : std::nullopt;
    };
}

void CFileListView::openList(const QString& listFolder)
{
    listFolder_ = listFolder;
    model_.open(listFolder.isEmpty() ? QString() : FileListStore::listFile(listFolder));
}

void CFileListView::loadList(const QString& listFile)
{
    model_.load(listFile);
}

bool CFileListView::addDropped(const QMimeData& data)
{
    const QStringList paths = localPaths(data);
    addPaths(paths);
    return !paths.isEmpty();
}

void CFileListView::addPaths(const QStringList& paths)
{
    pending_.insert(pending_.end(), paths.begin(), paths.end());
    if (!pending_.empty() && !slices_.isActive())
        slices_.start();
}

void CFileListView::addSlice()
{
    QElapsedTimer clock;
    clock.start();
    while (!pending_.empty() && clock.elapsed() < kSlice.count()) {
        const QFileInfo info(QDir::cleanPath(pending_.front()));
        pending_.pop_front();
        if (!info.exists() || info.fileName().isEmpty())
            continue;
        FileListEntry entry;
        entry.folder = info.absolutePath();
        entry.localName = info.fileName();
        entry.size = info.isFile() ? info.size() : 0;
        entry.lastWrite = info.lastModified().toMSecsSinceEpoch();
        model_.add(entry);
    }
    if (!pending_.empty())
        return;
    slices_.stop();
    Q_EMIT addingFinished();
}

void CFileListView::addFiles()
{
    addPaths(dialogs_.chooseFiles());
}

void CFileListView::addFolder()
{
    const QString folder = dialogs_.chooseFolder();
    if (!folder.isEmpty())
        addPaths({ folder });
}

void CFileListView::removeSelected()
{
    model_.remove(selectedRows(), notifier_);
}

void CFileListView::changeRemoteName()
{
    const std::optional<int> row = model_.list().rowToRename(selectedRows(), notifier_);
    if (!row)
        return;
    const FileListEntry& entry = entries()[std::size_t(*row)];
    const std::optional<QString> answer
        = dialogs_.askText(StringTable::text(ids::kEnterNewFileName),
            entry.remoteName.isEmpty() ? entry.localName : entry.remoteName);
    if (answer)
        model_.changeRemoteName(*row, *answer, notifier_);
}

void CFileListView::loadServerFile()
{
    const QString path = dialogs_.chooseServerFile();
    if (path.isEmpty())
        return;
    model_.loadServerFile(
        path, listFolder_.isEmpty() ? QString() : FileListStore::listFile(listFolder_), notifier_);
}

void CFileListView::saveList()
{
    if (model_.list().isEmpty())
        return;
    QString folder = listFolder_;
    if (folder.isEmpty()) {
        const std::optional<QString> name
            = dialogs_.askText(StringTable::text(ids::kEnterFileListName), {});
        if (!name || name->trimmed().isEmpty())
            return;
        if (!FolderTree::isFolderName(name->trimmed())) {
            notifier_.showMessage(
                StringTable::text(ids::kNoPathToCreateDirectory), MessageIcon::Stop);
            return;
        }
        const std::optional<QString> made = FileListStore::folderForName(name->trimmed());
        if (!made)
            return;
        folder = *made;
        // A typed name may be that of a list kept for years: it is replaced only on a Yes.
        if (QFileInfo::exists(FileListStore::listFile(folder))
            && !notifier_.askYesNo(tr("A file list named %1 exists already. Replace it?")
                                       .arg(QFileInfo(folder).fileName())))
            return;
    }
    const QString listFile = FileListStore::listFile(folder);
    if (!model_.save(listFile)) {
        // The list stays changed in the view, so nothing is lost.
        notifier_.showMessage(
            tr("The list could not be saved to %1.").arg(QDir::toNativeSeparators(listFile)),
            MessageIcon::Stop);
        return;
    }
    Q_EMIT listSaved(folder);
}

std::vector<int> CFileListView::selectedRows() const
{
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void CFileListView::dragEnterEvent(QDragEnterEvent* event)
{
    if (localPaths(*event->mimeData()).isEmpty())
        event->ignore();
    else
        event->acceptProposedAction();
}

void CFileListView::dragMoveEvent(QDragMoveEvent* event)
{
    if (localPaths(*event->mimeData()).isEmpty())
        event->ignore();
    else
        event->acceptProposedAction();
}

void CFileListView::dropEvent(QDropEvent* event)
{
    if (addDropped(*event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

} // namespace zelto
