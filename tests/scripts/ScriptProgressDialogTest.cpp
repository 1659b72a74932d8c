// The progress window of a script: its button suspends and resumes the run, its list follows the
// run's lines, and closing it while the run goes on asks first.

#include "ScriptFixture.h"
#include "TestNotifier.h"
#include "TestWait.h"
#include "scripts/ScriptProgress.h"
#include "scripts/ui/CScriptProgressDlg.h"

#include <QPointer>
#include <QPushButton>
#include <QTest>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

class ScriptProgressDialogTest : public ScriptFixture {
protected:
    // A run of `lines`, held before its first line when `held`, in a window that is shown.
    QPointer<CScriptProgressDlg> show(const QStringList& lines, bool held)
    {
        progress_ = std::make_shared<ScriptProgress>();
        run_ = std::make_shared<ScriptRun>(recorder_.services, threads_, progress_);
        if (held)
            run_->pause();
        run_->start(writeScript(lines));
        auto* window = new CScriptProgressDlg(
            scripts_.filePath(QStringLiteral("run.cmd")), run_, progress_, notifier_);
        window->show();
        return window;
    }

    TestNotifier notifier_;
    std::shared_ptr<ScriptProgress> progress_;
    std::shared_ptr<ScriptRun> run_;
};

TEST_F(ScriptProgressDialogTest, TheButtonHoldsAndFreesTheRunAndTheListFollowsIt)
{
    const QPointer window = show({ open("a", *a_), "mkdir a one", "close a" }, true);
    QPushButton* button = window->toggleButton();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("Script run.cmd"));
    EXPECT_EQ(button->text(), StringTable::text(ids::kButtonResume));

    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(button->text(), StringTable::text(ids::kButtonStop));
    ASSERT_TRUE(run_->waitFinished(kRunDeadline));
    // The window's timer brings the last lines and then ends the button.
    EXPECT_TRUE(waitUntil(
        [&] { return window->shownLines() == progress_->linesFrom(0) && !button->isEnabled(); },
        kRunDeadline))
        << window->shownLines().join(u'\n').toStdString();
    EXPECT_TRUE(window->shownLines().contains(
        step(QStringLiteral("a: "), ids::kLogMakeDirectoryOk, QStringLiteral("one"))))
        << window->shownLines().join(u'\n').toStdString();

    // A finished run's window closes without a question.
    window->close();
    EXPECT_TRUE(waitUntil([&] { return window.isNull(); }, 5s));
    EXPECT_TRUE(notifier_.yesNoQuestions.isEmpty());
}

TEST_F(ScriptProgressDialogTest, ClosingARunThatGoesOnAsksFirst)
{
    const struct {
        const char* what;
        bool heldByUser;
        bool yes;
        ScriptState after; // of the run, once answered
    } cases[] = {
        { "No to a running script", false, false, ScriptState::Running },
        { "No to a script the user suspended", true, false, ScriptState::Suspended },
        { "Yes", false, true, ScriptState::Finished },
    };
    // The server holds the folder command, and no time-out ends the wait: the run stays under
    // way until it is stopped, however slowly the test runs.
    useQuickTimeouts(600);
    a_->setFaults({ .stall = { { "MKD", FtpFaults::kForever } } });
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const int folders = a_->commandCount("MKD");
        const QPointer window = show({ open("a", *a_), "mkdir a one", "mkdir a two" }, false);
        ASSERT_TRUE(waitUntil([&] { return a_->commandCount("MKD") == folders + 1; }, 20s));
        if (c.heldByUser)
            QTest::mouseClick(window->toggleButton(), Qt::LeftButton);
        notifier_.yes = c.yes;
        notifier_.yesNoQuestions.clear();

        QTest::keyClick(window, Qt::Key_Escape);
        EXPECT_EQ(notifier_.yesNoQuestions,
            QStringList { StringTable::text(ids::kConfirmCancelSending) });
        if (c.yes) {
            ASSERT_TRUE(run_->waitFinished(kRunDeadline));
            EXPECT_FALSE(run_->succeeded());
            EXPECT_TRUE(waitUntil([&] { return window.isNull(); }, 5s));
            continue;
        }
        EXPECT_EQ(run_->state(), c.after);
        EXPECT_TRUE(window->isVisible());
        run_->stop();
        ASSERT_TRUE(run_->waitFinished(kRunDeadline));
        delete window;
    }
}

} // namespace
} // namespace zelto::test
