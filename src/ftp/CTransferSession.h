#pragma once

#include "ftp/ConnectionOptions.h"
#include "ftp/FtpConnection.h"
#include "ftp/FtpResult.h"
#include "ftp/JobSite.h"
#include "ftp/PauseGate.h"
#include "ftp/TransferType.h"
#include "platform/TrayIndicator.h"

#include <QString>

#include <atomic>
#include <memory>
#include <optional>
#include <stop_token>

namespace zelto {

class JobProgress;
struct JobServices;

// The Internet session of one job: its FTP connection, the buffer sizes of the pump, the progress
// it publishes and the cancel flag. Made and used by one worker thread; only requestCancel() and
// the stop source behind `stop` are touched from other threads.
//
// "Building the session" (connectJob step 2) makes the libcurl handle and checks the server's
// address and the proxy setting: it fails when libcurl has no handle to give (12001), when the
// server name cannot form an address (12005, e.g. "bad host") or when the proxy setting names no
// host (12032, e.g. "ProxyAccess" with no ProxyName gives ":2021"). Nothing goes over the network
// before step 4, so an unknown host or a refused connection fail there.
class CTransferSession final {
public:
    // The flag words of finds and opens; libcurl has no cache, the words are still worked out.
    static constexpr quint32 kDontCache = 0x04000000;
    static constexpr quint32 kReload = 0x80000000;

    // `progress`, when given, outlives the session. `stop` ends any operation under way at the
    // next libcurl callback (the worker's stop request).
    explicit CTransferSession(
        JobServices& services, JobProgress* progress = nullptr, std::stop_token stop = {});
    ~CTransferSession();
    CTransferSession(const CTransferSession&) = delete;
    CTransferSession& operator=(const CTransferSession&) = delete;

    // Reads the connect, data and control time-outs and the retry count; called at construction,
    // so a change of the settings takes effect with the next session.
    void applyTimeouts();
    // The options the next connection is made with.
    [[nodiscard]] const ConnectionOptions& options() const { return options_; }
    // kDontCache when Cache is "NO", plus kReload when Reload is "YES".
    [[nodiscard]] static quint32 cacheFlags();
    // The resource id of the message of a library error code (12001 gives 32877).
    [[nodiscard]] static int errorMessageId(int code);

    // Connects the job to its site: status texts, tray, log events and sounds in the job's order.
    [[nodiscard]] FtpResult connectJob(const JobSite& site);
    // The connect of the remote browser: on success the typed values are kept for next time.
    [[nodiscard]] FtpResult quickConnect(const JobSite& site);
    // Logs out (32875 when a connection was open), then writes the session's end (32877).
    void disconnectJob();
    // Closes the connection, if any; false when there was none.
    bool closeConnection();

    [[nodiscard]] bool isConnected() const { return connection_ && connection_->isOpen(); }
    // The connection of the job, or none before connectJob built it.
    [[nodiscard]] FtpConnection* connection() const { return connection_.get(); }
    [[nodiscard]] const QString& server() const { return site_.server; }

    [[nodiscard]] JobServices& services() const { return services_; }
    void setProgressControls(JobProgress* progress, bool countsUp);
    [[nodiscard]] JobProgress* progress() const { return progress_; }
    [[nodiscard]] bool progressCountsUp() const { return progressCountsUp_; }

    // Reads ReadBuffer and WriteBuffer; done by the transfer routines at the start of each file.
    // Values below 1 count as 1 and values above kMaxBuffer as kMaxBuffer.
    void loadBufferSizes();
    [[nodiscard]] int readBufferSize() const { return readBufferSize_; }
    [[nodiscard]] int writeBufferSize() const { return writeBufferSize_; }
    static constexpr int kMaxBuffer = 16 * 1024 * 1024;

    // The type a script's "binary" or "ascii" set for every later file of this session; none
    // (the default): each file's type is chosen by the transfer routine.
    void setTransferType(std::optional<TransferType> type) { transferType_ = type; }
    [[nodiscard]] std::optional<TransferType> transferType() const { return transferType_; }

    [[nodiscard]] qint64 batchTotalBytes() const { return batchTotalBytes_; }
    [[nodiscard]] qint64 batchDoneBytes() const { return batchDoneBytes_; }
    void setBatchBytes(qint64 total, qint64 done);
    void addBatchDoneBytes(qint64 bytes) { batchDoneBytes_ += bytes; }

    // The user's cancel of the put under way (checked between rounds); any thread.
    void requestCancel() { cancelRequested_.store(true, std::memory_order_relaxed); }
    void clearCancel() { cancelRequested_.store(false, std::memory_order_relaxed); }
    // Asked by the worker between rounds, so it is also where a paused worker waits.
    [[nodiscard]] bool cancelRequested() const
    {
        if (pauseGate_)
            pauseGate_->pass(stop_);
        return cancelRequested_.load(std::memory_order_relaxed);
    }
    // The gate of the worker's window, or none; it outlives the session.
    void setPauseGate(PauseGate* gate) { pauseGate_ = gate; }
    [[nodiscard]] std::stop_token stopToken() const { return stop_; }

    // Sets the tray icon when its state changes, so that a pump never calls it per block.
    void setTray(TrayState state);

private:
    void readAccess();
    void log(int messageId, const QString& field2 = {}, const QString& detail = {}) const;
    void setStatus(const QString& text) const;
    [[nodiscard]] FtpResult buildConnection(const JobSite& site);

    JobServices& services_;
    JobProgress* progress_;
    std::stop_token stop_;
    ConnectionOptions options_;
    JobSite site_;
    std::unique_ptr<FtpConnection> connection_;
    int readBufferSize_ = 4096;
    int writeBufferSize_ = 4096;
    std::optional<TransferType> transferType_;
    bool progressCountsUp_ = true;
    qint64 batchTotalBytes_ = 0;
    qint64 batchDoneBytes_ = 0;
    std::atomic<bool> cancelRequested_ { false };
    PauseGate* pauseGate_ = nullptr;
    std::optional<TrayState> tray_;
};

} // namespace zelto
