#pragma once

#include "ftp/FtpResult.h"
#include "ftp/RunningTime.h"
#include "platform/TrayIndicator.h"

#include <QString>

#include <optional>

namespace zelto {

class JobProgress;
struct JobServices;
struct JobSite;
enum class SoundEvent;

// What a session's job shows the user while it connects, moves files and disconnects: the texts,
// bytes and bars of its window, the tray, the sounds, the log records (with the session's server
// as their first field) and the message boxes; and the values a quick connect keeps for the next
// one. The session beside it only speaks FTP. Used on the session's thread.
class SessionReporter final {
public:
    // `progress`, when given, outlives the reporter.
    SessionReporter(JobServices& services, JobProgress* progress);
    // The tray goes back to idle.
    ~SessionReporter();
    SessionReporter(const SessionReporter&) = delete;
    SessionReporter& operator=(const SessionReporter&) = delete;

    [[nodiscard]] JobServices& services() const { return services_; }
    [[nodiscard]] JobProgress* progress() const { return progress_; }

    void setServer(const QString& server) { server_ = server; }
    [[nodiscard]] const QString& server() const { return server_; }

    void log(int messageId, const QString& field2 = {}, const QString& detail = {}) const;
    // The outcome of deleting a transferred file's source at `path` on `machine`
    // (ids::kLogDeletionOk or ids::kLogDeletionFailed).
    void logDeletion(const QString& path, const QString& machine, const FtpResult& removed) const;
    void play(SoundEvent event) const;
    // The result's message in a box with the stop icon.
    void showStop(const FtpResult& result) const;
    void setStatus(const QString& text) const;
    // Sets the tray icon when its state changes, so that a pump never calls it per block.
    void setTray(TrayState state);

    // A fresh start on screen: the six byte, rate and time texts empty, both bars at 0.
    void clearProgress() const;
    // The job's bytes start at 0 of `total`, its bars rising.
    void startBatch(qint64 total);
    [[nodiscard]] qint64 batchTotalBytes() const { return batchTotalBytes_; }
    [[nodiscard]] qint64 batchDoneBytes() const { return batchDoneBytes_; }
    void addBatchDoneBytes(qint64 bytes) { batchDoneBytes_ += bytes; }
    // The running-time rule of the job that started at `jobStart`: the same one for each of its
    // files, a new one for a new job.
    [[nodiscard]] RunningTime& runningTime(RunningTime::Clock::time_point jobStart);

    // The typed values of a quick connect, for the next quick-connect dialog; a store that
    // cannot be written is told with the warning icon.
    void keepQuickConnect(const JobSite& site) const;

private:
    JobServices& services_;
    JobProgress* progress_;
    QString server_;
    qint64 batchTotalBytes_ = 0;
    qint64 batchDoneBytes_ = 0;
    std::optional<TrayState> tray_;
    std::optional<RunningTime> runningTime_;
};

} // namespace zelto
