#include "CTransferDlg.h"

#include "distribution/TransferJob.h"
#include "distribution/TransferMode.h"
#include "distribution/ui/TransferAnimation.h"
#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QCloseEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>

namespace zelto {
namespace {

using Text = JobProgress::Text;

// Wide enough for the longest texts the pump writes ("Sent 1073741824 bytes out of ...") and
// for the end of a long path.
constexpr int kTextColumns = 56;

// A text of one line and of a fixed size: a label whose size can change lays out the whole
// window again at each new text, which ten windows at ten texts a second cannot afford.
QLabel* textLabel(const char* name, int columns, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setFixedSize(
        label->fontMetrics().averageCharWidth() * columns, label->fontMetrics().height());
    return label;
}

QProgressBar* bar(const char* name, QWidget* parent)
{
    auto* bar = new QProgressBar(parent);
    bar->setObjectName(QLatin1String(name));
    bar->setRange(0, 100);
    // The bytes text under the bar gives the percentage, in whichever direction the bar runs.
    bar->setTextVisible(false);
    // Flat, in the theme's colours: a style that paints the bar with antialiased curves has the
    // painter fan each paint out to a thread pool and wait for it, and with ten windows on a
    // busy machine those waits make the whole window thread late.
    bar->setStyleSheet(QStringLiteral("QProgressBar { border: 1px solid palette(mid); "
                                      "background: palette(base); height: 14px; } "
                                      "QProgressBar::chunk { background: palette(highlight); }"));
    return bar;
}

// A progress bar repaints itself at once on a new value, apart from the texts that change with
// it; held back, it is painted with them in the window's next paint.
void showBar(QProgressBar& bar, int value)
{
    if (bar.value() == value)
        return;
    bar.setUpdatesEnabled(false);
    bar.setValue(value);
    bar.setUpdatesEnabled(true);
}

// Windows are opened on the UI thread only.
quint64 opened = 0;

bool isPath(Text text)
{
    return text == Text::LocalPath || text == Text::RemotePath;
}

} // namespace

QString CTransferDlg::elidedPath(const QString& path, const QFontMetrics& metrics, int width)
{
    // The end of a path names the file, so a long one loses its start.
    return metrics.elidedText(path, Qt::ElideLeft, width);
}

CTransferDlg::CTransferDlg(
    std::shared_ptr<TransferJob> job, Notifier& notifier, CTransferDlg* anchor, QWidget* parent)
    : QDialog(parent), job_(std::move(job)), notifier_(notifier), number_(++opened)
{
    // No close button: the window ends by Cancel or with its job.
    setWindowFlags(
        Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint);
    setAttribute(Qt::WA_DeleteOnClose);
    // The end of a transfer never ends the program, even when its window was the last one shown.
    setAttribute(Qt::WA_QuitOnClose, false);
    setModal(false);
    buildWidgets();
    setWindowTitle(title());
    if (anchor) {
        if (const QScreen* screen = anchor->screen())
            move(cascadePosition(anchor->frameGeometry(), screen->availableGeometry()));
    }
    poll_.setInterval(kPollInterval);
    connect(&poll_, &QTimer::timeout, this, &CTransferDlg::poll);
    // The first look comes from the event loop: a job that has already ended closes a window that
    // its caller has shown, not one still being built.
    poll_.start();
}

void CTransferDlg::buildWidgets()
{
    const TransferMode mode = job_->mode();
    for (std::size_t i = 0; i < texts_.size(); ++i) {
        static constexpr const char* kNames[JobProgress::kTextCount]
            = { "jobBytes", "jobRate", "jobTimeLeft", "fileBytes", "fileRate", "fileTimeLeft",
                  "localPath", "remotePath", "status" };
        // The rate and the time left share a row.
        const bool half = i == std::size_t(Text::JobRate) || i == std::size_t(Text::JobTimeLeft)
            || i == std::size_t(Text::FileRate) || i == std::size_t(Text::FileTimeLeft);
        texts_[i] = textLabel(kNames[i], half ? kTextColumns / 2 : kTextColumns, this);
    }
    auto* animation = new TransferAnimation(mode, this);
    auto* top = new QHBoxLayout;
    top->addWidget(animation);
    top->addSpacing(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing));
    top->addWidget(texts_[std::size_t(Text::Status)], 1);

    // The rows read in the direction of the transfer: a get's files come from the server.
    const bool fromServer = mode == TransferMode::Get;
    auto* paths = new QFormLayout;
    paths->addRow(
        tr("From:"), texts_[std::size_t(fromServer ? Text::RemotePath : Text::LocalPath)]);
    paths->addRow(tr("To:"), texts_[std::size_t(fromServer ? Text::LocalPath : Text::RemotePath)]);

    jobBar_ = bar("jobBar", this);
    fileBar_ = bar("fileBar", this);

    auto* cancel
        = new QPushButton(QStringLiteral("&") + StringTable::text(ids::kButtonCancel), this);
    cancel->setObjectName(QStringLiteral("cancel"));
    cancel->setIcon(QIcon::fromTheme(
        QStringLiteral("process-stop"), style()->standardIcon(QStyle::SP_DialogCancelButton)));
    cancel->setDefault(true);
    connect(cancel, &QPushButton::clicked, this, &CTransferDlg::cancelPressed);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(paths);
    // Captions rather than group boxes: a group box paints its frame again under every text of
    // it that changes.
    const auto section = [this, layout](const QString& title, QProgressBar* progress, Text bytes,
                             Text rate, Text timeLeft) {
        auto* caption = new QLabel(title, this);
        QFont bold = caption->font();
        bold.setBold(true);
        caption->setFont(bold);
        layout->addSpacing(style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
        layout->addWidget(caption);
        layout->addWidget(progress);
        layout->addWidget(texts_[std::size_t(bytes)]);
        auto* row = new QHBoxLayout;
        row->addWidget(texts_[std::size_t(rate)]);
        row->addStretch(1);
        texts_[std::size_t(timeLeft)]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        row->addWidget(texts_[std::size_t(timeLeft)]);
        layout->addLayout(row);
    };
    section(tr("Job"), jobBar_, Text::JobBytes, Text::JobRate, Text::JobTimeLeft);
    section(tr("Current file"), fileBar_, Text::FileBytes, Text::FileRate, Text::FileTimeLeft);
    layout->addSpacing(style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    cancel->setFocus();
}

QPoint CTransferDlg::cascadePosition(const QRect& anchor, const QRect& screen)
{
    // Right and bottom edges one past the last pixel, as the screen's size counts them.
    const bool roomRight
        = anchor.x() + anchor.width() + kCascadeStep.x() < screen.x() + screen.width();
    const bool roomBelow
        = anchor.y() + anchor.height() + kCascadeStep.y() < screen.y() + screen.height();
    return { roomRight ? anchor.x() + kCascadeStep.x() : screen.x() + kCascadeRestart.x(),
        roomBelow ? anchor.y() + kCascadeStep.y() : screen.y() + kCascadeRestart.y() };
}

QString CTransferDlg::siteOf(const QString& server, const QString& siteName)
{
    // The windows of one Send Parallel may all go to one host: the profile tells them apart.
    if (siteName.isEmpty() || siteName == server)
        return server;
    return server + QStringLiteral(" (") + siteName + u')';
}

QString CTransferDlg::title() const
{
    return titleOf(
        job_->mode(), job_->currentServer(), job_->targetServer(), job_->currentSiteName());
}

QString CTransferDlg::titleOf(
    TransferMode mode, const QString& server, const QString& target, const QString& siteName)
{
    const QString named = siteOf(server, siteName);
    switch (mode) {
    case TransferMode::Get:
        return StringTable::text(ids::kTitleGetFrom) + named;
    case TransferMode::Copy:
        return StringTable::text(ids::kTitleTransferFrom) + server + QStringLiteral(" to ")
            + target;
    case TransferMode::Put:
    case TransferMode::DistributionPut:
        break;
    }
    return StringTable::text(ids::kTitlePutTo) + named;
}

void CTransferDlg::poll()
{
    if (job_->done()) {
        closeNow();
        return;
    }
    showProgress(job_->progress().snapshot());
    // A job list's title follows the site under way.
    if (const QString shown = title(); shown != windowTitle())
        setWindowTitle(shown);
}

void CTransferDlg::showProgress(const JobProgress::Snapshot& progress)
{
    showBar(*jobBar_, progress.jobBar);
    showBar(*fileBar_, progress.fileBar);
    for (std::size_t i = 0; i < texts_.size(); ++i) {
        const auto which = static_cast<Text>(i);
        const QString& text = progress.text(which);
        QLabel* label = texts_[i];
        // A path too long for its field shows "…" and its end; the whole path is in the tool tip.
        if (isPath(which)) {
            if (label->toolTip() == text)
                continue;
            label->setToolTip(text);
            label->setText(elidedPath(text, label->fontMetrics(), label->width()));
            continue;
        }
        if (label->text() != text)
            label->setText(text);
    }
}

void CTransferDlg::reject()
{
    cancelPressed();
}

void CTransferDlg::closeEvent(QCloseEvent* event)
{
    if (closing_) {
        event->accept();
        return;
    }
    // A close from the window manager asks as Cancel does, once this close has been turned down.
    event->ignore();
    QTimer::singleShot(0, this, &CTransferDlg::cancelPressed);
}

void CTransferDlg::cancelPressed()
{
    if (asking_ || closing_)
        return;
    // No look at the job while the question is open: the window must not close under it.
    asking_ = true;
    poll_.stop();
    job_->pause();
    const bool close = job_->serial() ? cancelSerial() : cancelSingle();
    asking_ = false;
    if (close || job_->done())
        closeNow();
    else
        poll_.start();
}

bool CTransferDlg::cancelSingle()
{
    const QString question = job_->currentServer() + QStringLiteral(": ")
        + StringTable::text(ids::kConfirmCancelSending);
    if (notifier_.askYesNo(question)) {
        // The worker leaves on its own at its next block; the window does not wait for it.
        job_->cancel();
        return true;
    }
    job_->resume();
    return false;
}

bool CTransferDlg::cancelSerial()
{
    Question question;
    question.caption = windowTitle();
    question.text = StringTable::text(ids::kSerialCancelChoice);
    question.acceptTextId = ids::kButtonAll;
    question.middleTextId = ids::kButtonOnlyThisOne;
    question.cancelTextId = ids::kButtonCancel;
    switch (notifier_.ask(question)) {
    case Answer::Accepted:
        job_->cancel();
        return true;
    case Answer::Middle:
        // The rest of the list goes on in this window.
        job_->cancelCurrentSite();
        return false;
    case Answer::Cancelled:
        break;
    }
    job_->resume();
    return false;
}

void CTransferDlg::closeNow()
{
    closing_ = true;
    poll_.stop();
    close();
}

} // namespace zelto
