// The connection as the server sees it: one login per job, the commands it sends and the folders
// it addresses.

#include "FtpTestKit.h"
#include "TestFiles.h"
#include "ftp/CTransferSession.h"
#include "ftp/FtpErrors.h"
#include "ftp/TransferRoutines.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

class FtpConnectionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (const auto reason = FtpServer::unavailableReason())
            GTEST_SKIP() << reason->toStdString();
        useQuickTimeouts(2);
        useDirectAccess();
        server_ = std::make_unique<FtpServer>();
        session_ = std::make_unique<CTransferSession>(recorder_.services);
        const auto result = session_->connectJob(siteOf(*server_));
        ASSERT_TRUE(result.ok()) << result.text().toStdString();
    }

    [[nodiscard]] FtpConnection& connection() { return *session_->connection(); }
    [[nodiscard]] QStringList commands(const QString& verb) const
    {
        QStringList arguments;
        for (const auto& entry : server_->commandLog()) {
            if (entry.command == verb)
                arguments.append(entry.argument);
        }
        return arguments;
    }

    TempSettings settings_;
    Recorder recorder_;
    QTemporaryDir local_;
    std::unique_ptr<FtpServer> server_;
    std::unique_ptr<CTransferSession> session_;
};

TEST_F(FtpConnectionTest, ManyFilesAndCommandsGoOverOneLogin)
{
    const auto home = server_->home();
    for (int i = 0; i < 4; ++i) {
        const auto name = QStringLiteral("f%1.bin").arg(i);
        ASSERT_TRUE(makeFile(local_.filePath(name), 20'000 + i, quint64(i)));
        ASSERT_TRUE(
            putFile(*session_, local_.filePath(name), name, false, 20'000 + i, {}, true).ok());
    }
    for (int i = 0; i < 3; ++i) {
        const auto name = QStringLiteral("f%1.bin").arg(i);
        ASSERT_TRUE(getFile(*session_, name, local_.filePath("back" + name), false, 0, {}).ok());
    }
    ASSERT_TRUE(connection().makeFolder("made").ok());
    ASSERT_TRUE(connection().rename("f3.bin", "made/f3.bin").ok());
    qint64 size = 0;
    ASSERT_TRUE(connection().fileSize("made/f3.bin", size).ok());
    EXPECT_EQ(size, 20'003);
    ASSERT_TRUE(connection().removeFile("made/f3.bin").ok());
    session_->disconnectJob();

    EXPECT_EQ(server_->commandCount("USER"), 1);
    EXPECT_EQ(server_->commandCount("STOR"), 4);
    EXPECT_EQ(server_->commandCount("RETR"), 3);
    EXPECT_TRUE(waitUntil([&] { return server_->commandCount("QUIT") == 1; }, 5s));
    for (const auto& entry : server_->commandLog())
        EXPECT_EQ(entry.connection, 1) << entry.command.toStdString();
}

TEST_F(FtpConnectionTest, FoldersAreCheckedOnTheServerAndFilesGoByFullPath)
{
    ASSERT_TRUE(QDir(server_->home()).mkpath("a/b"));
    EXPECT_EQ(connection().entryFolder(), "/");
    EXPECT_EQ(connection().currentFolder(), "/");

    ASSERT_TRUE(connection().changeFolder("a").ok());
    EXPECT_EQ(connection().currentFolder(), "/a");
    ASSERT_TRUE(connection().changeFolder("b").ok());
    EXPECT_EQ(connection().currentFolder(), "/a/b");
    // The folder the server confirms is the one kept, not the text that was asked for.
    ASSERT_TRUE(connection().changeFolder("..").ok());
    EXPECT_EQ(connection().currentFolder(), "/a");
    const auto refused = connection().changeFolder("missing");
    EXPECT_EQ(refused.code, inet::kServerError);
    EXPECT_EQ(connection().currentFolder(), "/a");

    const auto source = local_.filePath("x.bin");
    ASSERT_TRUE(makeFile(source, 1000, 1));
    ASSERT_TRUE(putFile(*session_, source, "x.bin", false, 1000, {}, true).ok());
    ASSERT_TRUE(putFile(*session_, source, "/top.bin", false, 1000, {}, true).ok());
    EXPECT_TRUE(sameBytes(source, server_->home() + "/a/x.bin"));
    EXPECT_TRUE(sameBytes(source, server_->home() + "/top.bin"));

    // Every CWD is ours (libcurl addresses files by path), and every file goes by its full path.
    EXPECT_EQ(commands("CWD"), QStringList({ "/a", "/a/b", "/a/b/..", "/a/missing" }));
    EXPECT_EQ(commands("STOR"), QStringList({ "/a/x.bin", "/top.bin" }));
}

TEST_F(FtpConnectionTest, SingleCommandsReportTheServersReply)
{
    const auto home = server_->home();
    struct Case {
        const char* verb;
        std::function<void()> prepare;
        std::function<FtpResult()> run;
        std::function<bool()> done;
    };
    QDir dir(home);
    const Case cases[] = {
        { "MKD", [&] { dir.rmdir("new"); }, [&] { return connection().makeFolder("new"); },
            [&] { return dir.exists("new"); } },
        { "RNFR",
            [&] {
                dir.mkdir("old");
                dir.rmdir("renamed");
            },
            [&] { return connection().rename("old", "renamed"); },
            [&] { return dir.exists("renamed") && !dir.exists("old"); } },
        { "RMD", [&] { dir.mkdir("gone"); }, [&] { return connection().removeFolder("gone"); },
            [&] { return !dir.exists("gone"); } },
        { "DELE", [&] { ASSERT_TRUE(makeFile(home + "/file.bin", 10, 1)); },
            [&] { return connection().removeFile("file.bin"); },
            [&] { return !QFile::exists(home + "/file.bin"); } },
    };
    for (const bool refuse : { true, false }) {
        for (const auto& c : cases) {
            SCOPED_TRACE(std::string(c.verb) + (refuse ? " refused" : ""));
            c.prepare();
            FtpFaults faults;
            if (refuse)
                faults.refuse = { c.verb };
            server_->setFaults(faults);
            const auto result = c.run();
            if (refuse) {
                EXPECT_EQ(result.code, inet::kServerError);
                EXPECT_EQ(result.detail,
                    QStringLiteral("550 %1 refused by the test server.").arg(c.verb));
                EXPECT_EQ(connection().lastReply().code, 550);
                EXPECT_FALSE(c.done());
            } else {
                EXPECT_TRUE(result.ok()) << result.text().toStdString();
                EXPECT_TRUE(c.done());
            }
            // A refusal leaves the connection as it was.
            EXPECT_TRUE(session_->isConnected());
        }
    }
    QString folder;
    ASSERT_TRUE(connection().printFolder(folder).ok());
    EXPECT_EQ(folder, "/");
    EXPECT_EQ(server_->commandCount("USER"), 1);
}

TEST_F(FtpConnectionTest, NamesThatCouldSmuggleACommandNeverReachTheServer)
{
    for (const QString name : { "a\r\nDELE victim", "b\nMKD x", "c\rd" }) {
        const auto made = connection().makeFolder(name);
        EXPECT_EQ(made.code, inet::kInvalidUrl);
        const auto got = getFile(*session_, name, local_.filePath("x"), false, 0, {});
        EXPECT_EQ(got.code, inet::kInvalidUrl);
    }
    EXPECT_EQ(server_->commandCount("MKD"), 0);
    EXPECT_EQ(server_->commandCount("DELE"), 0);
    EXPECT_EQ(server_->commandCount("RETR"), 0);
}

TEST_F(FtpConnectionTest, ActiveDataConnectionsUnlessPassiveIsAsked)
{
    const auto source = local_.filePath("m.bin");
    ASSERT_TRUE(makeFile(source, 50'000, 2));
    for (const bool passive : { false, true }) {
        SCOPED_TRACE(passive ? "passive" : "active");
        SettingsStore::set(settings::ftp::kPassive, passive ? "YES" : "NO");
        CTransferSession session(recorder_.services);
        ASSERT_TRUE(session.connectJob(siteOf(*server_)).ok());
        const int before = server_->commandCount("EPSV") + server_->commandCount("PASV");
        const int activeBefore = server_->commandCount("EPRT") + server_->commandCount("PORT");
        ASSERT_TRUE(putFile(session, source, "m.bin", false, 50'000, {}, true).ok());
        ASSERT_TRUE(getFile(session, "m.bin", local_.filePath("m2.bin"), false, 0, {}).ok());
        const int passives = server_->commandCount("EPSV") + server_->commandCount("PASV") - before;
        const int actives
            = server_->commandCount("EPRT") + server_->commandCount("PORT") - activeBefore;
        EXPECT_EQ(passives, passive ? 2 : 0);
        EXPECT_EQ(actives, passive ? 0 : 2);
        EXPECT_TRUE(sameBytes(source, local_.filePath("m2.bin")));
    }
}

// pyftpdlib lists UTF8 in FEAT and answers OPTS UTF8 ON with 501: the names are UTF-8 all the
// same (see TransferRoutinesTest.NonAsciiNamesArriveAsTheyAre).
TEST_F(FtpConnectionTest, Utf8NamesAreAskedForWhereTheServerOffersThem)
{
    EXPECT_EQ(server_->commandCount("FEAT"), 1);
    EXPECT_EQ(commands("OPTS"), QStringList({ "UTF8 ON" }));
    EXPECT_FALSE(connection().utf8Names());
    EXPECT_TRUE(session_->isConnected());
}

} // namespace
} // namespace zelto::test
