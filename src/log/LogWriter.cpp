#include "LogWriter.h"

#include "log/LogFile.h"
#include "log/LogListener.h"
#include "log/LogStamp.h"
#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <QDateTime>

#include <algorithm>

namespace zelto {
namespace {

using BoundedLock = std::unique_lock<std::timed_mutex>;

bool isYes(const settings::TextKey& key)
{
    return SettingsStore::get(key) == QLatin1StringView(settings::kYes);
}

LogFilter filterFromSettings()
{
    const QString view = SettingsStore::get(settings::log::kView);
    if (view == QLatin1StringView(settings::log::kViewAll))
        return LogFilter::All;
    if (view == QLatin1StringView(settings::log::kViewSuccess))
        return LogFilter::Successful;
    return LogFilter::Unsuccessful;
}

// A record is one line of tab-separated columns: a name from a hostile listing or a server's reply
// must not add a column or a line.
QString oneField(QString text)
{
    for (QChar& c : text) {
        if (c == u'\n' || c == u'\r' || c == u'\t')
            c = u' ';
    }
    return text;
}

} // namespace

LogWriter::LogWriter(Notifier& notifier, LogListener* listener) : notifier_(notifier)
{
    if (listener)
        addListener(listener);
    reloadSettings();
}

void LogWriter::reloadSettings()
{
    {
        // Past the wait the settings are taken anyway, as a write would be.
        const BoundedLock lock(mutex_, kLockWait);
        showOnScreen_ = isYes(settings::log::kToScreen);
        writeToFile_ = isYes(settings::log::kToFile);
        filter_ = filterFromSettings();
        timeFormat_ = SettingsStore::get(settings::log::kTimeFormat);
        dateFormat_ = SettingsStore::get(settings::log::kDateFormat);
        const QString path = LogFile::configuredPath();
        bool pathChanged = false;
        {
            const std::lock_guard guard(pathMutex_);
            pathChanged = path != path_;
            path_ = path;
        }
        if (writeToFile_ && pathChanged && firstWriteOfRun_ && isYes(settings::log::kAppendLog))
            earlierPending_ = true;
    }
    showEarlier();
}

void LogWriter::showEarlier()
{
    {
        // Read only for someone to show them to: an unattended run has no listener.
        const std::shared_lock guard(listenersMutex_);
        if (listeners_.empty())
            return;
    }
    if (earlierPending_.exchange(false) && firstWriteOfRun_)
        replay(LogFile::readRecords(filePath()));
}

void LogWriter::replay(const QList<LogRecord>& records)
{
    for (const LogRecord& record : records) {
        write(LogEvent { static_cast<int>(record.messageId), record.field1, record.field2,
            record.field3, record.detail, record.time, record.date, false });
    }
}

void LogWriter::write(const LogEvent& event)
{
    FileTrouble trouble = FileTrouble::None;
    {
        const BoundedLock lock(mutex_, kLockWait);
        LogRecord record;
        record.seq = ++counter_;
        record.setMessage(event.messageId);
        record.field1 = oneField(event.field1);
        record.field2 = oneField(event.field2);
        record.field3 = oneField(event.field3);
        record.detail = oneField(event.detail);
        if (event.time && event.date) {
            record.time = *event.time;
            record.date = *event.date;
        } else {
            const QDateTime now = QDateTime::currentDateTime();
            record.time = LogStamp::time(now, timeFormat_);
            record.date = LogStamp::date(now, dateFormat_);
        }
        if (showOnScreen_)
            deliver(record);
        if (writeToFile_ && event.toFile)
            trouble = appendToFile(record);
    }
    // Told outside the lock: the message may wait for the user, the other writers must not.
    if (trouble == FileTrouble::SwitchedOff)
        notifier_.showMessage(StringTable::text(ids::kBadLogFileFormat), MessageIcon::Stop);
    else if (trouble == FileTrouble::FirstNotWritten)
        notifier_.showMessage(
            QStringLiteral("The log file %1 could not be written: its records of this run are "
                           "missing from it.")
                .arg(filePath()),
            MessageIcon::Stop);
}

LogWriter::FileTrouble LogWriter::appendToFile(const LogRecord& record)
{
    const bool startFresh = firstWriteOfRun_
        && SettingsStore::get(settings::log::kAppendLog) == QLatin1StringView(settings::kNo);
    switch (LogFile::append(filePath(), record, startFresh)) {
    case LogFile::Result::BadHeader:
        // Two writers past the lock may both find it: only the first switches off and tells.
        if (!writeToFile_.exchange(false))
            return FileTrouble::None;
        SettingsStore::set(settings::log::kToFile, QString::fromLatin1(settings::kNo));
        return FileTrouble::SwitchedOff;
    case LogFile::Result::Written:
        firstWriteOfRun_ = false;
        return FileTrouble::None;
    case LogFile::Result::Failed:
        return notWritten_++ == 0 ? FileTrouble::FirstNotWritten : FileTrouble::None;
    }
    return FileTrouble::None;
}

void LogWriter::deliver(const LogRecord& record)
{
    const bool visible = record.shownUnder(filter_);
    const std::shared_lock guard(listenersMutex_);
    for (LogListener* listener : listeners_)
        listener->recordAdded(record, visible);
}

void LogWriter::addListener(LogListener* listener)
{
    {
        const std::unique_lock guard(listenersMutex_);
        listeners_.push_back(listener);
    }
    showEarlier();
}

void LogWriter::removeListener(LogListener* listener)
{
    const std::unique_lock guard(listenersMutex_);
    std::erase(listeners_, listener);
}

QString LogWriter::filePath() const
{
    const std::lock_guard guard(pathMutex_);
    return path_;
}

} // namespace zelto
