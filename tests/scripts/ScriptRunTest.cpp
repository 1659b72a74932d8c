// Whole script runs against the fixture servers: every command with its lines, log records and
// effects, the lines that are not run, copies between two servers, and pause, resume and stop.

#include "ScriptFixture.h"
#include "ftp/GetPump.h"
#include "scripts/ScriptReader.h"

#include <functional>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

const QString kA = QStringLiteral("a: ");
const QString kLocal = QStringLiteral("LOCAL: ");
const QString kNotConnected = QStringLiteral("The requested operation is invalid. not connected");
constexpr int kDone = ids::kLogFtpTransferComplete;
constexpr int kFailed = ids::kLogFtpTransferFailed;

QString text(int id)
{
    return StringTable::text(id);
}

class ScriptRunTest : public ScriptFixture {
protected:
    // a: in.txt, old.txt, taken.txt and the empty folder sub; LOCAL: up.txt and the folder down.
    void resetTrees() const
    {
        for (const QString& root : { a_->home(), local_.path() }) {
            QDir(root).removeRecursively();
            ASSERT_TRUE(QDir().mkpath(root + "/sub"));
        }
        ASSERT_TRUE(makeFile(a_->home() + "/in.txt", 3000, 1));
        ASSERT_TRUE(makeFile(a_->home() + "/old.txt", 10, 2));
        ASSERT_TRUE(makeFile(a_->home() + "/taken.txt", 10, 3));
        ASSERT_TRUE(makeFile(local("up.txt"), 70'000, 4));
    }
};

TEST_F(ScriptRunTest, EveryCommandReportsAndLogsItsOutcome)
{
    const QString home = a_->home();
    const QString unknown = StringTable::errorMessage(12027);
    const QString zz = QStringLiteral("zz: ");
    struct Case {
        const char* what;
        QStringList body;
        Expected expected;
        std::function<void()> check = [] {};
        bool closedAtEnd = true;
    };
    const Case cases[] = {
        { "get and put", { "get a in.txt", "get a none.txt", "put a up.txt", "put a gone.txt" },
            Expected()
                .ok(kA, kDone, "in.txt")
                .fail(kA, kFailed, "none.txt", "*")
                .ok(kA, kDone, "up.txt")
                .fail(kA, kFailed, "gone.txt", "The local file was not found*"),
            [&] {
                EXPECT_TRUE(sameBytes(home + "/in.txt", local("in.txt")));
                EXPECT_TRUE(sameBytes(local("up.txt"), home + "/up.txt"));
            } },
        { "cd down, '.' stays, '..' goes up", { "cd a sub", "cd a .", "cd a ..", "cd a nowhere" },
            Expected()
                .ok(kA, ids::kLogChangeDirectoryOk, "/sub")
                .ok(kA, ids::kLogChangeDirectoryOk, "/sub")
                .ok(kA, ids::kLogChangeDirectoryOk, "/")
                .fail(kA, ids::kLogChangeDirectoryFailed, "nowhere", "*"),
            [&] {
                // "." is no command to the server.
                for (const LoggedCommand& command : a_->commandLog())
                    EXPECT_FALSE(command.command == "CWD" && command.argument.endsWith("/."));
            } },
        { "lcd moves where get puts files", { "lcd sub", "get a in.txt", "lcd nowhere" },
            Expected()
                .ok(kLocal, ids::kLogChangeDirectoryOk, local("sub"))
                .ok(kA, kDone, "in.txt")
                .fail(kLocal, ids::kLogChangeDirectoryFailed, "nowhere",
                    "The local file was not found*"),
            [&] { EXPECT_TRUE(sameBytes(home + "/in.txt", local("sub/in.txt"))); } },
        { "mkdir, remove and rmdir",
            { "mkdir a new", "mkdir a sub", "mkdir a x/y/z", "remove a old.txt", "remove a old.txt",
                "rmdir a sub", "rmdir a sub" },
            Expected()
                .ok(kA, ids::kLogMakeDirectoryOk, "new")
                .fail(kA, ids::kLogMakeDirectoryFailed, "sub", text(ids::kDirectoryExists) + "*")
                .fail(kA, ids::kLogMakeDirectoryFailed, "x/y/z",
                    text(ids::kNoPathToCreateDirectory) + "*")
                .ok(kA, ids::kLogDeletionOk, "old.txt")
                .fail(kA, ids::kLogDeletionFailed, "old.txt", text(ids::kNoSuchFile) + "*")
                .ok(kA, ids::kLogDeletionOk, "sub")
                .fail(
                    kA, ids::kLogDeletionFailed, "sub", text(ids::kNoPathToRemoveDirectory) + "*"),
            [&] { EXPECT_TRUE(QFileInfo(home + "/new").isDir()); } },
        { "rename",
            { "rename a old.txt fresh.txt", "rename a *.txt new.txt", "rename a ghost.txt x.txt",
                "rename a in.txt taken.txt" },
            Expected()
                .ok(kA, ids::kLogRenamingOk, "old.txt -> fresh.txt")
                .fail(
                    kA, ids::kLogRenamingFailed, "*.txt -> new.txt", text(ids::kOnlyOneFileAtATime))
                .fail(kA, ids::kLogRenamingFailed, "ghost.txt -> x.txt",
                    text(ids::kRenameSourceMissing))
                .fail(kA, ids::kLogRenamingFailed, "in.txt -> taken.txt",
                    text(ids::kRenameTargetExists)),
            [&] {
                EXPECT_TRUE(
                    QFileInfo::exists(home + "/fresh.txt") && QFileInfo::exists(home + "/in.txt"));
            } },
        { "close, then the closed connection", { "close a", "close a", "mkdir a late" },
            Expected()
                .closed(kA)
                .fail(kA, ids::kLogSessionEnded, {})
                .fail(kA, ids::kLogMakeDirectoryFailed, "late", kNotConnected),
            [] {}, false },
        { "a connection never opened, and LOCAL, which is no server",
            { "put zz up.txt", "cd zz sub", "close zz", "binary zz", "send a zz in.txt",
                "get LOCAL in.txt", "mkdir LOCAL x" },
            Expected()
                .fail(zz, kFailed, "up.txt", unknown)
                .fail(zz, ids::kLogChangeDirectoryFailed, "sub", unknown)
                .fail(zz, ids::kLogSessionEnded, {}, unknown)
                .error(zz + unknown)
                .fail(zz, kFailed, "in.txt", unknown)
                .fail(kLocal, kFailed, "in.txt", kNotConnected)
                .fail(kLocal, ids::kLogMakeDirectoryFailed, "x", kNotConnected) },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        resetTrees();
        recorder_.clear();
        Expected expected = Expected().opened(kA).then(c.expected);
        if (c.closedAtEnd)
            expected.closed(kA);
        expectRun(run(writeScript(QStringList { open("a", *a_) } + c.body)), expected);
        c.check();
    }
}

TEST_F(ScriptRunTest, OpeningAndTheLinesThatAreNotRun)
{
    RefusingPort refusing;
    SettingsStore::set(settings::ftp::kPort, int(a_->port()));
    const QString port = QString::number(a_->port());
    const QStringList lines = run(writeScript({
        "OPEN srv 127.0.0.1 zelto secret " + port,
        "open srv 127.0.0.1 zelto secret " + QString::number(b_->port()), // the name is taken
        "open five 127.0.0.1 zelto secret",
        "/ nightly run",
        "//comment",
        "# comment",
        "mkdir srv " + QString(9990, u'x'),
        "mkdir srv after",
        "open bad 127.0.0.1 zelto wrong " + port,
        "mkdir bad x",
        "open refused 127.0.0.1 zelto secret " + QString::number(refusing.port()),
        "open byDefault 127.0.0.1 zelto secret 0",
    }));
    expectRun(lines,
        Expected()
            .opened("srv: ")
            .error(text(ids::kBadParameterCount) + " open five 127.0.0.1 zelto *****")
            // The stored text ends in its own blank.
            .error(text(ids::kCannotParseLine) + "# comment")
            .error(text(ids::kCannotParseLine) + "mkdir srv xxx*")
            .ok("srv: ", ids::kLogMakeDirectoryOk, "after")
            .ok("bad: ", ids::kLogInternetConnectionOk)
            .fail("bad: ", ids::kLogFtpConnectionFailed, {}, "*")
            .fail("bad: ", ids::kLogMakeDirectoryFailed, "x", kNotConnected)
            .ok("refused: ", ids::kLogInternetConnectionOk)
            .fail("refused: ", ids::kLogFtpConnectionFailed, {},
                StringTable::errorMessage(12028) + "*")
            .opened("byDefault: ")
            .closed("srv: ")
            .closed("byDefault: "));
    EXPECT_EQ(b_->commandCount("USER"), 0);
    EXPECT_EQ(
        QDir(a_->home()).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList { "after" });
}

TEST_F(ScriptRunTest, BinaryFileIsReportedAndTheRunGoesOn)
{
    const QString path = scripts_.filePath(QStringLiteral("binary.cmd"));
    writeFile(
        path, makeBytes(256 * 1024, 7) + '\n' + open("srv", *a_).toUtf8() + "\nmkdir srv made\n");
    const QStringList lines = run(path);
    EXPECT_TRUE(lines.contains(step("srv: ", ids::kLogMakeDirectoryOk, "made")));
    for (const QString& line : lines) {
        EXPECT_LE(line.size(), ScriptReader::kMaxLineBytes + 100);
        EXPECT_FALSE(line.contains(QChar(0)));
    }
}

// "ascii" and "binary" hold for the later files of their own connection, over the file's
// extension and the TransferType option alike.
TEST_F(ScriptRunTest, AsciiAndBinarySetTheTypeOfTheLaterFilesOfTheirConnection)
{
    const QByteArray mixed = "one\ntwo\r\nthree\n";
    for (const char* name : { "text.dat", "raw.dat", "other.dat" })
        writeFile(local(name), mixed);
    SettingsStore::set(settings::ftp::kTransferType, "BINARY");
    SettingsStore::set(settings::config::kTextExtensions, "dat");

    expectRun(
        run(writeScript({ open("a", *a_), open("b", *b_), "ascii a", "put a text.dat",
            "put b other.dat", "binary a", "put a raw.dat", "ascii a", "send a b text.dat" })),
        Expected()
            .opened(kA)
            .opened("b: ")
            .ok(kA, ids::kAsciiMode)
            .ok(kA, kDone, "text.dat")
            .ok("b: ", kDone, "other.dat")
            .ok(kA, ids::kBinaryMode)
            .ok(kA, kDone, "raw.dat")
            .ok(kA, ids::kAsciiMode)
            .ok("a ===> b ", kDone, "text.dat")
            .closed(kA)
            .closed("b: "));
    // A text put sends CRLF line ends, which the fixture server stores as LF; a binary one is
    // stored as it is.
    const auto stored = [](const QString& path, const QByteArray& bytes) {
        return waitUntil([&] { return contents(path) == bytes; }, 5s);
    };
    EXPECT_TRUE(stored(a_->home() + "/text.dat", "one\ntwo\nthree\n"));
    EXPECT_TRUE(stored(a_->home() + "/raw.dat", mixed));
    EXPECT_TRUE(stored(b_->home() + "/other.dat", mixed)) << "b kept the TransferType option";
    EXPECT_EQ(a_->typeAt("STOR", "text.dat").toStdString(), "A");
    EXPECT_EQ(b_->typeAt("STOR", "other.dat").toStdString(), "I");
    EXPECT_EQ(a_->typeAt("STOR", "raw.dat").toStdString(), "I");
    EXPECT_EQ(a_->typeAt("RETR", "text.dat").toStdString(), "A") << "the copy's source";
    // The copy is stored under its partial name, then renamed.
    EXPECT_EQ(b_->typeAt("STOR", GetPump::partialPath("text.dat")).toStdString(), "A")
        << "the copy's target";
}

TEST_F(ScriptRunTest, SendCopiesEveryMatchByteExact)
{
    const QString from = a_->home();
    const QString to = b_->home();
    ASSERT_TRUE(makeFile(from + "/one.txt", 5000, 1));
    ASSERT_TRUE(makeFile(from + "/two.txt", 300'000, 2));
    ASSERT_TRUE(makeFile(from + "/skip.bin", 10, 3));
    ASSERT_TRUE(makeFile(from + "/sub/three.txt", 0, 4));
    ASSERT_TRUE(makeFile(local("up.txt"), 4096, 5));

    expectRun(run(writeScript({ open("a", *a_), open("b", *b_), "send a b *.txt", "send a b *.txt",
                  "send a b sub/*.txt", "send a b *.none", "send LOCAL b up.txt",
                  "send a LOCAL two.txt", "send LOCAL LOCAL up.txt" })),
        Expected()
            .opened(kA)
            .opened("b: ")
            .ok("a ===> b ", kDone, "one.txt")
            .ok("a ===> b ", kDone, "two.txt")
            .fail("a ===> b ", kFailed, "one.txt", text(ids::kCannotOverwrite))
            .fail("a ===> b ", kFailed, "two.txt", text(ids::kCannotOverwrite))
            .ok("a ===> b ", kDone, "sub/three.txt")
            .fail("a ===> b ", kFailed, "*.none", text(ids::kNoSuchFile))
            .ok("LOCAL ===> b ", kDone, "up.txt")
            .ok("a ===> LOCAL ", kDone, "two.txt")
            .fail("LOCAL ===> LOCAL ", kFailed, "up.txt", StringTable::errorMessage(12015))
            .closed(kA)
            .closed("b: "));
    for (const char* name : { "one.txt", "two.txt" })
        EXPECT_TRUE(sameBytes(from + "/" + name, to + "/" + name)) << name;
    EXPECT_TRUE(sameBytes(from + "/sub/three.txt", to + "/three.txt"));
    EXPECT_TRUE(sameBytes(local("up.txt"), to + "/up.txt"));
    EXPECT_TRUE(sameBytes(from + "/two.txt", local("two.txt")));
    EXPECT_FALSE(QFileInfo::exists(to + "/skip.bin"));

    // Allowed to overwrite, the same send replaces what is there.
    SettingsStore::set(settings::config::kOverwrite, QStringLiteral("YES"));
    ASSERT_TRUE(makeFile(from + "/one.txt", 7000, 9));
    const QStringList again
        = run(writeScript({ open("a", *a_), open("b", *b_), "send a b one.txt" }));
    EXPECT_TRUE(again.contains(step("a ===> b ", kDone, "one.txt")));
    EXPECT_TRUE(sameBytes(from + "/one.txt", to + "/one.txt"));
}

TEST_F(ScriptRunTest, PauseResumeAndStop)
{
    // Paused while a line runs: it ends, and the next one waits for the resume.
    a_->setFaults({ .stall = { { "MKD", 1s } } });
    auto sink = std::make_shared<ScriptProgress>();
    auto script = start(writeScript({ open("a", *a_), "mkdir a one", "mkdir a two" }), sink);
    ASSERT_TRUE(waitUntil([&] { return a_->commandCount("MKD") == 1; }, 20s));
    script->pause();
    EXPECT_EQ(script->state(), ScriptState::Suspended);
    ASSERT_TRUE(waitUntil(
        [&] { return sink->linesFrom(0).contains(step(kA, ids::kLogMakeDirectoryOk, "one")); },
        20s));
    const int foldersAtResume = a_->commandCount("MKD");
    script->resume();
    EXPECT_EQ(script->state(), ScriptState::Running);
    ASSERT_TRUE(script->waitFinished(kRunDeadline));
    EXPECT_EQ(script->state(), ScriptState::Finished);
    EXPECT_TRUE(script->succeeded() && QFileInfo(a_->home() + "/two").isDir());
    EXPECT_EQ(foldersAtResume, 1) << "the second line did not wait for the resume";

    // Stopped inside a put that the server holds: the put ends, no later line runs.
    a_->setFaults({ .stall = { { "STOR", FtpFaults::kForever } } });
    ASSERT_TRUE(makeFile(local("up.txt"), 1000, 1));
    sink = std::make_shared<ScriptProgress>();
    script = start(writeScript({ open("a", *a_), "put a up.txt", "mkdir a late" }), sink);
    ASSERT_TRUE(waitUntil([&] { return a_->commandCount("STOR") == 1; }, 20s));
    script->stop();
    ASSERT_TRUE(script->waitFinished(kRunDeadline));
    EXPECT_FALSE(script->succeeded());
    ASSERT_TRUE(sink->outcome());
    EXPECT_TRUE(sink->outcome()->stopped);
    const Expected put = Expected().opened(kA).fail(kA, kFailed, "up.txt", text(ids::kPutCanceled));
    EXPECT_TRUE(sameLines(sink->linesFrom(0).mid(0, put.lines.size()), put.lines));
    EXPECT_FALSE(QFileInfo::exists(a_->home() + "/late"));

    // Stopped while it waits before its first line: nothing reaches the server.
    a_->setFaults({});
    const int logins = a_->commandCount("USER");
    sink = std::make_shared<ScriptProgress>();
    script = std::make_unique<ScriptRun>(recorder_.services, threads_, sink);
    script->pause();
    script->start(writeScript({ open("a", *a_) }));
    EXPECT_EQ(script->state(), ScriptState::Suspended);
    script->stop();
    ASSERT_TRUE(script->waitFinished(kRunDeadline));
    EXPECT_FALSE(script->succeeded());
    EXPECT_EQ(sink->linesFrom(0), QStringList());
    EXPECT_EQ(a_->commandCount("USER"), logins);
}

} // namespace
} // namespace zelto::test
