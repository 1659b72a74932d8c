// The transfer window against fixture servers: where it opens, its title, what it shows of a
// running job, its end with the job, and every answer to Cancel with the files that reached each
// server.

#include "DistributionFixture.h"
#include "TestNotifier.h"
#include "distribution/TransferMode.h"
#include "distribution/ui/CTransferDlg.h"
#include "distribution/ui/CTransfersDock.h"
#include "platform/StringIds.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <array>
#include <functional>
#include <tuple>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 20s;

TEST(TransferWindowCascadeTest, FollowsTheAnchorUntilAnEdge)
{
    const QRect screen(0, 0, 800, 600);
    struct Case {
        const char* what;
        QRect anchor;
        QRect screen;
        QPoint expected;
    };
    const Case cases[] = {
        { "room both ways", { 100, 100, 300, 200 }, screen, { 110, 120 } },
        { "right edge + 10 one short of the width", { 489, 100, 300, 200 }, screen, { 499, 120 } },
        { "right edge + 10 reaches the width", { 490, 100, 300, 200 }, screen, { 20, 120 } },
        { "bottom + 20 one short of the height", { 100, 379, 300, 200 }, screen, { 110, 399 } },
        { "bottom + 20 reaches the height", { 100, 380, 300, 200 }, screen, { 110, 40 } },
        { "both edges", { 600, 500, 300, 200 }, screen, { 20, 40 } },
        { "a second screen on the right", { 1500, 100, 300, 200 }, { 800, 0, 1024, 768 },
            { 1510, 120 } },
        { "its right edge", { 1520, 100, 300, 200 }, { 800, 0, 1024, 768 }, { 820, 120 } },
        { "a panel above the free area", { 100, 380, 300, 200 }, { 0, 30, 800, 570 }, { 110, 70 } },
    };
    for (const Case& c : cases)
        EXPECT_EQ(CTransferDlg::cascadePosition(c.anchor, c.screen), c.expected) << c.what;
}

TEST(TransferWindowTextTest, TitlesNameTheProfileWhereOneIsKnown)
{
    const std::tuple<TransferMode, const char*, const char*, const char*, const char*> cases[] = {
        { TransferMode::DistributionPut, "10.0.0.5", "", "", "FTP Put to: 10.0.0.5" },
        { TransferMode::DistributionPut, "10.0.0.5", "", "shop/acme",
            "FTP Put to: 10.0.0.5 (shop/acme)" },
        { TransferMode::Put, "ftp.acme.test", "", "ftp.acme.test", "FTP Put to: ftp.acme.test" },
        { TransferMode::Get, "10.0.0.5", "", "mirror", "FTP Get from: 10.0.0.5 (mirror)" },
        { TransferMode::Copy, "a.test", "b.test", "", "FTP Transfer from:a.test to b.test" },
    };
    for (const auto& [mode, server, target, name, title] : cases)
        EXPECT_EQ(CTransferDlg::titleOf(
                      mode, QLatin1String(server), QLatin1String(target), QLatin1String(name)),
            QLatin1String(title));
}

class TransferWindowTest : public DistributionFixture {
protected:
    void TearDown() override
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (qobject_cast<CTransferDlg*>(widget))
                delete widget;
        }
        DistributionFixture::TearDown();
    }

    QPointer<CTransferDlg> open(const std::shared_ptr<TransferJob>& job)
    {
        auto* window = new CTransferDlg(job, notifier_, nullptr);
        window->show();
        return window;
    }

    // Closed, and deleted with it.
    [[nodiscard]] static bool closed(const QPointer<CTransferDlg>& window)
    {
        return waitUntil(
            [&] {
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                return window.isNull();
            },
            kDeadline);
    }

    static void clickCancel(CTransferDlg& window)
    {
        auto* cancel = window.findChild<QPushButton*>(QStringLiteral("cancel"));
        ASSERT_NE(cancel, nullptr);
        QTest::mouseClick(cancel, Qt::LeftButton);
    }

    TestNotifier notifier_;
};

// What the window shows is what the job publishes, a long path elided at its start with the whole
// of it in the tool tip.
[[nodiscard]] bool shows(const CTransferDlg& window, const JobProgress::Snapshot& progress)
{
    static constexpr const char* kTexts[] = { "jobBytes", "jobRate", "jobTimeLeft", "fileBytes",
        "fileRate", "fileTimeLeft", "localPath", "remotePath", "status" };
    for (std::size_t i = 0; i < std::size(kTexts); ++i) {
        const auto which = static_cast<JobProgress::Text>(i);
        const bool path
            = which == JobProgress::Text::LocalPath || which == JobProgress::Text::RemotePath;
        const QString& text = progress.text(which);
        const auto* label = window.findChild<QLabel*>(QLatin1String(kTexts[i]));
        if (!label)
            return false;
        const QString shown
            = path ? CTransferDlg::elidedPath(text, label->fontMetrics(), label->width()) : text;
        if (label->text() != shown || (path && label->toolTip() != text))
            return false;
    }
    const auto* jobBar = window.findChild<QProgressBar*>(QStringLiteral("jobBar"));
    const auto* fileBar = window.findChild<QProgressBar*>(QStringLiteral("fileBar"));
    return jobBar && fileBar && jobBar->value() == progress.jobBar
        && fileBar->value() == progress.fileBar;
}

TEST_F(TransferWindowTest, EveryWayToCancelAsksFirst)
{
    const auto job = makeJob({ site(0) }, false);
    const auto window = open(job);
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));

    const std::pair<const char*, std::function<void()>> ways[] = {
        { "button", [&] { clickCancel(*window); } },
        { "Alt+C", [&] { QTest::keyClick(window, Qt::Key_C, Qt::AltModifier); } },
        { "Enter", [&] { QTest::keyClick(window, Qt::Key_Return); } },
        { "Esc", [&] { QTest::keyClick(window, Qt::Key_Escape); } },
        { "the window manager's close", [&] { window->close(); } },
    };
    for (const auto& [what, press] : ways) {
        const auto asked = notifier_.yesNoQuestions.size();
        press();
        EXPECT_TRUE(
            waitUntil([&] { return notifier_.yesNoQuestions.size() == asked + 1; }, kDeadline))
            << what;
        ASSERT_FALSE(window.isNull()) << what;
        EXPECT_TRUE(window->isVisible()) << what << ": No keeps the window";
    }
    EXPECT_EQ(notifier_.yesNoQuestions.front(), QStringLiteral("127.0.0.1: Cancel FTP sending?"));
    // A job cancelled before it started still ends, and its window with it.
    notifier_.yes = true;
    clickCancel(*window);
    EXPECT_TRUE(closed(window));
}

TEST_F(TransferWindowTest, ShowsTheRunningJobAndClosesWhenItEnds)
{
    // One file large enough to be caught in its transfer, in a folder whose path the window cuts.
    const QString folder = local_.path()
        + QStringLiteral("/a-folder-with-a-rather-long-name/and-another-below-it/and-one-more");
    const QString name = QStringLiteral("data.bin");
    ASSERT_TRUE(makeFile(folder + u'/' + name, 64 << 20, 7));
    const auto files = FileSet::build({ listed(folder, name) }).files();
    // The second site under another name of the same host, held at its login long enough for the
    // title to follow it there.
    JobSite second = site(1);
    second.server = QStringLiteral("localhost");
    stall(1, "USER", 1s);
    const auto job = makeJob({ site(0), second }, true, nullptr, files);
    const auto window = open(job);
    EXPECT_EQ(window->windowTitle(), QStringLiteral("FTP Put to: 127.0.0.1"));
    job->start();

    ASSERT_TRUE(waitUntil(
        [&] {
            const auto progress = job->progress().snapshot();
            return progress.jobBar > 0 && !progress.text(JobProgress::Text::JobBytes).isEmpty();
        },
        kDeadline));
    job->pause();
    JobProgress::Snapshot progress;
    ASSERT_TRUE(waitUntil(
        [&] {
            progress = job->progress().snapshot();
            return shows(*window, progress);
        },
        kDeadline));
    EXPECT_EQ(progress.text(JobProgress::Text::LocalPath), folder + u'/' + name);
    EXPECT_TRUE(window->findChild<QLabel*>(QStringLiteral("localPath"))->text().startsWith(u'…'));
    EXPECT_FALSE(progress.text(JobProgress::Text::RemotePath).isEmpty());

    job->resume();
    EXPECT_TRUE(waitUntil(
        [&] { return window && window->windowTitle() == QStringLiteral("FTP Put to: localhost"); },
        kDeadline));
    EXPECT_TRUE(closed(window));
    EXPECT_TRUE(job->done());
}

// The Transfers dock lists each open transfer window in the order they were opened, with the
// job's site and status, and loses a row when its window closes.
TEST_F(TransferWindowTest, TransfersDockListsTheOpenWindows)
{
    stall(0, "USER", FtpFaults::kForever);
    stall(1, "USER", FtpFaults::kForever);
    JobSite named = site(1);
    named.name = QStringLiteral("shop/acme");
    const auto first = makeJob({ site(0) }, false);
    const auto second = makeJob({ named }, false);
    const auto a = open(first);
    const auto b = open(second);
    first->start();
    second->start();
    ASSERT_TRUE(commandSeen(0, "USER", 0));
    ASSERT_TRUE(commandSeen(1, "USER", 0));

    CTransfersDock dock;
    dock.show();
    const auto* table = dock.findChild<QTableWidget*>(QStringLiteral("transfers"));
    ASSERT_NE(table, nullptr);
    const auto rows = [&] {
        QStringList texts;
        for (int row = 0; row < table->rowCount(); ++row)
            texts << table->item(row, CTransfersDock::Site)->text() + u'|'
                    + table->item(row, CTransfersDock::State)->text();
        return texts;
    };
    EXPECT_TRUE(waitUntil(
        [&] {
            dock.refresh();
            return rows()
                == QStringList { QStringLiteral("127.0.0.1|Connecting ..."),
                       QStringLiteral("127.0.0.1 (shop/acme)|Connecting ...") };
        },
        kDeadline))
        << rows().join(u'\n').toStdString();
    EXPECT_EQ(dock.windows(), (QList<CTransferDlg*> { a.data(), b.data() }));

    first->cancel();
    EXPECT_TRUE(closed(a));
    dock.refresh();
    EXPECT_EQ(dock.windows(), QList<CTransferDlg*> { b.data() });
    second->cancel();
    EXPECT_TRUE(closed(b));
}

// Each answer, for one site and for a serial job held by server 0: the window closes at once only
// when the job is cancelled; what each site's end reports and which files reached each server.
TEST_F(TransferWindowTest, EveryAnswerToCancel)
{
    struct Case {
        const char* what;
        bool serial;
        const char* stalled; // by server 0
        std::chrono::milliseconds stall;
        Answer answer; // Accepted is a one site's "Yes"
        bool closesAtOnce;
        std::array<bool, kServers> served;
    };
    const auto forever = FtpFaults::kForever;
    const Case cases[] = {
        { "one site, Yes", false, "STOR", forever, Answer::Accepted, true,
            { false, false, false } },
        { "one site, No", false, "STOR", 300ms, Answer::Cancelled, false, { true, false, false } },
        { "serial, All, before the login", true, "USER", forever, Answer::Accepted, true,
            { false, false, false } },
        { "serial, All, while sending", true, "STOR", forever, Answer::Accepted, true,
            { false, false, false } },
        { "serial, Only this one, before the login", true, "USER", forever, Answer::Middle, false,
            { false, true, true } },
        // The file ends with 237 and the site goes on to its end: only a stopped connect fails it.
        { "serial, Only this one, while sending", true, "STOR", forever, Answer::Middle, false,
            { false, true, true } },
        { "serial, Cancel", true, "USER", 300ms, Answer::Cancelled, false, { true, true, true } },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        clearServers();
        stall(0, c.stalled, c.stall);
        const int before = count(0, c.stalled);
        RecordingOutcomes outcomes;
        const auto job = c.serial ? makeJob({ site(0), site(1), site(2) }, true, &outcomes)
                                  : makeJob({ site(0) }, false, &outcomes);
        const auto window = open(job);
        job->start();
        ASSERT_TRUE(commandSeen(0, c.stalled, before));
        const int laterLogins = count(1, "USER") + count(2, "USER");

        // One site asks yes or no; a serial job asks all, only this one or cancel.
        notifier_.reset(c.serial ? std::deque { c.answer } : std::deque<Answer> {});
        notifier_.yes = c.answer == Answer::Accepted;
        clickCancel(*window);
        EXPECT_EQ(notifier_.yesNoQuestions.size(), c.serial ? 0u : 1u);
        ASSERT_EQ(notifier_.questions.size(), c.serial ? 1u : 0u);
        if (c.serial) {
            const Question& q = notifier_.questions[0];
            EXPECT_EQ(q.text, "This is a Serial FTP Put transfer. Cancel all or just this one?");
            EXPECT_EQ(std::tuple(q.acceptTextId, q.middleTextId, q.middleEnabled, q.cancelTextId),
                std::tuple(ids::kButtonAll, ids::kButtonOnlyThisOne, true, ids::kButtonCancel));
        }
        EXPECT_EQ(window.isNull() || !window->isVisible(), c.closesAtOnce);

        EXPECT_TRUE(closed(window));
        ASSERT_TRUE(ended(job));
        ASSERT_EQ(outcomes.count(), std::size_t(c.serial ? kServers : 1))
            << "every site to the sink";
        const bool sending = c.stalled == std::string_view("STOR");
        EXPECT_EQ(resultsOf(outcomes.of(site(0).port).files),
            c.served[0] ? all(FileEntry::kSent)
                        : (sending ? firstCancelled() : all(FileEntry::kNotTried)));
        for (int server = 0; server < kServers; ++server) {
            EXPECT_EQ(bool(served(server)), c.served[server]) << server;
            EXPECT_EQ(empty(server), !c.served[server]) << server;
        }
        if (!c.serial)
            continue;
        const bool cancelAll = c.answer == Answer::Accepted;
        if (cancelAll) {
            EXPECT_EQ(count(1, "USER") + count(2, "USER"), laterLogins) << "no later site tried";
            EXPECT_EQ(resultsOf(outcomes.of(site(1).port).files), all(FileEntry::kNotTried));
        }
        // The new worker may finish a site before the stopped one has left its connect.
        for (const auto& result : job->results()) {
            if (result.site.port != site(0).port) {
                EXPECT_EQ(result.result.has_value(), !cancelAll) << "after All no later site runs";
                EXPECT_TRUE(!result.result || result.result->ok()) << result.site.port;
            } else if (c.answer == Answer::Middle) {
                ASSERT_TRUE(result.result);
                EXPECT_EQ(!result.result->ok(), !sending)
                    << "only a stopped connect fails the site";
            }
        }
    }
}

} // namespace
} // namespace zelto::test
