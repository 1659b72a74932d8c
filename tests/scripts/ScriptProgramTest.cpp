// The real program running a script unattended, as cron would: its lines and its exit status.

#include "ScriptFixture.h"

#include <QProcess>

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
        // Its settings and data are this test's, and it has no display.
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("DISPLAY"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        QProcess program;
        program.setProcessEnvironment(env);
        program.start(QStringLiteral(ZELTO_PROGRAM),
            { QStringLiteral("-b"), writeScript({ open("srv", *a_), c.line }) });
        ASSERT_TRUE(program.waitForFinished(60'000)) << c.line;
        const QString out = QString::fromLocal8Bit(program.readAllStandardOutput());
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), c.exitCode) << c.line << "\n" << out.toStdString();
        EXPECT_TRUE(out.contains(c.inOut)) << out.toStdString();
        EXPECT_TRUE(out.endsWith(step(srv, ids::kLogFtpConnectionClosed) + u'\n'));
        EXPECT_FALSE(out.contains(a_->users().front().password));
    }
}

} // namespace
} // namespace zelto::test
