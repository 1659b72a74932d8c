#include "CLogView.h"

#include "log/LogFile.h"
#include "log/LogWriter.h"
#include "log/ui/LogPageLayout.h"
#include "log/ui/LogTableModel.h"
#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QPageSetupDialog>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QStyle>

#include <algorithm>

namespace zelto {
namespace {

QLatin1StringView viewKeyText(LogFilter filter)
{
    switch (filter) {
    case LogFilter::All:
        return QLatin1StringView(settings::log::kViewAll);
    case LogFilter::Successful:
        return QLatin1StringView(settings::log::kViewSuccess);
    case LogFilter::Unsuccessful:
        return QLatin1StringView(settings::log::kViewUnsuccess);
    }
    return QLatin1StringView(settings::log::kViewAll);
}

QString askForLogFile(QWidget* parent, CLogView::FileAction action, const QString& folder)
{
    const bool opening = action == CLogView::FileAction::Open;
    QFileDialog dialog(parent, opening ? QObject::tr("Open Log") : QObject::tr("Save Log"), folder,
        QObject::tr("Logs (*.log)"));
    dialog.setDefaultSuffix(QStringLiteral("log"));
    dialog.setAcceptMode(opening ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(opening ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    // The log asks its own question before it replaces a file.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    return dialog.selectedFiles().value(0);
}

QIcon themeIcon(const char* name, QStyle::StandardPixmap fallback, const QStyle* style)
{
    return QIcon::fromTheme(QString::fromLatin1(name), style->standardIcon(fallback));
}

// One icon per outcome, so that a row's kind of event shows before its text is read: each
// success by what it did, each failure as an error, and the two ends of a connection as such.
std::vector<QIcon> outcomeIcons(const QStyle* style)
{
    // The OK and Failed pairs, in the order of their outcomes.
    const QIcon succeeded[] = {
        themeIcon("network-connect", QStyle::SP_DriveNetIcon, style), // FTP connection
        themeIcon("dialog-ok", QStyle::SP_DialogApplyButton, style), // transfer
        themeIcon("network-wired", QStyle::SP_ComputerIcon, style), // Internet connection
        themeIcon("folder-open", QStyle::SP_DirOpenIcon, style), // change directory
        themeIcon("edit-delete", QStyle::SP_TrashIcon, style), // deletion
        themeIcon("edit-rename", QStyle::SP_FileDialogContentsView, style), // renaming
        themeIcon("folder-new", QStyle::SP_FileDialogNewFolder, style), // make directory
    };
    const QIcon failed = themeIcon("dialog-error", QStyle::SP_MessageBoxCritical, style);
    std::vector<QIcon> icons;
    for (const QIcon& icon : succeeded) {
        icons.push_back(icon);
        icons.push_back(failed);
    }
    // The ends: the FTP connection closed, the Internet connection closed, the session ended.
    icons.push_back(themeIcon("network-disconnect", QStyle::SP_DialogCloseButton, style));
    icons.push_back(themeIcon("network-offline", QStyle::SP_BrowserStop, style));
    icons.push_back(themeIcon("process-stop", QStyle::SP_MediaStop, style));
    return icons;
}

} // namespace

CLogView::CLogView(LogWriter& writer, Notifier& notifier, QWidget* parent)
    : QTableView(parent)
    , writer_(writer)
    , notifier_(notifier)
    , model_(new LogTableModel(outcomeIcons(style()), writer.filter(), this))
    , chooseFile_([this](QWidget* owner, FileAction action) {
        return askForLogFile(owner, action, QFileInfo(writer_.filePath()).absolutePath());
    })
{
    setModel(model_);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    // Fixed row heights keep a refill of many rows from measuring any of them.
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    // A click on a header sorts by it, a second reverses; it starts in the order of writing.
    horizontalHeader()->setSortIndicator(LogTableModel::Seq, Qt::AscendingOrder);
    setSortingEnabled(true);
    // Tab leaves the log for the next pane; the arrows move within it.
    setTabKeyNavigation(false);
    setInitialColumnWidths();
    addContextActions();
    writer_.addListener(this);
}

CLogView::~CLogView()
{
    // After this no writer calls in; a batch already queued dies with the view.
    writer_.removeListener(this);
}

void CLogView::addContextActions()
{
    const auto add = [this](const QString& text, QKeySequence::StandardKey key, const char* icon,
                         void (CLogView::*slot)()) {
        auto* action = new QAction(QIcon::fromTheme(QString::fromLatin1(icon)), text, this);
        action->setShortcut(key);
        // Only while the log has the focus: the frame's menus keep these keys elsewhere.
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
    };
    add(tr("&Copy"), QKeySequence::Copy, "edit-copy", &CLogView::copySelection);
    add(tr("Select &All"), QKeySequence::SelectAll, "edit-select-all", &CLogView::selectAll);
    auto* separator = new QAction(this);
    separator->setSeparator(true);
    addAction(separator);
    add(tr("C&lear"), QKeySequence::UnknownKey, "edit-clear", &CLogView::clearLog);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

QString CLogView::selectedText() const
{
    QList<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    QString text;
    for (const int row : rows) {
        QStringList cells;
        for (int column = 0; column < LogTableModel::ColumnCount; ++column)
            cells.append(LogTableModel::cellText(model_->recordAt(row), column));
        text += cells.join(u'\t') + u'\n';
    }
    return text;
}

void CLogView::copySelection()
{
    if (const QString text = selectedText(); !text.isEmpty())
        QGuiApplication::clipboard()->setText(text);
}

void CLogView::setInitialColumnWidths()
{
    const QFontMetrics metrics = fontMetrics();
    const int padding = 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 12;
    const auto widthOf
        = [&](const QString& sample) { return metrics.horizontalAdvance(sample) + padding; };
    int event = 0;
    for (int id = ids::kLogFtpConnectionOk; id <= ids::kLogInternetConnectionClosed; ++id)
        event = std::max(event, widthOf(StringTable::text(id)));
    const int field = widthOf(QString(16, u'x'));
    const int icon = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const int widths[] = { event + icon + 8, widthOf(QStringLiteral("000000")),
        widthOf(QStringLiteral("00:00:00pm")), widthOf(QStringLiteral("00-Sep-0000")), field, field,
        field };
    for (int column = 0; column < int(std::size(widths)); ++column)
        setColumnWidth(column, widths[column]);
}

LogFilter CLogView::filter() const
{
    return model_->filter();
}

void CLogView::setFilter(LogFilter filter)
{
    if (filter == model_->filter())
        return;
    SettingsStore::set(settings::log::kView, QString(viewKeyText(filter)));
    model_->setFilter(filter);
    Q_EMIT filterChanged(filter);
}

void CLogView::recordAdded(const LogRecord& record, bool /*visible*/)
{
    // The view filters by its own choice: the writer's may lag behind a change made here.
    bool startsBatch = false;
    {
        const std::lock_guard guard(pendingMutex_);
        startsBatch = pending_.isEmpty();
        pending_.append(record);
    }
    if (startsBatch)
        QMetaObject::invokeMethod(this, &CLogView::showPending, Qt::QueuedConnection);
}

void CLogView::showPending()
{
    QList<LogRecord> batch;
    {
        const std::lock_guard guard(pendingMutex_);
        batch.swap(pending_);
    }
    const int rowsBefore = model_->rowCount();
    model_->append(batch);
    // New rows are always the last ones; this also lays out the rows just inserted first.
    if (model_->rowCount() > rowsBefore)
        scrollToBottom();
}

void CLogView::openLog()
{
    const QString path = chooseFile_(this, FileAction::Open);
    if (!path.isEmpty())
        writer_.replay(LogFile::readRecords(path));
}

void CLogView::saveLog()
{
    if (model_->rowCount() == 0)
        return;
    const QString path = chooseFile_(this, FileAction::Save);
    if (path.isEmpty())
        return;
    if (QFileInfo::exists(path)
        && !notifier_.askOkCancel(
            QApplication::applicationName(), StringTable::text(ids::kFileExistsOverwrite)))
        return;
    if (!LogFile::save(path, model_->shownRecords()))
        notifier_.showMessage(tr("The log could not be saved to %1.").arg(path), MessageIcon::Stop);
}

void CLogView::clearLog()
{
    if (model_->rowCount() == 0
        || !notifier_.askYesNo(tr("Clear the log view? The log file keeps its records.")))
        return;
    model_->clear();
}

QPrinter& CLogView::printer()
{
    // Kept for the run, so that a page set-up holds for the next print.
    if (!printer_)
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    return *printer_;
}

void CLogView::printDocument(QPrinter* printer)
{
    QStringList lines;
    lines.reserve(model_->rowCount());
    for (int row = 0; row < model_->rowCount(); ++row)
        lines.append(LogPageLayout::rowLine(model_->recordAt(row)));
    if (lines.isEmpty())
        return;
    QPainter painter(printer);
    if (!painter.isActive())
        return;
    const LogPageLayout layout(font(), *printer);
    int first = 1;
    int last = layout.pageCount(lines.size());
    if (printer->fromPage() > 0) {
        first = std::max(first, printer->fromPage());
        last = std::min(last, printer->toPage());
    }
    for (int page = first; page <= last; ++page) {
        if (page > first)
            printer->newPage();
        layout.drawPage(painter, page, lines);
    }
}

void CLogView::print()
{
    if (model_->rowCount() == 0)
        return;
    QPrintDialog dialog(&printer(), this);
    if (dialog.exec() == QDialog::Accepted)
        printDocument(&printer());
}

void CLogView::printPreview()
{
    QPrintPreviewDialog dialog(&printer(), this);
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this, &CLogView::printDocument);
    dialog.exec();
}

void CLogView::pageSetup()
{
    QPageSetupDialog dialog(&printer(), this);
    dialog.exec();
}

} // namespace zelto
