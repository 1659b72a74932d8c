// The record per site of a run to several sites: what a link run keeps for its report, what a
// scheduled link tells the window at its end, and the report that opens, never modal, when a
// send of the multiple-put screen has ended.

#include "distribution/RunSummary.h"

#include "DataFiles.h"
#include "DistributionFixture.h"
#include "SilentPlayer.h"
#include "app/BackgroundWork.h"
#include "app/ProgramServices.h"
#include "distribution/LinkDistribution.h"
#include "distribution/ui/CFtpView.h"
#include "distribution/ui/CRunSummaryDlg.h"
#include "distribution/ui/MultiplePut.h"
#include "profiles/ui/CFileListView.h"
#include "settings/DataFolders.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QPointer>
#include <QTest>
#include <QTreeWidget>

#include <algorithm>
#include <optional>
#include <tuple>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 30s;

// Site label, sent, failed, bytes.
using Row = std::tuple<std::string, int, int, qint64>;

class RunSummaryTest : public DistributionFixture {
protected:
    void SetUp() override
    {
        DistributionFixture::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        // The third server turns every login down.
        servers_[2]->setFaults({ .refuseLogin = { "*" } });
    }

    [[nodiscard]] QString profileOf(int server) const
    {
        const QString file = DataFolders::profiles() + QStringLiteral("/site%1.ini").arg(server);
        writeProfile(file, *servers_[server]);
        return file;
    }
    // The profile's name, then where it points.
    [[nodiscard]] QString label(int server) const
    {
        return QStringLiteral("site%1 (%2:%3)")
            .arg(server)
            .arg(FtpServer::host())
            .arg(servers_[server]->port());
    }
    // What the whole file set is at a site that took it, and at one that refused the login.
    [[nodiscard]] Row served(int server) const
    {
        qint64 bytes = 0;
        for (const FileEntry& file : fileSet())
            bytes += file.size;
        return { label(server).toStdString(), int(fileSet().size()), 0, bytes };
    }
    [[nodiscard]] Row refused(int server) const
    {
        return { label(server).toStdString(), 0, int(fileSet().size()), 0 };
    }
    // Parallel sites end in any order.
    [[nodiscard]] static std::vector<Row> sortedRows(const RunSummary& summary)
    {
        std::vector<Row> rows;
        for (const RunSummary::Site& site : summary.sites())
            rows.emplace_back(
                site.label.toStdString(), site.tally.sent, site.tally.failed, site.tally.bytes);
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    [[nodiscard]] static std::vector<Row> sortedRows(const QTreeWidget& table)
    {
        std::vector<Row> rows;
        for (int i = 0; i < table.topLevelItemCount(); ++i) {
            const QTreeWidgetItem& item = *table.topLevelItem(i);
            rows.emplace_back(item.text(CRunSummaryDlg::Site).toStdString(),
                item.text(CRunSummaryDlg::Sent).toInt(), item.text(CRunSummaryDlg::Failed).toInt(),
                item.text(CRunSummaryDlg::Bytes).toLongLong());
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    // Link `name` of the fixture servers `servers`, over a list of the local tree's files.
    void writeLinkOf(const QString& name, const std::vector<int>& servers) const
    {
        const QString list = DataFolders::files() + QStringLiteral("/web/flist.ini");
        QStringList entries;
        for (const FileEntry& file : fileSet())
            entries << file.localFolder + u'|' + file.localName;
        writeList(list, entries);
        QStringList profiles;
        for (int server : servers)
            profiles << profileOf(server);
        writeLink(DataFolders::linkFile(name), profiles, list);
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

TEST_F(RunSummaryTest, LinkRunKeepsARecordPerSiteWithTheRefusedLoginsFilesFailed)
{
    struct Case {
        const char* link;
        std::vector<int> servers;
        std::vector<Row> rows;
        QString status;
        QString closing;
    };
    const Case cases[] = {
        { "both", { 0, 1 }, { served(0), served(1) },
            QStringLiteral("Sent 8 files to 2 sites, 0 failed"),
            QStringLiteral("Every file reached every site.") },
        { "refused", { 0, 2 }, { served(0), refused(2) },
            QStringLiteral("Sent 4 files to 2 sites, 4 failed"),
            QStringLiteral("4 files not sent, at 1 of 2 sites.") },
    };
    for (const Case& c : cases) {
        writeLinkOf(QString::fromLatin1(c.link), c.servers);
        clearServers();

        LinkDistribution run(recorder_.services, threads_, outcomes_, nullptr, 0ms);
        std::optional<LinkDistribution::End> end;
        run.start(
            QString::fromLatin1(c.link), [&end](LinkDistribution::End ended) { end = ended; });
        ASSERT_TRUE(waitUntil([&] { return end.has_value(); }, kDeadline)) << c.link;

        const RunSummary& summary = run.summary();
        auto expected = c.rows;
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(sortedRows(summary), expected) << c.link;
        EXPECT_EQ(summary.title(), QStringLiteral("Link run: ") + QString::fromLatin1(c.link));
        EXPECT_EQ(summary.statusLine(), c.status) << c.link;
        EXPECT_EQ(summary.closingLine(), c.closing) << c.link;
    }
}

// The scheduler's links in an interactive run: the window hears each end that had sites, once.
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
    std::vector<Row> rows { served(0), refused(2) };
    std::sort(rows.begin(), rows.end());
    EXPECT_EQ(sortedRows(told[0]), rows);
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
        std::vector<Row> rows { served(0), refused(2) };
        std::sort(rows.begin(), rows.end());
        EXPECT_EQ(sortedRows(*report->table()), rows) << c.title.toStdString();
        EXPECT_EQ(told, std::vector({ QStringLiteral("Sent 4 files to 2 sites, 4 failed") }));

        report->copy();
        const QStringList lines
            = QGuiApplication::clipboard()->text().split(u'\n', Qt::SkipEmptyParts);
        ASSERT_EQ(lines.size(), 3) << QGuiApplication::clipboard()->text().toStdString();
        EXPECT_EQ(lines[0], QStringLiteral("Site\tSent\tFailed\tBytes\tTime"));
        const QStringList refusedRow = lines.filter(label(2)).value(0).split(u'\t');
        EXPECT_EQ(refusedRow.mid(0, 4), QStringList({ label(2), "0", "4", "0" }));

        QTest::keyClick(report->table(), Qt::Key_Escape);
        EXPECT_TRUE(waitUntil([&] { return report.isNull(); }, kDeadline)) << "Escape left it open";
    }
}

} // namespace
} // namespace zelto::test
