#pragma once

#include "log/LogRecord.h"
#include "log/LogSink.h"

#include <QList>
#include <QString>

#include <atomic>
#include <chrono>
#include <mutex>
#include <shared_mutex>
#include <vector>

namespace zelto {

class LogListener;
class Notifier;

// The one log of the program: numbers each record, hands it to the listeners (the log view, the
// console) and appends it to the log file. Every worker writes from its own thread; the writers
// are serialised by a lock whose wait is bounded, so a stuck writer delays the others by at most
// kLockWait and never blocks them.
class LogWriter final : public LogSink {
public:
    static constexpr std::chrono::milliseconds kLockWait { 1500 };

    // The earlier records of a log that appends are shown to the first listener, whether given
    // here or added before this run writes its first record. Tells the user about an unusable
    // log file through `notifier`.
    explicit LogWriter(Notifier& notifier, LogListener* listener = nullptr);
    LogWriter(const LogWriter&) = delete;
    LogWriter& operator=(const LogWriter&) = delete;

    void write(const LogEvent& event) override;

    // Re-reads the LOG settings. When the file is on, its path changed, the log appends and this
    // run has written nothing yet, the file's earlier records are shown again (not re-written).
    void reloadSettings();

    // Shows records read back from a log file as records of this run: with their own stamps and
    // new numbers, and kept out of the log file.
    void replay(const QList<LogRecord>& records);

    // A listener is never called again once removeListener has returned. Neither may be called
    // from inside recordAdded, nor while the writer's records are being shown again.
    void addListener(LogListener* listener);
    void removeListener(LogListener* listener);

    [[nodiscard]] QString filePath() const;
    // Records this run could not append to the log file (a full disk, a folder it may not write).
    // The first is told to the notifier.
    [[nodiscard]] int recordsNotWritten() const { return notWritten_; }
    [[nodiscard]] LogFilter filter() const { return filter_; }

private:
    void deliver(const LogRecord& record);
    // Shows the earlier records of an appending log, once there is a listener to show them to.
    void showEarlier();
    // What the writer has to tell once the lock is let go.
    enum class FileTrouble { None, SwitchedOff, FirstNotWritten };
    [[nodiscard]] FileTrouble appendToFile(const LogRecord& record);

    Notifier& notifier_;
    // Past the bounded wait a write goes on without the lock, so the state it reads is atomic.
    mutable std::timed_mutex mutex_;
    std::atomic<quint32> counter_ { 0 };
    std::atomic<bool> showOnScreen_ { false };
    std::atomic<bool> writeToFile_ { false };
    std::atomic<LogFilter> filter_ { LogFilter::All };
    std::atomic<int> timeFormat_ { 0 };
    std::atomic<int> dateFormat_ { 0 };
    std::atomic<bool> firstWriteOfRun_ { true };
    std::atomic<bool> earlierPending_ { false };
    std::atomic<int> notWritten_ { 0 };
    mutable std::mutex pathMutex_;
    QString path_;

    std::shared_mutex listenersMutex_;
    std::vector<LogListener*> listeners_;
};

} // namespace zelto
