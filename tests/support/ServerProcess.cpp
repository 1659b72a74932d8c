#include "ServerProcess.h"

#include <QDeadlineTimer>
#include <QFile>

#include <signal.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <unistd.h>

namespace zelto::test {

namespace {

constexpr int kGraceMs = 3000;

} // namespace

void fixtureError(const QString& message)
{
    throw std::runtime_error(message.toStdString());
}

ServerProcess::ServerProcess(
    const QString& program, const QStringList& arguments, const QString& errorFile)
    : errorFile_(errorFile)
{
    process_.setProgram(program);
    process_.setArguments(arguments);
    process_.setStandardErrorFile(errorFile);
    process_.setChildProcessModifier([] {
        ::setpgid(0, 0);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    });
    process_.start();
    if (!process_.waitForStarted(kGraceMs))
        fixtureError(QStringLiteral("cannot start %1: %2").arg(program, process_.errorString()));
}

ServerProcess::~ServerProcess()
{
    stop();
}

bool ServerProcess::isRunning()
{
    return process_.state() != QProcess::NotRunning && !process_.waitForFinished(0);
}

std::optional<QByteArray> ServerProcess::readLine(std::chrono::milliseconds deadline)
{
    const QDeadlineTimer timer(deadline);
    while (!process_.canReadLine()) {
        if (timer.hasExpired() || !process_.waitForReadyRead(int(timer.remainingTime())))
            return std::nullopt;
    }
    return process_.readLine().trimmed();
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
    if (process_.state() == QProcess::NotRunning)
        return;
    const auto group = -pid_t(process_.processId());
    ::kill(group, SIGTERM);
    if (process_.waitForFinished(kGraceMs))
        return;
    ::kill(group, SIGKILL);
    process_.waitForFinished(kGraceMs);
}

} // namespace zelto::test
