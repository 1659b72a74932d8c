// The real program running a script unattended, as cron would (its lines and its exit status),
// and on a desktop, where its lines go to its progress window and the status is the same.

#include "ProgramRun.h"
#include "ScriptFixture.h"

#include <QDir>

namespace zelto::test {
namespace {

using ScriptProgramTest = ScriptFixture;

TEST_F(ScriptProgramTest, ExitStatusTellsWhetherEveryLineSucceeded)
{
    const QString srv = QStringLiteral("srv: ");
    // The line after the open, the exit status, a line of the output.
    const std::tuple<const char*, int, QString> cases[] = {
        { "mkdir srv made", 0, step(srv, ids::kLogMakeDirectoryOk, "made") },
        { "remove srv missing.txt", 1,
            step(srv, ids::kLogDeletionFailed, "missing.txt") + " - "
                + StringTable::text(ids::kNoSuchFile) },
    };
    QProcessEnvironment desktop;
    desktop.insert(QStringLiteral("DISPLAY"), QStringLiteral(":97"));
    desktop.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    for (const auto& [line, exitCode, inOut] : cases) {
        const QStringList arguments { QStringLiteral("-b"),
            writeScript({ open("srv", *a_), line }) };
        const ProgramResult run = runProgram(QStringLiteral(ZELTO_PROGRAM), arguments);
        const QString& out = run.out;
        EXPECT_EQ(run.exitCode, exitCode) << line << "\n" << out.toStdString();
        EXPECT_TRUE(out.contains(inOut)) << out.toStdString();
        EXPECT_TRUE(out.endsWith(step(srv, ids::kLogFtpConnectionClosed) + u'\n'));
        EXPECT_FALSE(out.contains(a_->users().front().password));

        QDir(a_->home() + QStringLiteral("/made")).removeRecursively(); // made again
        const ProgramResult shown = runProgram(QStringLiteral(ZELTO_PROGRAM), arguments, desktop);
        EXPECT_EQ(shown.exitCode, exitCode) << line << " on a desktop\n" << shown.err.toStdString();
        EXPECT_FALSE(shown.out.contains(inOut)) << "the lines are the window's";
    }
}

} // namespace
} // namespace zelto::test
