// What the windows hear at the end of a run: a scheduled link's records, and the report that opens,
// never modal, when a send of the multiple-put screen has ended: a row per site with the refused
// login's files failed, Copy as tab-separated text, and Escape to close it.

#include "RunSummaryFixture.h"
#include "SilentPlayer.h"
#include "TempSettings.h"
#include "app/BackgroundWork.h"
#include "app/ProgramServices.h"
#include "distribution/ui/CFtpView.h"
#include "distribution/ui/CRunSummaryDlg.h"
#include "distribution/ui/MultiplePut.h"
#include "profiles/ui/CFileListView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 30s;

class RunSummaryTest : public RunSummaryFixture {
protected:
    using RunSummaryFixture::rowsOf;
    [[nodiscard]] static std::vector<Row> rowsOf(const QTreeWidget& table)
    {
        std::vector<Row> rows;
        for (int i = 0; i < table.topLevelItemCount(); ++i) {
            const QTreeWidgetItem& item = *table.topLevelItem(i);
            rows.emplace_back(item.text(CRunSummaryDlg::Site).toStdString(),
                item.text(CRunSummaryDlg::Sent).toInt(), item.text(CRunSummaryDlg::Failed).toInt(),
                item.text(CRunSummaryDlg::Bytes).toLongLong());
        }
        return sorted(std::move(rows));
    }
    [[nodiscard]] static CRunSummaryDlg* openReport()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* report = qobject_cast<CRunSummaryDlg*>(widget); report && report->isVisible())
                return report;
        }
        return nullptr;
    }
};

// The scheduler's links in an interactive run: the frame hears each end that had sites, once. (Its
// log writer's timed lock is one that ThreadSanitizer cannot follow, so this case is here.)
TEST_F(RunSummaryTest, ScheduledLinkTellsItsEndOnceWithARecordPerSite)
{
    writeLinkOf(QStringLiteral("pair"), { 0, 2 });
    writeLinkOf(QStringLiteral("empty"), {});
    SilentPlayer player;
    ProgramServices services(recorder_, player);
    BackgroundWork work(services);
    std::vector<RunSummary> told;
    work.setLinkEnded([&told](const RunSummary& summary) { told.push_back(summary); });
    work.runLink(QStringLiteral("empty"));
    work.runLink(QStringLiteral("pair"));
    ASSERT_TRUE(waitUntil([&] { return work.runningLinks() == 0; }, kDeadline));

    ASSERT_EQ(told.size(), 1u);
    EXPECT_EQ(told[0].title(), QStringLiteral("Link run: pair"));
    EXPECT_EQ(rowsOf(told[0]), sorted({ rowSent(0), rowRefused(2) }));
}

TEST_F(RunSummaryTest, SendOpensItsReportWithoutHoldingTheWindow)
{
    QWidget window;
    window.resize(600, 400);
    auto* sites = new CFtpView(&window);
    auto* files = new CFileListView(recorder_, &window);
    MultiplePut put(*sites, *files, recorder_.services, threads_, outcomes_);
    std::vector<QString> told;
    QObject::connect(&put, &MultiplePut::sendEnded,
        [&told](const RunSummary& summary) { told.push_back(summary.statusLine()); });
    sites->addProfiles({ profileOf(0), profileOf(2) });
    files->addPaths({ localPath(QStringLiteral("www")) });
    ASSERT_TRUE(waitUntil([&] { return !files->adding(); }, kDeadline));

    struct Case {
        QAction* send;
        QString title;
    };
    const Case cases[] = {
        { put.sendParallelAction(), QStringLiteral("Send Parallel") },
        { put.sendSerialAction(), QStringLiteral("Send Serial") },
    };
    for (const Case& c : cases) {
        told.clear();
        clearServers();
        c.send->trigger();
        QPointer<CRunSummaryDlg> report;
        ASSERT_TRUE(waitUntil([&] { return (report = openReport()) != nullptr; }, kDeadline))
            << c.title.toStdString();

        // Shown beside the frame, which goes on taking input.
        EXPECT_FALSE(report->isModal());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(report->windowTitle(), c.title);
        EXPECT_EQ(rowsOf(*report->table()), sorted({ rowSent(0), rowRefused(2) }))
            << c.title.toStdString();
        EXPECT_EQ(told, std::vector({ QStringLiteral("Sent 4 files to 2 sites, 4 failed") }));

        // Ctrl+C in the table and the Copy button put the same rows on the clipboard.
        QClipboard& clipboard = *QGuiApplication::clipboard();
        clipboard.clear();
        QTest::keyClick(report->table(), Qt::Key_C, Qt::ControlModifier);
        const QString copied = clipboard.text();
        clipboard.clear();
        report->findChild<QPushButton*>(QStringLiteral("copy"))->click();
        EXPECT_EQ(clipboard.text(), copied);
        const QStringList lines = copied.split(u'\n', Qt::SkipEmptyParts);
        ASSERT_EQ(lines.size(), 3) << copied.toStdString();
        EXPECT_EQ(lines[0], QStringLiteral("Site\tSent\tFailed\tBytes\tTime"));
        const QStringList refusedRow = lines.filter(label(2)).value(0).split(u'\t');
        EXPECT_EQ(refusedRow.mid(0, 4), QStringList({ label(2), "0", "4", "0" }));

        QTest::keyClick(report->table(), Qt::Key_Escape);
        EXPECT_TRUE(waitUntil([&] { return report.isNull(); }, kDeadline)) << "Escape left it open";
    }
}

// Reports of runs that end close together each stay in sight.
TEST(RunSummaryWindowTest, ReportsOfRunsEndingTogetherDoNotCoverEachOther)
{
    TempSettings settings;
    std::vector<QPointer<CRunSummaryDlg>> reports;
    for (int i = 0; i < 3; ++i)
        reports.emplace_back(
            CRunSummaryDlg::open(RunSummary(QStringLiteral("Send Parallel")), nullptr));
    EXPECT_NE(reports[0]->pos(), reports[1]->pos());
    EXPECT_NE(reports[0]->pos(), reports[2]->pos());
    EXPECT_NE(reports[1]->pos(), reports[2]->pos());
    for (const auto& report : reports)
        report->close();
}

} // namespace
} // namespace zelto::test
