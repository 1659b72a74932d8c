#include "CQueueDlg.h"

#include "distribution/RunOffThread.h"
#include "platform/Notifier.h"
#include "platform/PrivateProfile.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "queue/QueueDeletion.h"
#include "widgets/CHelpWindow.h"
#include "widgets/ReportList.h"
#include "widgets/StoredPlacement.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>
#include <set>

namespace zelto {
namespace {

// Where the window was left, kept across runs.
const QString kPlacement = QStringLiteral("Dimensions\\Queue");

// Every column from "File" on starts this wide; "Id" and "Retries" hold short numbers.
constexpr int kTextColumnWidth = 100;
constexpr int kNumberColumnWidth = 50;

} // namespace

CQueueDlg::CQueueDlg(QueueStore store, WorkerThreads& threads, Notifier& notifier,
    std::function<void()> sendQueue, std::function<void()> help, QWidget* parent)
    : QDialog(parent)
    , store_(std::move(store))
    , threads_(threads)
    , notifier_(notifier)
    , sendQueue_(std::move(sendQueue))
    , list_(new QTreeView)
    , menu_(new QMenu(this))
    , sendAll_(new QPushButton(tr("&Send All")))
    , clear_(new QPushButton(tr("C&lear List")))
    , progress_(new QProgressBar)
{
    setWindowTitle(tr("Queue"));
    CHelpWindow::bindHelpKey(*this, QStringLiteral("queue-window"));
    list_->setModel(&rows_);
    setUpReportList(*list_);
    list_->setRootIsDecorated(false);
    list_->setAccessibleName(tr("Queued transfers"));
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    QHeaderView* header = list_->header();
    header->setSectionsMovable(true);
    header->setSectionsClickable(true);
    for (int column = 0; column < QueueRowsModel::kColumns; ++column) {
        header->resizeSection(
            column, column < QueueRowsModel::File ? kNumberColumnWidth : kTextColumnWidth);
    }
    connect(header, &QHeaderView::sectionClicked, this, &CQueueDlg::sortBy);
    connect(list_, &QWidget::customContextMenuRequested, this,
        [this](const QPoint& at) { menu_->popup(list_->viewport()->mapToGlobal(at)); });
    buildCommands();

    auto* cancel = new QPushButton(tr("Cancel"));
    auto* helpButton = new QPushButton(tr("&Help"));
    sendAll_->setDefault(true);
    helpButton->setEnabled(bool(help));
    connect(sendAll_, &QPushButton::clicked, this, &CQueueDlg::sendAll);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(clear_, &QPushButton::clicked, this, &CQueueDlg::clearList);
    if (help)
        connect(helpButton, &QPushButton::clicked, this, std::move(help));
    progress_->setRange(0, 0);
    progress_->setAccessibleName(tr("Reading the queue"));

    auto* listLabel = new QLabel(tr("&Transfers waiting to be sent again:"));
    listLabel->setBuddy(list_);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(progress_);
    buttons->addStretch();
    for (QPushButton* button : { sendAll_, cancel, clear_, helpButton })
        buttons->addWidget(button);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(listLabel);
    layout->addWidget(list_);
    layout->addLayout(buttons);
    StoredPlacement::restore(*this, kPlacement, QSize(860, 420), parentWidget());

    setBusy(true);
    runOffThread(
        threads_, this, [store = store_] { return store.loadAll(); },
        [this](std::vector<QueueItem> items) {
            rows_.setItems(std::move(items));
            setBusy(false);
        });
}

void CQueueDlg::buildCommands()
{
    const std::pair<Command, QString> texts[]
        = { { Delete, tr("&Delete") }, { Send, tr("&Send") }, { Reset, tr("&Reset") },
              { Grid, tr("&Grid") }, { AdjustWidths, tr("&Adjust Column Width") },
              { SelectAll, tr("Select &All") }, { UnselectAll, tr("&Un-Select All") } };
    for (const auto& [id, text] : texts) {
        auto* action = new QAction(text, this);
        commands_[std::size_t(id)] = action;
        menu_->addAction(action);
        // Reached from the list by the keyboard too.
        list_->addAction(action);
        if (id == Delete || id == Reset || id == AdjustWidths)
            menu_->addSeparator();
    }
    command(Delete)->setShortcut(QKeySequence::Delete);
    command(SelectAll)->setShortcut(QKeySequence::SelectAll);
    command(Grid)->setCheckable(true);
    for (QAction* action : commands_)
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(command(Delete), &QAction::triggered, this, &CQueueDlg::deleteSelected);
    connect(command(Send), &QAction::triggered, this, [this] { (void)send(); });
    connect(command(Reset), &QAction::triggered, this, &CQueueDlg::resetAll);
    connect(command(Grid), &QAction::toggled, this, [this](bool on) {
        list_->setStyleSheet(on
                ? QStringLiteral("QTreeView::item { border: 1px solid palette(mid); "
                                 "border-left: none; border-top: none; }")
                : QString());
    });
    connect(command(AdjustWidths), &QAction::triggered, this, &CQueueDlg::adjustWidths);
    connect(command(SelectAll), &QAction::triggered, list_, &QTreeView::selectAll);
    connect(command(UnselectAll), &QAction::triggered, list_, &QTreeView::clearSelection);
}

void CQueueDlg::sendAll()
{
    if (send())
        accept();
}

bool CQueueDlg::send()
{
    const auto& items = rows_.items();
    const bool anyIdle = std::any_of(items.begin(), items.end(),
        [](const QueueItem& item) { return item.status == QueueItem::kIdle; });
    if (busy_ || !anyIdle) {
        if (!busy_)
            notifier_.showMessage(
                StringTable::text(ids::kQueueEmptyOrSending), MessageIcon::Information);
        return false;
    }
    if (sendQueue_)
        sendQueue_();
    return true;
}

void CQueueDlg::clearList()
{
    if (busy_ || rows_.rowCount() == 0
        || !notifier_.askYesNo(StringTable::text(ids::kConfirmClearQueue)))
        return;
    writeQueue([](QueueStore& store) { return store.clear(); }, [this] { rows_.setItems({}); });
}

void CQueueDlg::deleteSelected()
{
    if (busy_)
        return;
    std::set<int> selected;
    for (const QModelIndex& index : list_->selectionModel()->selectedRows())
        selected.insert(index.row());
    std::vector<QueueItem> kept;
    std::vector<QueueItem> deleted;
    const auto& items = rows_.items();
    for (std::size_t row = 0; row < items.size(); ++row)
        (selected.count(int(row)) ? deleted : kept).push_back(items[row]);
    auto written = std::make_shared<std::vector<QueueItem>>();
    writeQueue(
        [kept = std::move(kept), deleted = std::move(deleted), written](QueueStore& store) {
            auto rows = QueueDeletion::deleteRows(store, kept, deleted);
            if (rows)
                *written = std::move(*rows);
            return rows.has_value();
        },
        // The queue as written: items that jobs appended meanwhile show up at its end.
        [this, written] { rows_.setItems(std::move(*written)); });
}

void CQueueDlg::resetAll()
{
    if (busy_)
        return;
    writeQueue(
        [](QueueStore& store) { return store.resetAllIdle(); }, [this] { rows_.makeAllIdle(); });
}

void CQueueDlg::sortBy(int column)
{
    if (column < 0 || column >= QueueRowsModel::kColumns)
        return;
    bool& ascending = ascending_[std::size_t(column)];
    ascending = !ascending;
    const Qt::SortOrder order = ascending ? Qt::AscendingOrder : Qt::DescendingOrder;
    rows_.sort(column, order);
    list_->header()->setSortIndicatorShown(true);
    list_->header()->setSortIndicator(column, order);
}

void CQueueDlg::adjustWidths()
{
    for (int column = 0; column < QueueRowsModel::kColumns; ++column)
        list_->resizeColumnToContents(column);
}

void CQueueDlg::setBusy(bool busy)
{
    busy_ = busy;
    progress_->setVisible(busy);
    for (QWidget* widget : std::initializer_list<QWidget*> { list_, sendAll_, clear_ })
        widget->setEnabled(!busy);
}

void CQueueDlg::writeQueue(std::function<bool(QueueStore&)> change, std::function<void()> done)
{
    setBusy(true);
    runOffThread(
        threads_, this,
        [store = store_, change = std::move(change)]() mutable {
            // The reason is the worker's to tell: it is kept per thread.
            return change(store) ? QString() : PrivateProfile::lastWriteFailure();
        },
        [this, done = std::move(done)](const QString& failure) {
            setBusy(false);
            if (!failure.isEmpty()) {
                notifier_.showMessage(
                    tr("The queue file could not be written.\n%1").arg(failure), MessageIcon::Stop);
                return;
            }
            done();
        });
}

void CQueueDlg::done(int result)
{
    StoredPlacement::save(*this, kPlacement);
    QDialog::done(result);
}

} // namespace zelto
