#include "CScriptProgressDlg.h"

#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scripts/ScriptProgress.h"
#include "scripts/ScriptRun.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QListView>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace zelto {

CScriptProgressDlg::CScriptProgressDlg(const QString& scriptPath, std::shared_ptr<ScriptRun> run,
    std::shared_ptr<ScriptProgress> progress, Notifier& notifier, QWidget* parent)
    : QDialog(parent)
    , run_(std::move(run))
    , progress_(std::move(progress))
    , notifier_(notifier)
    , list_(new QListView)
    , toggle_(new QPushButton)
    , stop_(new QPushButton(QStringLiteral("&") + StringTable::text(ids::kButtonStop)))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    setModal(false);
    setWindowTitle(tr("Script %1").arg(QFileInfo(scriptPath).fileName()));

    list_->setModel(&lines_);
    // Long lines keep their words (the list scrolls sideways); thousands of steps are laid out
    // a batch at a time.
    list_->setTextElideMode(Qt::ElideNone);
    list_->setLayoutMode(QListView::Batched);
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* buttons = new QDialogButtonBox;
    list_->setAccessibleName(tr("Script steps"));
    toggle_->setObjectName(QStringLiteral("pause"));
    stop_->setObjectName(QStringLiteral("stop"));
    buttons->addButton(toggle_, QDialogButtonBox::ActionRole);
    buttons->addButton(stop_, QDialogButtonBox::RejectRole);
    connect(toggle_, &QPushButton::clicked, this, &CScriptProgressDlg::toggle);
    connect(stop_, &QPushButton::clicked, this, &CScriptProgressDlg::stopOrClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_);
    layout->addWidget(buttons);
    resize(640, 340);
    placeBesideTransfers();

    showState();
    poll_.setInterval(kPollInterval);
    connect(&poll_, &QTimer::timeout, this, &CScriptProgressDlg::poll);
    poll_.start();
}

CScriptProgressDlg::~CScriptProgressDlg() = default;

void CScriptProgressDlg::placeBesideTransfers()
{
    // Transfer windows open on the frame and cascade down from its corner: a script that runs
    // beside them keeps to the opposite corner of the screen, clear of its edges and title bar.
    const QScreen* shown
        = parentWidget() ? parentWidget()->screen() : QGuiApplication::primaryScreen();
    if (!shown)
        return;
    const QRect free = shown->availableGeometry();
    const int margin = 2 * fontMetrics().height();
    const QSize room = size().boundedTo(free.size() - QSize(2 * margin, 2 * margin));
    resize(room);
    move(std::max(free.left(), free.right() - margin - room.width()),
        std::max(free.top(), free.bottom() - margin - room.height()));
}

void CScriptProgressDlg::toggle()
{
    const ScriptState state = run_->state();
    if (state == ScriptState::Suspended)
        run_->resume();
    else if (state == ScriptState::Running)
        run_->pause();
    showState();
}

void CScriptProgressDlg::showState()
{
    if (ended_)
        return;
    const bool held = run_->state() == ScriptState::Suspended;
    toggle_->setText(
        held ? QStringLiteral("&") + StringTable::text(ids::kButtonResume) : tr("&Pause"));
}

void CScriptProgressDlg::stopOrClose()
{
    if (ended_ || run_->state() == ScriptState::Finished) {
        close();
        return;
    }
    // The window stays to show how far the run got; the next polls bring its end.
    (void)askToStop();
}

bool CScriptProgressDlg::askToStop()
{
    // Held while the question is open; a run the user had suspended stays so on No.
    const bool wasRunning = run_->state() == ScriptState::Running;
    run_->pause();
    if (notifier_.askYesNo(StringTable::text(ids::kConfirmCancelSending))) {
        // A stop lets the held run through; it closes its connections itself.
        run_->stop();
        return true;
    }
    if (wasRunning)
        run_->resume();
    showState();
    return false;
}

void CScriptProgressDlg::showEnd()
{
    ended_ = true;
    const ScriptTally tally = progress_->outcome().value_or(ScriptTally {});
    const QString line = (tally.stopped ? tr("Script stopped. Steps succeeded: %1, failed: %2.")
                                        : tr("Script ended. Steps succeeded: %1, failed: %2."))
                             .arg(tally.succeeded)
                             .arg(tally.failed);
    const int row = lines_.rowCount();
    lines_.insertRows(row, 1);
    lines_.setData(lines_.index(row), line);
    list_->scrollToBottom();
    toggle_->setEnabled(false);
    stop_->setText(tr("&Close"));
    stop_->setDefault(true);
    stop_->setFocus();
}

void CScriptProgressDlg::poll()
{
    // The state first: a run seen finished has reported its last line.
    const bool finished = run_->state() == ScriptState::Finished;
    const QStringList fresh = progress_->linesFrom(lines_.rowCount());
    if (!fresh.isEmpty()) {
        const QScrollBar* bar = list_->verticalScrollBar();
        const bool atEnd = bar->value() == bar->maximum();
        const int first = lines_.rowCount();
        lines_.insertRows(first, int(fresh.size()));
        for (int i = 0; i < fresh.size(); ++i)
            lines_.setData(lines_.index(first + i), fresh[i]);
        // A reader who scrolled back stays where they are.
        if (atEnd)
            list_->scrollToBottom();
    }
    showState();
    if (finished) {
        // Here only, with the last line shown: a state read later, after a slow step of this
        // thread, may be the end of a run whose last lines are not shown yet.
        poll_.stop();
        showEnd();
    }
}

void CScriptProgressDlg::reject()
{
    close();
}

void CScriptProgressDlg::closeEvent(QCloseEvent* event)
{
    if (run_->state() == ScriptState::Finished || askToStop()) {
        event->accept();
        return;
    }
    event->ignore();
}

} // namespace zelto
