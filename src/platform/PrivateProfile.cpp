#include "platform/PrivateProfile.h"

#include "platform/FileLock.h"
#include "platform/IniDocument.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <limits>
#include <map>
#include <mutex>
#include <optional>

namespace zelto {

namespace {

// Buffers count characters; a character outside the Basic Multilingual Plane is one character and
// is never split in two.
qsizetype characterCount(const QString& text)
{
    qsizetype count = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!(text[i].isLowSurrogate() && i > 0 && text[i - 1].isHighSurrogate()))
            ++count;
    }
    return count;
}

QString leftCharacters(const QString& text, qsizetype count)
{
    qsizetype end = 0;
    for (qsizetype taken = 0; taken < count && end < text.size(); ++taken) {
        const bool pair = text[end].isHighSurrogate() && end + 1 < text.size()
            && text[end + 1].isLowSurrogate();
        end += pair ? 2 : 1;
    }
    return text.first(end);
}

// Nothing when the file exists but cannot be read: a write must not replace it by what little we
// know. A missing file is an empty document.
std::optional<IniDocument> load(const QString& file)
{
    QFile in(file);
    if (!in.exists())
        return IniDocument();
    if (!in.open(QIODevice::ReadOnly))
        return std::nullopt;
    QByteArray bytes = in.readAll();
    if (in.error() != QFileDevice::NoError)
        return std::nullopt;
    return IniDocument(std::move(bytes));
}

thread_local QString writeFailure;

bool failWrite(const QString& why)
{
    writeFailure = why;
    return false;
}

bool writeDocument(const QString& file, const IniDocument& document)
{
    const bool isNew = !QFileInfo::exists(file);
    QSaveFile out(file);
    const auto failed = [&] {
        return failWrite(QStringLiteral("Could not write %1: %2").arg(file, out.errorString()));
    };
    // Unbuffered, so that a short write (a full disk) shows in write()'s count: a buffered one is
    // lost in the flush, and commit() would put the cut file in place of the old one.
    if (!out.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return failed();
    // A rewrite keeps the old file's permissions; a new file may hold passwords.
    if (isNew && !out.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return failed();
    if (!document.writeTo(out)) {
        const bool result = failed();
        out.cancelWriting();
        return result;
    }
    return out.commit() || failed();
}

// One name for every path of a file, existing or not yet, so that each file has one lock.
QString lockName(const QString& file)
{
    const QFileInfo info(file);
    const QString canonical = info.canonicalFilePath();
    if (!canonical.isEmpty())
        return canonical;
    const QString folder = info.absoluteDir().canonicalPath();
    return folder.isEmpty() ? info.absoluteFilePath() : folder + u'/' + info.fileName();
}

// The locks live as long as the process: one small entry per file it ever wrote.
std::mutex& fileLock(const QString& file)
{
    static std::mutex registryLock;
    static std::map<QString, std::mutex> locks;
    const QString name = lockName(file);
    const std::lock_guard guard(registryLock);
    return locks[name];
}

} // namespace

IniDocument PrivateProfile::read(const QString& file)
{
    std::optional<IniDocument> document = load(file);
    return document ? std::move(*document) : IniDocument();
}

QString PrivateProfile::getString(const QString& file, const QString& section, const QString& key,
    const QString& fallback, int bufferSize)
{
    return cutToBuffer(read(file).value(section, key).value_or(fallback), bufferSize);
}

int PrivateProfile::getInt(
    const QString& file, const QString& section, const QString& key, int fallback)
{
    return toInt(read(file).value(section, key), fallback);
}

QString PrivateProfile::cutToBuffer(const QString& value, int bufferSize)
{
    return leftCharacters(value, std::max(bufferSize - 1, 0));
}

int PrivateProfile::toInt(const std::optional<QString>& value, int fallback)
{
    if (!value || value->isEmpty())
        return fallback;
    return int(std::clamp<qint64>(
        leadingNumber(*value), std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

qint64 PrivateProfile::leadingNumber(QStringView text)
{
    qsizetype i = 0;
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+'))
        ++i;
    constexpr qint64 limit = std::numeric_limits<qint64>::max();
    qint64 number = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        const int digit = text[i].unicode() - u'0';
        number = number > (limit - digit) / 10 ? limit : number * 10 + digit;
    }
    return negative ? -number : number;
}

bool PrivateProfile::writeString(
    const QString& file, const QString& section, const QString& key, const QString& value)
{
    return update(file, [&](IniDocument& document) {
        document.setValue(section, key, value);
        return true;
    });
}

bool PrivateProfile::deleteKey(const QString& file, const QString& section, const QString& key)
{
    return update(file, [&](IniDocument& document) { return document.removeKey(section, key); });
}

QStringList PrivateProfile::getSection(const QString& file, const QString& section, int bufferSize)
{
    return cutSection(read(file).sectionLines(section), bufferSize);
}

// The platform's section read lays the lines out as "line\0line\0...\0\0". When that does not fit,
// it fills bufferSize - 2 characters (the terminators between lines included) and ends with two
// terminators: the lines that fit stay whole, the line at the cut keeps what fits of it, the rest
// is dropped.
QStringList PrivateProfile::cutSection(const QStringList& lines, int bufferSize)
{
    qsizetype needed = 1;
    for (const QString& line : lines)
        needed += characterCount(line) + 1;
    if (needed <= bufferSize)
        return lines;
    QStringList fitting;
    qsizetype room = qsizetype(bufferSize) - 2;
    for (const QString& line : lines) {
        if (room <= 0)
            break;
        const qsizetype length = characterCount(line);
        if (length >= room) {
            fitting.append(leftCharacters(line, room));
            break;
        }
        fitting.append(line);
        room -= length + 1;
    }
    return fitting;
}

bool PrivateProfile::writeSection(
    const QString& file, const QString& section, const QStringList& lines)
{
    return update(file, [&](IniDocument& document) {
        document.replaceSection(section, lines);
        return true;
    });
}

bool PrivateProfile::deleteSection(const QString& file, const QString& section)
{
    return update(file, [&](IniDocument& document) { return document.removeSection(section); });
}

bool PrivateProfile::update(const QString& file, const std::function<bool(IniDocument&)>& change)
{
    writeFailure.clear();
    const std::lock_guard guard(fileLock(file));
    // Other processes (a cron run beside the windowed program) write the same files: the lock
    // they honour is held from the read to the rename.
    const FileLock processes(file);
    if (!processes.held())
        return failWrite(processes.failure());
    std::optional<IniDocument> document = load(file);
    if (!document)
        return failWrite(QStringLiteral("Could not read %1").arg(file));
    if (!change(*document))
        return true;
    return writeDocument(file, *document);
}

QString PrivateProfile::lastWriteFailure()
{
    return writeFailure;
}

} // namespace zelto
