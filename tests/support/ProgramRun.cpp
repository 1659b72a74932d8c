#include "ProgramRun.h"

#include <QProcess>

namespace zelto::test {

ProgramResult runProgram(const QString& program, const QStringList& arguments,
    const QProcessEnvironment& extra, const QString& workingFolder)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    env.insert(extra);
    QProcess process;
    process.setProcessEnvironment(env);
    if (!workingFolder.isEmpty())
        process.setWorkingDirectory(workingFolder);
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
