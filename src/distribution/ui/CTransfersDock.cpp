#include "CTransfersDock.h"

#include "distribution/TransferJob.h"
#include "distribution/ui/CTransferDlg.h"

#include <QApplication>
#include <QFileInfo>
#include <QHeaderView>
#include <QPointer>
#include <QProgressBar>
#include <QTableWidget>

namespace zelto {
namespace {

using Text = JobProgress::Text;

// The open transfer windows, oldest first, so that rows keep their places as windows come and go.
QList<CTransferDlg*> openWindows()
{
    QList<CTransferDlg*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* window = qobject_cast<CTransferDlg*>(widget); window && window->isVisible())
            windows.append(window);
    }
    std::sort(windows.begin(), windows.end(),
        [](const CTransferDlg* a, const CTransferDlg* b) { return a->number() < b->number(); });
    return windows;
}

void setText(QTableWidget& table, int row, int column, const QString& text)
{
    QTableWidgetItem* item = table.item(row, column);
    if (!item) {
        item = new QTableWidgetItem;
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        table.setItem(row, column, item);
    }
    if (item->text() != text)
        item->setText(text);
}

} // namespace

CTransfersDock::CTransfersDock(QWidget* parent)
    : QDockWidget(tr("Transfers"), parent), table_(new QTableWidget(0, ColumnCount, this))
{
    setObjectName(QStringLiteral("transfersDock"));
    table_->setObjectName(QStringLiteral("transfers"));
    table_->setAccessibleName(tr("Running transfers"));
    table_->setHorizontalHeaderLabels(
        { tr("Site"), tr("Current file"), tr("Progress"), tr("Rate"), tr("State") });
    table_->verticalHeader()->hide();
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->setTabKeyNavigation(false);
    table_->setShowGrid(false);
    table_->setWordWrap(false);
    table_->horizontalHeader()->setStretchLastSection(true);
    const int text = fontMetrics().averageCharWidth();
    for (const auto& [column, chars] :
        { std::pair(Site, 26), std::pair(File, 24), std::pair(Progress, 14), std::pair(Rate, 12) })
        table_->setColumnWidth(column, chars * text);
    connect(table_, &QTableWidget::cellActivated, this,
        [this](int row, int /*column*/) { raiseRow(row); });
    setWidget(table_);

    poll_.setInterval(kPollInterval);
    connect(&poll_, &QTimer::timeout, this, &CTransfersDock::refresh);
}

QList<CTransferDlg*> CTransfersDock::windows() const
{
    QList<CTransferDlg*> windows;
    for (int row = 0; row < table_->rowCount(); ++row) {
        const QVariant held = table_->item(row, Site)->data(Qt::UserRole);
        windows.append(qobject_cast<CTransferDlg*>(held.value<QObject*>()));
    }
    return windows;
}

void CTransfersDock::refresh()
{
    const QList<CTransferDlg*> windows = openWindows();
    table_->setRowCount(int(windows.size()));
    for (int row = 0; row < int(windows.size()); ++row) {
        CTransferDlg* window = windows[row];
        const JobProgress::Snapshot progress = window->job().progress().snapshot();
        setText(*table_, row, Site,
            CTransferDlg::siteOf(window->job().currentServer(), window->job().currentSiteName()));
        table_->item(row, Site)->setData(Qt::UserRole, QVariant::fromValue<QObject*>(window));
        setText(*table_, row, File, QFileInfo(progress.text(Text::LocalPath)).fileName());
        auto* bar = qobject_cast<QProgressBar*>(table_->cellWidget(row, Progress));
        if (!bar) {
            bar = new QProgressBar;
            bar->setRange(0, 100);
            table_->setCellWidget(row, Progress, bar);
        }
        if (bar->value() != progress.jobBar)
            bar->setValue(progress.jobBar);
        setText(*table_, row, Rate, progress.text(Text::JobRate));
        setText(*table_, row, State, progress.text(Text::Status));
    }
}

void CTransfersDock::raiseRow(int row) const
{
    const QList<CTransferDlg*> shown = windows();
    if (row < 0 || row >= shown.size() || !shown[row])
        return;
    CTransferDlg* window = shown[row];
    window->showNormal();
    window->raise();
    window->activateWindow();
}

void CTransfersDock::showEvent(QShowEvent* event)
{
    QDockWidget::showEvent(event);
    refresh();
    poll_.start();
}

void CTransfersDock::hideEvent(QHideEvent* event)
{
    // Hidden, it costs nothing.
    poll_.stop();
    QDockWidget::hideEvent(event);
}

} // namespace zelto
