// The message boxes a worker asks for: shown on the window thread while the worker waits for the
// answer, and closed when the program stops the worker, which then goes on.

#include "app/ui/MessageBoxNotifier.h"

#include "TestWait.h"
#include "distribution/WorkerThreads.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <optional>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

QMessageBox* shownBox()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* box = qobject_cast<QMessageBox*>(window); box && box->isVisible())
            return box;
    }
    return nullptr;
}

TEST(MessageBoxNotifierTest, AWorkerWaitsForTheAnswerOrItsStop)
{
    const struct {
        const char* what;
        bool stopped; // the program stops the worker; otherwise the user clicks Yes
        bool answer;
    } cases[] = { { "answered", false, true }, { "stopped", true, false } };
    for (const auto& c : cases) {
        MessageBoxNotifier notifier;
        WorkerThreads threads;
        std::atomic<bool> done { false };
        std::optional<bool> answer;
        threads.launch([&](std::stop_token) {
            answer = notifier.askYesNo(QStringLiteral("Go on?"));
            done = true;
        });
        // The box runs an event loop of its own: the test acts from inside it.
        bool acted = false;
        QTimer look;
        look.setInterval(5ms);
        QObject::connect(&look, &QTimer::timeout, [&] {
            QMessageBox* box = shownBox();
            if (acted || !box)
                return;
            acted = true;
            if (c.stopped)
                threads.stopAll(); // joins the worker
            else
                box->button(QMessageBox::Yes)->click();
        });
        look.start();
        ASSERT_TRUE(waitUntil([&] { return done && !shownBox(); }, 10s)) << c.what;
        EXPECT_TRUE(acted) << c.what;
        EXPECT_EQ(answer, c.answer) << c.what;
    }
}

} // namespace
} // namespace zelto::test
