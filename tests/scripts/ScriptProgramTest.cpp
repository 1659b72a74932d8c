// The real program running a script unattended, as cron would: its lines and its exit status.

#include "ProgramRun.h"
#include "ScriptFixture.h"

namespace zelto::test {
namespace {

using ScriptProgramTest = ScriptFixture;

TEST_F(ScriptProgramTest, ExitStatusTellsWhetherEveryLineSucceeded)
{
    const QString srv = QStringLiteral("srv: ");
    const struct {
        const char* line;
        int exitCode;
        QString inOut;
    } cases[] = {
        { "mkdir srv made", 0, step(srv, ids::kLogMakeDirectoryOk, "made") },
        { "remove srv missing.txt", 1,
            step(srv, ids::kLogDeletionFailed, "missing.txt") + " - "
                + StringTable::text(ids::kNoSuchFile) },
    };
    for (const auto& c : cases) {
        const ProgramResult run = runProgram(QStringLiteral(ZELTO_PROGRAM),
            { QStringLiteral("-b"), writeScript({ open("srv", *a_), c.line }) });
        const QString& out = run.out;
        EXPECT_EQ(run.exitCode, c.exitCode) << c.line << "\n" << out.toStdString();
        EXPECT_TRUE(out.contains(c.inOut)) << out.toStdString();
        EXPECT_TRUE(out.endsWith(step(srv, ids::kLogFtpConnectionClosed) + u'\n'));
        EXPECT_FALSE(out.contains(a_->users().front().password));
    }
}

} // namespace
} // namespace zelto::test
