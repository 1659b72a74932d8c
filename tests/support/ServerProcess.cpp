#include "ServerProcess.h"

#include "TestWait.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <poll.h>
#include <signal.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace zelto::test {

namespace {

using namespace std::chrono_literals;

constexpr auto kGrace = 3s;

// The child between fork and exec: async-signal-safe calls only. An exec that fails writes its
// errno to `status`; one that succeeds closes it.
[[noreturn]] void execChild(
    pid_t parent, char* const* argv, int input, int output, int error, int status)
{
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (::getppid() != parent) // the test died before the line above
        ::_exit(127);
    ::dup2(input, STDIN_FILENO);
    ::dup2(output, STDOUT_FILENO);
    ::dup2(error, STDERR_FILENO);
    ::execv(argv[0], argv);
    const int code = errno;
    [[maybe_unused]] const auto written = ::write(status, &code, sizeof code);
    ::_exit(127);
}

void closeAll(std::initializer_list<int> fds)
{
    for (const int fd : fds) {
        if (fd >= 0)
            ::close(fd);
    }
}

} // namespace

bool fixturesRequired()
{
    return qEnvironmentVariableIntValue("ZELTO_REQUIRE_FIXTURES") == 1;
}

void fixtureError(const QString& message)
{
    throw std::runtime_error(message.toStdString());
}

ServerProcess::ServerProcess(
    const QString& program, const QStringList& arguments, const QString& errorFile)
    : errorFile_(errorFile)
{
    // Everything the child needs is made before the fork.
    std::vector<QByteArray> words { QFile::encodeName(program) };
    for (const QString& argument : arguments)
        words.push_back(argument.toLocal8Bit());
    std::vector<char*> argv;
    for (QByteArray& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    const int error = ::open(
        QFile::encodeName(errorFile).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    int input[2] = { -1, -1 };
    int output[2] = { -1, -1 };
    int status[2] = { -1, -1 };
    const pid_t parent = ::getpid();
    if (error >= 0 && ::pipe2(input, O_CLOEXEC) == 0 && ::pipe2(output, O_CLOEXEC) == 0
        && ::pipe2(status, O_CLOEXEC) == 0)
        pid_ = ::fork();
    if (pid_ == 0)
        execChild(parent, argv.data(), input[0], output[1], error, status[1]);
    const int forkError = errno;
    closeAll({ error, input[0], output[1], status[1] });
    input_ = input[1];
    output_ = output[0];
    if (pid_ < 0) {
        closeAll({ input_, output_, status[0] });
        fixtureError(QStringLiteral("cannot start %1: %2").arg(program, strerror(forkError)));
    }
    int execError = 0;
    ssize_t got = 0;
    do
        got = ::read(status[0], &execError, sizeof execError);
    while (got < 0 && errno == EINTR);
    ::close(status[0]);
    if (got > 0) {
        (void)waitForExit(kGrace);
        closeAll({ input_, output_ });
        fixtureError(QStringLiteral("cannot start %1: %2").arg(program, strerror(execError)));
    }
}

ServerProcess::~ServerProcess()
{
    stop();
    closeAll({ input_, output_ });
}

bool ServerProcess::ended()
{
    int status = 0;
    if (!status_ && ::waitpid(pid_, &status, WNOHANG) == pid_)
        status_ = status;
    return status_.has_value();
}

bool ServerProcess::isRunning()
{
    return !ended();
}

std::optional<QByteArray> ServerProcess::readLine(std::chrono::milliseconds deadline)
{
    using namespace std::chrono;
    const auto end = steady_clock::now() + deadline;
    for (;;) {
        const auto at = unread_.indexOf('\n');
        if (at >= 0) {
            const QByteArray line = unread_.left(at).trimmed();
            unread_.remove(0, at + 1);
            return line;
        }
        const auto left = duration_cast<milliseconds>(end - steady_clock::now());
        if (left <= 0ms)
            return std::nullopt;
        pollfd ready { output_, POLLIN, 0 };
        const int polled = ::poll(&ready, 1, int(left.count()));
        if (polled < 0 && errno == EINTR)
            continue;
        if (polled <= 0)
            return std::nullopt;
        char buffer[4096];
        const ssize_t got = ::read(output_, buffer, sizeof buffer);
        if (got <= 0) // the program closed its output: it ended
            return std::nullopt;
        unread_.append(buffer, got);
    }
}

std::optional<int> ServerProcess::waitForExit(std::chrono::milliseconds deadline)
{
    if (!waitUntil([this] { return ended(); }, deadline) || !WIFEXITED(*status_))
        return std::nullopt;
    return WEXITSTATUS(*status_);
}

QString ServerProcess::errorOutput() const
{
    QFile file(errorFile_);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLocal8Bit(file.readAll()).trimmed();
}

void ServerProcess::stop()
{
    if (ended())
        return;
    ::kill(-pid_, SIGTERM);
    if (waitUntil([this] { return ended(); }, kGrace))
        return;
    ::kill(-pid_, SIGKILL);
    (void)waitUntil([this] { return ended(); }, kGrace);
}

} // namespace zelto::test
