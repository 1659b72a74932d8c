#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <sys/types.h>

namespace zelto::test {

// Skips the test, saying why, where the server cannot run; fails it instead where the fixtures
// are required, so that a run without the servers cannot pass by skipping them.
#define SKIP_WITHOUT(Server)                                                                       \
    do {                                                                                           \
        if (const auto reason = Server::unavailableReason()) {                                     \
            if (::zelto::test::fixturesRequired())                                                 \
                FAIL() << reason->toStdString();                                                   \
            GTEST_SKIP() << reason->toStdString();                                                 \
        }                                                                                          \
    } while (false)

// True when ZELTO_REQUIRE_FIXTURES=1, as `make test` (and so the CI) sets it.
[[nodiscard]] bool fixturesRequired();

// Throws std::runtime_error: a fixture that cannot start fails its test with this message.
[[noreturn]] void fixtureError(const QString& message);

// A server program that a test runs: started in a process group of its own so that its session
// children end with it, sent SIGTERM when the test process dies, stopped in the destructor. Its
// standard error goes to a file, since a full pipe that nobody reads would block the server.
//
// Started with fork and exec, not QProcess: Qt starts programs with a clone that shares the
// parent's memory, and ThreadSanitizer (GCC 12) then runs its after-fork code on the parent's
// own thread state, so that it no longer sees any lock the test's main thread takes.
class ServerProcess final {
public:
    // Throws std::runtime_error when the program cannot be started.
    ServerProcess(const QString& program, const QStringList& arguments, const QString& errorFile);
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    [[nodiscard]] bool isRunning();
    // The next line the program prints (without its line end), or nothing when none comes in
    // time or the program ends first.
    [[nodiscard]] std::optional<QByteArray> readLine(std::chrono::milliseconds deadline);
    // The exit code of a program that ended within the deadline, nothing otherwise (still
    // running, or ended by a signal).
    [[nodiscard]] std::optional<int> waitForExit(std::chrono::milliseconds deadline);
    // What the program wrote on standard error so far.
    [[nodiscard]] QString errorOutput() const;
    // SIGTERM to the process group, SIGKILL when it has not ended after a short grace time.
    void stop();

private:
    // Collects the program's exit status once it has ended, without waiting.
    [[nodiscard]] bool ended();

    QString errorFile_;
    pid_t pid_ = -1;
    int input_ = -1; // write end of its standard input: the FTP test server ends at end of file
    int output_ = -1; // read end of the program's standard output
    QByteArray unread_; // read from output_, not yet returned as lines
    std::optional<int> status_; // as waitpid gives it, once the program has ended
};

} // namespace zelto::test
