#include "CStatisticsDlg.h"

#include "ftp/ProgressText.h"
#include "settings/SettingsStore.h"

#include <QDialogButtonBox>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QMoveEvent>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

namespace zelto {
namespace {

constexpr int kRefreshMs = 1000;
constexpr int kPlacingMoves = 2;

QString rateText(double kiloBytesPerSecond)
{
    return QString::number(kiloBytesPerSecond, 'f', 2);
}

// A blank field reads as "unknown"; before the first transfer the counts are known to be 0.
QString countText(qint64 count)
{
    return count == 0 ? QStringLiteral("0") : ProgressText::formatCount(count);
}

// Whether anything was moved between two readings.
bool moved(const TransferCounters::Snapshot& before, const TransferCounters::Snapshot& after)
{
    return before.localBytesRead != after.localBytesRead
        || before.localBytesWritten != after.localBytesWritten
        || before.remoteBytesRead != after.remoteBytesRead
        || before.remoteBytesWritten != after.remoteBytesWritten
        || before.bytesReceived != after.bytesReceived;
}

TransferCounters::Snapshot processCounters()
{
    return TransferCounters::instance().snapshot();
}

} // namespace

CStatisticsDlg::CStatisticsDlg(QWidget* parent, CounterSource counters)
    : QDialog(parent), counters_(counters ? std::move(counters) : CounterSource(processCounters))
{
    setWindowTitle(tr("Transfer Statistics"));

    // Shows that the counters are live while transfers may be running elsewhere.
    busy_ = new QProgressBar(this);
    busy_->setObjectName(QStringLiteral("busy"));
    busy_->setTextVisible(false);
    busy_->setMaximumHeight(busy_->sizeHint().height() / 2 + 2);
    showBusy(false);

    auto* grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    grid->setHorizontalSpacing(12);
    const int valueWidth = fontMetrics().horizontalAdvance(QStringLiteral("0,000,000,000,000"));
    const auto field = [&](const QString& label, const char* name, const QString& unit = {}) {
        const int row = grid->rowCount();
        auto* value = new QLabel(this);
        value->setObjectName(QLatin1StringView(name));
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        value->setMinimumWidth(valueWidth);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        grid->addWidget(new QLabel(label, this), row, 0);
        grid->addWidget(value, row, 1);
        if (!unit.isEmpty())
            grid->addWidget(new QLabel(unit, this), row, 2);
        return value;
    };
    const auto separator = [&] {
        auto* line = new QFrame(this);
        line->setFrameShape(QFrame::HLine);
        line->setFrameShadow(QFrame::Sunken);
        grid->addWidget(line, grid->rowCount(), 0, 1, 3);
    };
    const QString kbps = tr("kbps");
    localBytesRead_ = field(tr("Local Bytes Read:"), "localBytesRead");
    localBytesWritten_ = field(tr("Local Bytes Written:"), "localBytesWritten");
    remoteBytesRead_ = field(tr("Remote Bytes Read:"), "remoteBytesRead");
    remoteBytesWritten_ = field(tr("Remote Bytes Written:"), "remoteBytesWritten");
    filesTransferred_ = field(tr("Total Files Transferred:"), "filesTransferred");
    separator();
    localRate_ = field(tr("Transfer Rate (local):"), "localRate", kbps);
    localTime_ = field(tr("Total Transfer Time:"), "localTime");
    separator();
    remoteRate_ = field(tr("Transfer Rate (remote):"), "remoteRate", kbps);
    remoteTime_ = field(tr("Total Transfer Time:"), "remoteTime");
    for (QLabel* rate : { localRate_, remoteRate_ })
        rate->setText(rateText(0));
    for (QLabel* time : { localTime_, remoteTime_ })
        time->setText(ProgressText::formatDuration(0));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(busy_);
    layout->addLayout(grid);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    timer_.setInterval(kRefreshMs);
    connect(&timer_, &QTimer::timeout, this, &CStatisticsDlg::refresh);
    placeOnScreen();
}

void CStatisticsDlg::showOrRaise(QWidget* parent)
{
    static QPointer<CStatisticsDlg> open;
    if (!open) {
        open = new CStatisticsDlg(parent);
        open->setAttribute(Qt::WA_DeleteOnClose);
    }
    open->show();
    open->raise();
    open->activateWindow();
}

void CStatisticsDlg::placeOnScreen()
{
    const int x = SettingsStore::get(settings::config::kSysInfoX);
    const int y = SettingsStore::get(settings::config::kSysInfoY);
    adjustSize();
    // A place off the top or left edge is treated as unset, so the window never opens unseen.
    if (x >= 1 && y >= 1) {
        move(x, y);
        return;
    }
    const QScreen* screen = parentWidget() ? parentWidget()->screen() : this->screen();
    const QRect desktop = screen->availableGeometry();
    move(desktop.center() - QPoint(width() / 2, height() / 2));
}

void CStatisticsDlg::refresh()
{
    const TransferCounters::Snapshot counts = counters_();
    showBusy(lastCounts_ && moved(*lastCounts_, counts));
    lastCounts_ = counts;
    localBytesRead_->setText(countText(counts.localBytesRead));
    localBytesWritten_->setText(countText(counts.localBytesWritten));
    remoteBytesRead_->setText(countText(counts.remoteBytesRead));
    remoteBytesWritten_->setText(countText(counts.remoteBytesWritten));
    filesTransferred_->setText(QString::number(counts.filesTransferred));
    // Without time spent the rate is undefined: the fields keep what they showed.
    if (counts.transferSeconds > 0) {
        const double bytes = double(counts.localBytesRead) + double(counts.localBytesWritten);
        localRate_->setText(rateText(bytes / (counts.transferSeconds * 1000)));
        localTime_->setText(ProgressText::formatDuration(counts.transferSeconds));
    }
    // The remote rate is the get pump's bytes over the copy pump's time; users compare it with
    // earlier readings, so the pairing stays.
    if (counts.copySeconds > 0) {
        remoteRate_->setText(rateText(double(counts.bytesReceived) / (counts.copySeconds * 1000)));
        remoteTime_->setText(ProgressText::formatDuration(counts.copySeconds));
    }
}

void CStatisticsDlg::showBusy(bool busy)
{
    // A moving bar while bytes move; an empty one while nothing does.
    busy_->setRange(0, busy ? 0 : 1);
    busy_->setValue(0);
}

bool CStatisticsDlg::showsBusy() const
{
    return busy_->maximum() == 0;
}

void CStatisticsDlg::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    refresh();
    timer_.start();
}

void CStatisticsDlg::hideEvent(QHideEvent* event)
{
    timer_.stop();
    QDialog::hideEvent(event);
}

void CStatisticsDlg::moveEvent(QMoveEvent* event)
{
    QDialog::moveEvent(event);
    if (movesSeen_ < kPlacingMoves) {
        ++movesSeen_;
        return;
    }
    SettingsStore::set(settings::config::kSysInfoX, pos().x());
    SettingsStore::set(settings::config::kSysInfoY, pos().y());
}

} // namespace zelto
