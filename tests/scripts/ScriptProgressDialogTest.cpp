// The progress window of a script: Pause holds and frees the run, its list follows the run's
// lines and ends with a count of the steps, and Stop or closing it while the run goes on asks
// first.

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

TEST_F(ScriptProgressDialogTest, PauseHoldsTheRunAndTheEndOffersClose)
{
    const QPointer window = show({ open("a", *a_), "mkdir a one", "mkdir a one", "close a" }, true);
    QPushButton* pause = window->toggleButton();
    QPushButton* stop = window->stopButton();
    EXPECT_EQ(pause->text(), QStringLiteral("&Resume"));

    QTest::mouseClick(pause, Qt::LeftButton);
    EXPECT_EQ(pause->text(), QStringLiteral("&Pause"));
    ASSERT_TRUE(run_->waitFinished(kRunDeadline));
    // The window's timer brings the last lines, then a line that counts the steps, and the run's
    // buttons give way to Close. The second mkdir fails: the folder is there.
    const QString closing = QStringLiteral("Script ended. Steps succeeded: 4, failed: 1.");
    EXPECT_TRUE(waitUntil(
        [&] { return window->shownLines() == progress_->linesFrom(0) + QStringList { closing }; },
        kRunDeadline))
        << window->shownLines().join(u'\n').toStdString();
    EXPECT_FALSE(pause->isEnabled());
    EXPECT_EQ(stop->text(), QStringLiteral("&Close"));
    EXPECT_TRUE(window->shownLines().contains(
        step(QStringLiteral("a: "), ids::kLogMakeDirectoryOk, QStringLiteral("one"))))
        << window->shownLines().join(u'\n').toStdString();

    // A finished run's window closes without a question.
    QTest::mouseClick(stop, Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return window.isNull(); }, 5s));
    EXPECT_TRUE(notifier_.yesNoQuestions.isEmpty());
}

TEST_F(ScriptProgressDialogTest, ClosingARunThatGoesOnAsksFirst)
{
    const struct {
        const char* what;
        bool withStop; // Stop rather than closing the window
        bool heldByUser;
        bool yes;
        ScriptState after; // of the run, once answered
    } cases[] = {
        { "No to a running script", false, false, false, ScriptState::Running },
        { "No to a script the user suspended", false, true, false, ScriptState::Suspended },
        { "Yes", false, false, true, ScriptState::Finished },
        { "Stop, No", true, false, false, ScriptState::Running },
        { "Stop, Yes", true, false, true, ScriptState::Finished },
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

        if (c.withStop)
            QTest::mouseClick(window->stopButton(), Qt::LeftButton);
        else
            QTest::keyClick(window, Qt::Key_Escape);
        EXPECT_EQ(notifier_.yesNoQuestions,
            QStringList { StringTable::text(ids::kConfirmCancelSending) });
        if (c.yes) {
            ASSERT_TRUE(run_->waitFinished(kRunDeadline));
            EXPECT_FALSE(run_->succeeded());
            if (!c.withStop) {
                EXPECT_TRUE(waitUntil([&] { return window.isNull(); }, 5s));
                continue;
            }
            // Stop keeps the window, which tells how far the run got.
            EXPECT_TRUE(waitUntil(
                [&] {
                    return window->shownLines()
                               .value(window->shownLines().size() - 1)
                               .startsWith(
                                   QStringLiteral("Script stopped. Steps succeeded: 3, failed: 1."))
                        && window->stopButton()->text() == QStringLiteral("&Close");
                },
                kRunDeadline))
                << window->shownLines().join(u'\n').toStdString();
            delete window;
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
