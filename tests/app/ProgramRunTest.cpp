#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace zelto {
namespace {

struct ProgramResult {
    int exitCode = -1;
    QString out;
    QString err;
};

// Runs the real program, its settings and data in `home`, with `display` as its only display (none
// when empty).
ProgramResult runProgram(const QString& home, const QStringList& arguments, const QString& display)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("DISPLAY"));
    env.remove(QStringLiteral("WAYLAND_DISPLAY"));
    if (!display.isEmpty())
        env.insert(QStringLiteral("DISPLAY"), display);
    env.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QStringLiteral("/config"));
    env.insert(QStringLiteral("XDG_DATA_HOME"), home + QStringLiteral("/data"));
    QProcess process;
    process.setProcessEnvironment(env);
    process.setWorkingDirectory(home);
    process.start(QStringLiteral(ZELTO_PROGRAM), arguments);
    ProgramResult run;
    if (!process.waitForFinished(30'000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

TEST(ProgramRun, HeadlessStarts)
{
    QTemporaryDir home;
    const QString h = home.path();
    const QString linkMissing = StringTable::text(ids::kLinkNotFound);

    struct Case {
        const char* what;
        QStringList arguments;
        int exitCode;
        QString inOut;
        QString inErr;
        QString display = {};
    };
    const Case cases[] = {
        { "version", { "--version" }, 0, QStringLiteral("Zelto 2.05"), {} },
        { "help wins over work", { "-l", "nightly", "--help" }, 0, QStringLiteral("-b FILE.cmd"),
            {} },
        { "nothing asked", {}, 0, h + QStringLiteral("/config/Pellmoor/Zelto.conf"), {} },
        { "missing link", { "-l", "nightly" }, 2, {}, linkMissing },
        // A display that does not answer would abort a windowed start.
        { "headless flag with display", { "--headless", "-l", "nightly" }, 2, {}, linkMissing,
            ":97" },
    };
    for (const Case& c : cases) {
        const ProgramResult run = runProgram(h, c.arguments, c.display);
        EXPECT_EQ(run.exitCode, c.exitCode) << c.what << "\n" << run.err.toStdString();
        EXPECT_TRUE(run.out.contains(c.inOut)) << c.what << ": " << run.out.toStdString();
        EXPECT_TRUE(run.err.contains(c.inErr)) << c.what << ": " << run.err.toStdString();
    }
}

} // namespace
} // namespace zelto
