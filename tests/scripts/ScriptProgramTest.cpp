// The real program running a script unattended, as cron would: its lines and its exit status.

#include "ProgramRun.h"
#include "ScriptFixture.h"

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
    for (const auto& [line, exitCode, inOut] : cases) {
        const ProgramResult run = runProgram(QStringLiteral(ZELTO_PROGRAM),
            { QStringLiteral("-b"), writeScript({ open("srv", *a_), line }) });
        const QString& out = run.out;
        EXPECT_EQ(run.exitCode, exitCode) << line << "\n" << out.toStdString();
        EXPECT_TRUE(out.contains(inOut)) << out.toStdString();
        EXPECT_TRUE(out.endsWith(step(srv, ids::kLogFtpConnectionClosed) + u'\n'));
        EXPECT_FALSE(out.contains(a_->users().front().password));
    }
}

} // namespace
} // namespace zelto::test
