// Telling whether the process that marked something still runs.

#include "platform/ProcessMark.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace zelto {
namespace {

TEST(ProcessMarkTest, OnlyTheMarkingProcessItselfRuns)
{
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::pause();
        ::_exit(0);
    }
    const QString childMark = ProcessMark::of(child);
    ::kill(child, SIGKILL);
    // Ended but not yet collected: it runs no more all the same.
    siginfo_t ended {};
    ASSERT_EQ(::waitid(P_PID, id_t(child), &ended, WEXITED | WNOWAIT), 0);
    const QString zombie = ProcessMark::of(child);
    ::waitpid(child, nullptr, 0);

    const QString self = ProcessMark::current();
    const qint64 pid = ::getpid();
    const std::pair<QString, bool> cases[] = {
        { self, true },
        { childMark, false },
        // The id given again to a later process: another start time.
        { QStringLiteral("%1 %2").arg(pid).arg(self.section(u' ', 1).toLongLong() + 1), false },
        // Nothing shows that such a mark was abandoned.
        { QStringLiteral("not a mark"), true },
        { QStringLiteral("0 0"), true },
    };
    for (const auto& [mark, running] : cases)
        EXPECT_EQ(ProcessMark::running(mark), running) << mark.toStdString();
    EXPECT_FALSE(childMark.isEmpty());
    EXPECT_TRUE(zombie.isEmpty());
    EXPECT_TRUE(self.startsWith(QString::number(pid) + u' '));
}

} // namespace
} // namespace zelto
