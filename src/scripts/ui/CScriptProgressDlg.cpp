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
#include <QListView>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

namespace zelto {

CScriptProgressDlg::CScriptProgressDlg(const QString& scriptPath, std::shared_ptr<ScriptRun> run,
    std::shared_ptr<ScriptProgress> progress, Notifier& notifier, QWidget* parent)
    : QDialog(parent)
    , run_(std::move(run))
    , progress_(std::move(progress))
    , notifier_(notifier)
    , list_(new QListView)
    , toggle_(new QPushButton)
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
    buttons->addButton(toggle_, QDialogButtonBox::ActionRole);
    connect(toggle_, &QPushButton::clicked, this, &CScriptProgressDlg::toggle);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_);
    layout->addWidget(buttons);
    resize(640, 340);

    showState();
    poll_.setInterval(kPollInterval);
    connect(&poll_, &QTimer::timeout, this, &CScriptProgressDlg::poll);
    poll_.start();
}

CScriptProgressDlg::~CScriptProgressDlg() = default;

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
    const ScriptState state = run_->state();
    toggle_->setText(
        StringTable::text(state == ScriptState::Suspended ? ids::kButtonResume : ids::kButtonStop));
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
        // Off here only, with the last line shown: a state read later, after a slow step of
        // this thread, may be the end of a run whose last lines are not shown yet.
        toggle_->setEnabled(false);
        poll_.stop();
    }
}

void CScriptProgressDlg::reject()
{
    close();
}

void CScriptProgressDlg::closeEvent(QCloseEvent* event)
{
    if (run_->state() == ScriptState::Finished) {
        event->accept();
        return;
    }
    // Held while the question is open; a run the user had suspended stays so on No.
    const bool wasRunning = run_->state() == ScriptState::Running;
    run_->pause();
    if (notifier_.askYesNo(StringTable::text(ids::kConfirmCancelSending))) {
        // A stop lets the held run through; it closes its connections itself.
        run_->stop();
        event->accept();
        return;
    }
    if (wasRunning)
        run_->resume();
    showState();
    event->ignore();
}

} // namespace zelto
