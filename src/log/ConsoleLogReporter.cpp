#include "ConsoleLogReporter.h"

#include "log/LogRecord.h"
#include "platform/StringTable.h"

#include <QStringList>

namespace zelto {

ConsoleLogReporter::ConsoleLogReporter(std::FILE* out) : out_(out)
{
}

void ConsoleLogReporter::recordAdded(const LogRecord& record, bool visible)
{
    // The console is a view like the log window: it honours the user's filter.
    if (!visible)
        return;
    QStringList parts { record.time, StringTable::text(static_cast<int>(record.messageId)) };
    for (const QString& text : { record.field1, record.field2, record.field3, record.detail }) {
        if (!text.isEmpty())
            parts.append(text);
    }
    QString line = parts.join(QStringLiteral("  "));
    line.replace(u'\n', u' ');
    line.replace(u'\r', u' ');
    const QByteArray bytes = line.toLocal8Bit() + '\n';
    const std::lock_guard guard(mutex_);
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), out_);
    std::fflush(out_);
}

} // namespace zelto
