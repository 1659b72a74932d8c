#include "CRunSummaryDlg.h"

#include "distribution/RunSummary.h"
#include "settings/SettingsKeys.h"
#include "widgets/CHelpWindow.h"
#include "widgets/ReportList.h"
#include "widgets/StoredPlacement.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace zelto {
namespace {

const QString kPlacement = QLatin1StringView(settings::geometry::kRunSummary);

// Wide enough for a host and port and four figures without a scroll bar.
constexpr QSize kReadableSize(620, 320);

} // namespace

CRunSummaryDlg::CRunSummaryDlg(const RunSummary& summary, QWidget* anchor)
    : QDialog(anchor), table_(new QTreeWidget(this)), closing_(new QLabel(this))
{
    setObjectName(QStringLiteral("runSummary"));
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setModal(false);
    CHelpWindow::bindHelpKey(*this, QStringLiteral("run-report"));
    auto* label = new QLabel(tr("&Sites:"), this);
    label->setBuddy(table_);
    setUpReportList(*table_);
    table_->setAccessibleName(tr("Sites of the run"));
    table_->setHeaderLabels({ tr("Site"), tr("Sent"), tr("Failed"), tr("Bytes"), tr("Time") });
    table_->header()->setStretchLastSection(false);
    table_->header()->setSectionResizeMode(Site, QHeaderView::Stretch);
    for (int column = Sent; column < ColumnCount; ++column)
        table_->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    closing_->setWordWrap(true);
    closing_->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* copyButton = buttons->addButton(tr("&Copy"), QDialogButtonBox::ActionRole);
    copyButton->setToolTip(tr("Copy the rows as tab-separated text"));
    copyButton->setObjectName(QStringLiteral("copy"));
    QPushButton* closeButton = buttons->addButton(QDialogButtonBox::Close);
    closeButton->setText(tr("C&lose"));
    // Return closes the report, as it would a message.
    closeButton->setDefault(true);
    connect(copyButton, &QPushButton::clicked, this, &CRunSummaryDlg::copy);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    // Ctrl+C from the table as from the button.
    auto* copyAction = new QAction(this);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(copyAction, &QAction::triggered, this, &CRunSummaryDlg::copy);
    addAction(copyAction);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(table_, 1);
    layout->addWidget(closing_);
    layout->addWidget(buttons);
    setTabOrder(table_, copyButton);
    setTabOrder(copyButton, closeButton);
    table_->setFocus();
    fill(summary);
    StoredPlacement::restore(*this, kPlacement, kReadableSize, anchor);
}

void CRunSummaryDlg::fill(const RunSummary& summary)
{
    setWindowTitle(summary.title());
    table_->clear();
    for (const RunSummary::Site& site : summary.sites()) {
        auto* row = new QTreeWidgetItem(table_,
            { site.label, QString::number(site.tally.sent), QString::number(site.tally.failed),
                QString::number(site.tally.bytes), RunSummary::timeText(site.seconds) });
        for (int column = Sent; column < ColumnCount; ++column)
            row->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
        // A site with failures stands out among many that went well.
        if (site.tally.failed > 0)
            row->setIcon(Site, style()->standardIcon(QStyle::SP_MessageBoxWarning));
    }
    closing_->setText(summary.closingLine());
    copyText_ = summary.tabSeparated();
}

CRunSummaryDlg* CRunSummaryDlg::open(const RunSummary& summary, QWidget* anchor)
{
    auto* window = new CRunSummaryDlg(summary, anchor);
    // Reports of runs that end close together open at the one stored place: each steps aside
    // from those still shown there, so that none hides another.
    const QPoint step(24, 24);
    for (bool covered = true; covered;) {
        covered = false;
        for (const QWidget* other : QApplication::topLevelWidgets()) {
            if (other != window && other->isVisible() && qobject_cast<const CRunSummaryDlg*>(other)
                && other->pos() == window->pos()) {
                window->move(window->pos() + step);
                covered = true;
            }
        }
    }
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

void CRunSummaryDlg::copy() const
{
    QGuiApplication::clipboard()->setText(copyText_);
}

void CRunSummaryDlg::done(int result)
{
    StoredPlacement::save(*this, kPlacement);
    QDialog::done(result);
}

} // namespace zelto
