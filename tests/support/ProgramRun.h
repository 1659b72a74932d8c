#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <optional>

namespace zelto::test {

struct ProgramResult {
    int exitCode = -1; // -1: it crashed or did not end in time
    QString out;
    QString err;
};

// Runs the real program `program` to its end, as cron would: in this test process's environment
// (so with the settings and data folders its TempSettings chose), without a display, plus the
// variables of `extra` (a DISPLAY among them gives it one). With `fileSizeLimit` no file of the
// program may grow beyond so many bytes: its writes past that fail as on a full disk.
ProgramResult runProgram(const QString& program, const QStringList& arguments,
    const QProcessEnvironment& extra = {}, const QString& workingFolder = {},
    std::optional<qint64> fileSizeLimit = {});

} // namespace zelto::test
