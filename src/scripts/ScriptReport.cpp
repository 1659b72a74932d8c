#include "ScriptReport.h"

#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scripts/ScriptProgressSink.h"

namespace zelto {
namespace {

const QString kRule = QStringLiteral("========");

// The stored text of ids::kCannotParseLine ends in a blank of its own; a second one would show as
// two.
QString followedByLine(int textId, const QString& line)
{
    QString text = StringTable::text(textId);
    if (!text.endsWith(u' '))
        text += u' ';
    return text + line;
}

} // namespace

ScriptReport::ScriptReport(ScriptProgressSink& sink, LogSink& log) : sink_(sink), log_(log)
{
}

QString ScriptReport::subject(const QString& name)
{
    return name + QStringLiteral(": ");
}

QString ScriptReport::copySubject(const QString& from, const QString& to)
{
    return from + QStringLiteral(" ===> ") + to + u' ';
}

LogEvent ScriptReport::fields(const QString& field1, const QString& field2, const QString& field3)
{
    LogEvent record;
    record.field1 = field1;
    record.field2 = field2;
    record.field3 = field3;
    return record;
}

void ScriptReport::succeeded(
    const QString& subject, int eventId, const QString& object, LogEvent record, Log log)
{
    ++successes_;
    sink_.addLine(stepLine(subject, eventId, object));
    if (log == Log::Write)
        write(eventId, std::move(record), {});
}

void ScriptReport::failed(const QString& subject, int eventId, const QString& object,
    const QString& reason, LogEvent record, Log log)
{
    QString text = eventId ? stepLine(subject, eventId, object) : subject;
    if (!reason.isEmpty())
        text += (eventId ? QStringLiteral(" - ") : QString()) + reason;
    error(text);
    if (log == Log::Write)
        write(eventId, std::move(record), reason);
}

void ScriptReport::error(const QString& text)
{
    ++failures_;
    sink_.addLine(kRule);
    sink_.addLine(StringTable::text(ids::kScriptError));
    sink_.addLine(text);
    sink_.addLine(kRule);
    sink_.addLine(QString());
}

void ScriptReport::malformed(const QString& shownLine)
{
    error(followedByLine(ids::kBadParameterCount, shownLine));
}

void ScriptReport::unparsable(const QString& shownLine)
{
    error(followedByLine(ids::kCannotParseLine, shownLine));
}

QString ScriptReport::stepLine(const QString& subject, int eventId, const QString& object)
{
    QString line = subject + StringTable::text(eventId);
    if (!object.isEmpty())
        line += QStringLiteral(" (") + object + u')';
    return line;
}

void ScriptReport::write(int eventId, LogEvent record, const QString& detail)
{
    if (eventId == 0)
        return;
    record.messageId = eventId;
    record.detail = detail;
    log_.write(record);
}

} // namespace zelto
