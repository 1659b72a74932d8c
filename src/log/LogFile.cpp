#include "LogFile.h"

#include "platform/Paths.h"
#include "platform/ServerFileHeader.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace zelto {
namespace {

constexpr qsizetype kHeaderSize = sizeof(kServerFileHeader) - 1;
constexpr int kTabsPerLine = 6;

QByteArray headerLine()
{
    return QByteArray(kServerFileHeader) + '\n';
}

QByteArray recordLine(const LogRecord& record)
{
    QByteArray line = QByteArray::number(record.messageId);
    for (const QString* text : { &record.time, &record.date, &record.field1, &record.field2,
             &record.field3, &record.detail })
        line += '\t' + text->toUtf8();
    return line + '\n';
}

enum class Header { Present, Wrong, Unreadable };

// Only the header's bytes are read: a log file may be large.
Header readHeader(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Header::Unreadable;
    return file.read(kHeaderSize) == kServerFileHeader ? Header::Present : Header::Wrong;
}

LogFile::Result writeBytes(QFile& file, QIODevice::OpenMode mode, const QByteArray& bytes)
{
    if (!file.open(mode) || file.write(bytes) != bytes.size() || !file.flush())
        return LogFile::Result::Failed;
    return LogFile::Result::Written;
}

} // namespace

LogFile::Result LogFile::append(const QString& path, const LogRecord& record, bool startFresh)
{
    QFile file(path);
    const QFileInfo info(path);
    const bool isFile = info.isFile(); // one look at the path, which also tells whether it exists
    if (!info.exists())
        return writeBytes(
            file, QIODevice::WriteOnly | QIODevice::NewOnly, headerLine() + recordLine(record));
    // A folder, a pipe or a device is no log file; opening a pipe could wait forever.
    if (!isFile)
        return Result::Failed;
    // One open per record: the header is checked and the line appended through the same handle.
    // Appending, each line lands whole at the end even when another process writes too.
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::ExistingOnly
            | QIODevice::Unbuffered)) {
        // A file we may not write is still told apart from one that is no log file.
        return readHeader(path) == Header::Wrong ? Result::BadHeader : Result::Failed;
    }
    if (!file.seek(0))
        return Result::Failed;
    if (file.read(kHeaderSize) != kServerFileHeader)
        return Result::BadHeader;
    QByteArray bytes = recordLine(record);
    if (startFresh) {
        if (!file.resize(0))
            return Result::Failed;
        bytes.prepend(headerLine());
    }
    return file.write(bytes) == bytes.size() ? Result::Written : Result::Failed;
}

QList<LogRecord> LogFile::readRecords(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    QList<QByteArray> lines = file.readAll().split('\n');
    // The piece after the last line feed is an unfinished line (or nothing): never a record.
    lines.removeLast();
    QList<LogRecord> records;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QByteArray& line = lines[i];
        if (line.count('\t') < kTabsPerLine)
            continue;
        const QStringList pieces = QString::fromUtf8(line).split(u'\t', Qt::SkipEmptyParts);
        bool isNumber = false;
        const int id = pieces.value(0).toInt(&isNumber);
        if (!isNumber || id < 0)
            continue;
        LogRecord record;
        record.setMessage(id);
        record.seq = static_cast<quint32>(records.size() + 1);
        record.time = pieces.value(1);
        record.date = pieces.value(2);
        record.field1 = pieces.value(3);
        record.field2 = pieces.value(4);
        record.field3 = pieces.value(5);
        record.detail = pieces.value(6);
        records.append(record);
    }
    return records;
}

bool LogFile::save(const QString& path, const QList<LogRecord>& records)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray bytes = headerLine();
    for (const LogRecord& record : records)
        bytes += recordLine(record);
    return file.write(bytes) == bytes.size() && file.commit();
}

QString LogFile::configuredPath()
{
    QString folder = SettingsStore::get(settings::log::kDefaultDir);
    if (folder.isEmpty())
        folder = DataFolders::appDataFolder();
    return joinPath(folder, SettingsStore::get(settings::config::kLogFileNameForWriter));
}

} // namespace zelto
