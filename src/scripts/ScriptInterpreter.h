#pragma once

#include "options/TransferSounds.h"
#include "scripts/ScriptConnections.h"
#include "scripts/ScriptTransfers.h"

#include <QString>

#include <stop_token>

namespace zelto {

class PauseGate;
class ScriptReport;
struct JobServices;
struct ScriptLine;

// Runs the lines of one script against its own table of connections. Every step reports a
// progress line and logs its outcome (ScriptReport); a line that fails, for whatever reason, is
// reported and the next one runs. A command that names a connection the script never opened
// fails with "The requested item could not be located.".
class ScriptInterpreter final {
public:
    // The local folder starts as CONFIG\DataDir. Every session of the run gets `stop` and `gate`,
    // so that a stop or a pause also reaches the transfer under way.
    ScriptInterpreter(
        JobServices& services, ScriptReport& report, std::stop_token stop, PauseGate* gate);
    ScriptInterpreter(const ScriptInterpreter&) = delete;
    ScriptInterpreter& operator=(const ScriptInterpreter&) = delete;

    // `cut`: only the beginning of an over-long line was read; it is reported, never run.
    void runLine(const QString& text, bool cut = false);
    // The end of the run: every connection still open is closed, reported and logged.
    void finish();

private:
    void open(const ScriptLine& line);
    void close(const ScriptLine& line);
    void changeFolder(const ScriptLine& line);
    void changeLocalFolder(const ScriptLine& line);
    void makeFolder(const ScriptLine& line);
    void remove(const ScriptLine& line, bool folder);
    void rename(const ScriptLine& line);
    void setType(const ScriptLine& line);
    void transfer(const ScriptLine& line);

    // The connection called `name`; otherwise the failure of the step (`failId`, `object`) is
    // reported and none is returned.
    [[nodiscard]] ScriptConnection* named(const QString& name, int failId, const QString& object);
    // As named(), and the connection must be open.
    [[nodiscard]] ScriptConnection* opened(const QString& name, int failId, const QString& object);

    JobServices& services_;
    ScriptReport& report_;
    std::stop_token stop_;
    PauseGate* gate_;
    ScriptConnections table_;
    TransferSounds sounds_;
    ScriptTransfers transfers_;
    QString localMachine_;
};

} // namespace zelto
