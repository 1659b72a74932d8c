// The real program running a link unattended, as cron would: its lines and its exit status (a
// missing link is in the program tests).

#include "DataFiles.h"
#include "DistributionFixture.h"
#include "ProgramRun.h"
#include "queue/QueueStore.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>

namespace zelto::test {
namespace {

class LinkProgramTest : public DistributionFixture {
protected:
    // Links "both" (sites 0 and 1), "all" (the three) and "empty" (no sites), over one list of
    // the local tree's files.
    void SetUp() override
    {
        DistributionFixture::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        writeLinkOf(QStringLiteral("both"), { 0, 1 });
        writeLinkOf(QStringLiteral("all"), { 0, 1, 2 });
        writeLinkOf(QStringLiteral("empty"), {});
    }

    [[nodiscard]] QString label(int server) const
    {
        return FtpServer::host() + u':' + QString::number(servers_[server]->port());
    }
};

TEST_F(LinkProgramTest, ExitStatusAndLinesTellWhatReachedEachSite)
{
    servers_[2]->setFaults({ .refuseLogin = { "*" } });

    struct Case {
        const char* what;
        QString link;
        int exitCode;
        std::vector<int> served;
        std::vector<int> refused;
        QString inOut;
    };
    const Case cases[] = {
        { "every site served", QStringLiteral("both"), 0, { 0, 1 }, {},
            QStringLiteral("Link both: every file reached every site.") },
        { "one site refuses the login", QStringLiteral("all"), 1, { 0, 1 }, { 2 },
            QStringLiteral("Link all: 4 files not sent, at 1 of 3 sites.") },
        { "a link without sites", QStringLiteral("empty"), 0, {}, {},
            QStringLiteral("Link empty has no sites: nothing to send.") },
    };
    // On a desktop the sites' transfer windows show the run; its lines and status stay.
    QProcessEnvironment desktop;
    desktop.insert(QStringLiteral("DISPLAY"), QStringLiteral(":97"));
    desktop.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    for (const auto& [c, environment] :
        { std::pair(cases[0], QProcessEnvironment()), std::pair(cases[1], QProcessEnvironment()),
            std::pair(cases[2], QProcessEnvironment()), std::pair(cases[1], desktop) }) {
        clearServers();
        const ProgramResult result = runProgram(
            QStringLiteral(ZELTO_PROGRAM), { QStringLiteral("-l"), c.link }, environment);
        EXPECT_EQ(result.exitCode, c.exitCode) << c.what << "\n" << result.err.toStdString();
        EXPECT_TRUE(result.out.contains(c.inOut)) << c.what << ":\n" << result.out.toStdString();
        for (int server : c.served) {
            EXPECT_TRUE(served(server)) << c.what;
            EXPECT_TRUE(
                result.out.contains(label(server) + QStringLiteral("  done: 4 sent, 0 failed")))
                << c.what;
        }
        for (int server : c.refused)
            EXPECT_TRUE(result.out.contains(label(server) + QStringLiteral("  not reached")))
                << c.what;
    }
}

// The disk under the data folder is full (a file-size limit on the program stands for it): the
// files that failed and could not be queued are named on standard error, and the run fails.
TEST_F(LinkProgramTest, FilesThatCouldNotBeQueuedAreNamed)
{
    SettingsStore::set(settings::schedule::kResendFail, 1);
    servers_[2]->setFaults({ .refuse = { "STOR" } });
    QueueStore store;
    // A queue of some size, so that the limit lies above the program's other small files.
    writeWaitingQueue(store.file(), 100);
    const qint64 size = QFileInfo(store.file()).size();

    const ProgramResult result = runProgram(QStringLiteral(ZELTO_PROGRAM),
        { QStringLiteral("-l"), QStringLiteral("all") }, {}, {}, size + 8);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.err.contains(QStringLiteral("The queue could not be written")))
        << result.err.toStdString();
    for (const FileEntry& file : fileSet())
        EXPECT_TRUE(result.err.contains(file.localFolder + u'/' + file.localName))
            << result.err.toStdString();
    EXPECT_EQ(store.count(), 100);
}

} // namespace
} // namespace zelto::test
