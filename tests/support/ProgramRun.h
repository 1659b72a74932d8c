#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

namespace zelto::test {

struct ProgramResult {
    int exitCode = -1; // -1: it crashed or did not end in time
    QString out;
    QString err;
};

// Runs the real program `program` to its end, as cron would: in this test process's environment
// (so with the settings and data folders its TempSettings chose), without a display, plus the
// variables of `extra` (a DISPLAY among them gives it one).
ProgramResult runProgram(const QString& program, const QStringList& arguments,
    const QProcessEnvironment& extra = {}, const QString& workingFolder = {});

} // namespace zelto::test
