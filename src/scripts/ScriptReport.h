#pragma once

#include "log/LogSink.h"

#include <QString>

namespace zelto {

class ScriptProgressSink;

// What the steps of a script report: a progress line per outcome, and the log record of the
// same event id. A success is one line, the subject and the event's text, followed by what was
// acted on in brackets:
//
//     srv: Make Directory OK (incoming)
//     a ===> b FTP Transfer Complete (report.txt)
//
// A failure is an error block: "========", "ERROR!", the failure's line with " - " and the
// reason after it, "========" and an empty line.
class ScriptReport final {
public:
    // Whether the session already logged the event (the connect logs its own steps).
    enum class Log { Write, AlreadyWritten };

    ScriptReport(ScriptProgressSink& sink, LogSink& log);

    // The subject of a step on one connection: "name: ".
    [[nodiscard]] static QString subject(const QString& name);
    // The subject of a copy between two: "from ===> to ".
    [[nodiscard]] static QString copySubject(const QString& from, const QString& to);
    // A log record with the caller's three fields.
    [[nodiscard]] static LogEvent fields(
        const QString& field1, const QString& field2 = {}, const QString& field3 = {});

    // `record` carries the caller's three log fields; its id and detail are set here.
    void succeeded(const QString& subject, int eventId, const QString& object = {},
        LogEvent record = {}, Log log = Log::Write);
    // `eventId` 0: the failure has no event of its own, the line is the reason alone.
    void failed(const QString& subject, int eventId, const QString& object, const QString& reason,
        LogEvent record = {}, Log log = Log::Write);
    // An error block with `text` alone.
    void error(const QString& text);
    void malformed(const QString& shownLine);
    void unparsable(const QString& shownLine);

    [[nodiscard]] int successes() const { return successes_; }
    [[nodiscard]] int failures() const { return failures_; }

private:
    [[nodiscard]] static QString stepLine(
        const QString& subject, int eventId, const QString& object);
    void write(int eventId, LogEvent record, const QString& detail);

    ScriptProgressSink& sink_;
    LogSink& log_;
    int successes_ = 0;
    int failures_ = 0;
};

} // namespace zelto
