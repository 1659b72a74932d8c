#include "ProgramRun.h"

#include <QProcess>

#include <csignal>
#include <sys/resource.h>

namespace zelto::test {

ProgramResult runProgram(const QString& program, const QStringList& arguments,
    const QProcessEnvironment& extra, const QString& workingFolder,
    std::optional<qint64> fileSizeLimit)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.insert(extra);
    QProcess process;
    process.setProcessEnvironment(env);
    if (!workingFolder.isEmpty())
        process.setWorkingDirectory(workingFolder);
    if (fileSizeLimit) {
        process.setChildProcessModifier([limit = rlim_t(*fileSizeLimit)] {
            // A write past the limit fails with EFBIG instead of ending the program.
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limited { limit, limit };
            ::setrlimit(RLIMIT_FSIZE, &limited);
        });
    }
    process.start(program, arguments);
    ProgramResult result;
    if (!process.waitForFinished(60'000)) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    result.err = QString::fromLocal8Bit(process.readAllStandardError());
    return result;
}

} // namespace zelto::test
