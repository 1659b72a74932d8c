#pragma once

#include "log/LogRecord.h"

#include <QList>
#include <QString>

namespace zelto {

// The log file: the header line "FTP_SERVER_FILE", then one line per record, seven fields
// separated by tabs (id, time, date, field 1-3, detail), UTF-8, ended by a line feed alone.
class LogFile final {
public:
    LogFile() = delete;

    enum class Result {
        Written,
        BadHeader, // an existing file that is no log file: the writer stops logging to files
        Failed, // the file could not be created, opened or written; nothing else happens
    };

    // Appends the record's line; a missing file is created with its header first. `startFresh`
    // (the first record of a run that does not append) empties an existing log file down to its
    // header before the line is written. Only the first bytes of an existing file are read.
    [[nodiscard]] static Result append(
        const QString& path, const LogRecord& record, bool startFresh);

    // Reads a log file back: the first line is skipped unchecked, as is a last line without its
    // line feed; pieces are split at tabs, a run of tabs counting as one, so an empty field
    // shifts the fields after it. A line with fewer than six tabs or without a numeric id is
    // skipped. Records are numbered in reading order, their outcome recomputed from the id.
    [[nodiscard]] static QList<LogRecord> readRecords(const QString& path);

    // Writes a whole log file, the header and then one line per record, in place of any file at
    // `path`. The old file stays as it was when the new one cannot be written whole.
    [[nodiscard]] static bool save(const QString& path, const QList<LogRecord>& records);

    // Where the log writer writes: the folder of LOG\DefaultDir (the application data folder
    // when empty) joined with the name in CONFIG\FileName.
    [[nodiscard]] static QString configuredPath();
};

} // namespace zelto
