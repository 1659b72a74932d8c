#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace zelto::test {

// Skips the test, saying why, where the server cannot run.
#define SKIP_WITHOUT(Server)                                                                       \
    do {                                                                                           \
        if (const auto reason = Server::unavailableReason())                                       \
            GTEST_SKIP() << reason->toStdString();                                                 \
    } while (false)

// Throws std::runtime_error: a fixture that cannot start fails its test with this message.
[[noreturn]] void fixtureError(const QString& message);

// A server program that a test runs: started in a process group of its own so that its session
// children end with it, sent SIGTERM when the test process dies, stopped in the destructor. Its
// standard error goes to a file, since a full pipe that nobody reads would block the server.
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
    // What the program wrote on standard error so far.
    [[nodiscard]] QString errorOutput() const;
    // SIGTERM to the process group, SIGKILL when it has not ended after a short grace time.
    void stop();

private:
    QProcess process_;
    QString errorFile_;
};

} // namespace zelto::test
