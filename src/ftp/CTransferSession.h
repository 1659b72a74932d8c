#pragma once

#include "ftp/ConnectionOptions.h"
#include "ftp/FtpConnection.h"
#include "ftp/FtpResult.h"
#include "ftp/JobSite.h"
#include "ftp/PauseGate.h"
#include "ftp/SessionReporter.h"
#include "ftp/TransferType.h"

#include <QString>

#include <atomic>
#include <memory>
#include <stop_token>

namespace zelto {

class JobProgress;
struct JobServices;

// The Internet session of one job: its FTP connection, the options it is made with, the buffer
// sizes of the pump and the cancel flag. It speaks FTP and returns results; what the job shows,
// sounds, logs and stores on the way goes through the reporter beside it. Made and used by one
// worker thread; only requestCancel() and the stop source behind `stop` are touched from other
// threads.
//
// Building the session makes the libcurl handle and checks the server's address and the proxy
// setting: it fails when libcurl has no handle to give (12001), when the server name cannot form
// an address (12005, e.g. "bad host") or when the proxy setting names no host (12032, e.g.
// "ProxyAccess" with no ProxyName gives ":2021"). Nothing goes over the network before the login,
// so an unknown host or a refused connection fail there.
class CTransferSession final {
public:
    // `progress`, when given, outlives the session. `stop` ends any operation under way at the
    // next libcurl callback (the worker's stop request). The connect, data and control time-outs
    // and the retry count are read now: a change of the settings takes effect with the next
    // session.
    explicit CTransferSession(
        JobServices& services, JobProgress* progress = nullptr, std::stop_token stop = {});
    ~CTransferSession();
    CTransferSession(const CTransferSession&) = delete;
    CTransferSession& operator=(const CTransferSession&) = delete;

    // The options the next connection is made with.
    [[nodiscard]] const ConnectionOptions& options() const { return options_; }

    // Connects the job to its site: status texts, tray, log events and sounds in the job's order.
    [[nodiscard]] FtpResult connectJob(const JobSite& site);
    // The connect of the remote browser: on success the typed values are kept for next time.
    [[nodiscard]] FtpResult quickConnect(const JobSite& site);
    // Logs out (ids::kLogFtpConnectionClosed when a connection was open), then writes the session's
    // end (ids::kLogSessionEnded).
    void disconnectJob();
    // Closes the connection, if any; false when there was none.
    bool closeConnection();

    [[nodiscard]] bool isConnected() const { return connection_ && connection_->isOpen(); }
    // The connection of the job, or none before connectJob built it.
    [[nodiscard]] FtpConnection* connection() const { return connection_.get(); }
    [[nodiscard]] const QString& server() const { return reporter_.server(); }
    [[nodiscard]] SessionReporter& reporter() { return reporter_; }

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

    // Whether this server renamed the partial file of a copy into place: unknown until the first
    // copy to it. One that renames nothing is sent the later copies under their own names.
    void setRenamesFiles(bool renames) { renamesFiles_ = renames; }
    [[nodiscard]] std::optional<bool> renamesFiles() const { return renamesFiles_; }

    // The user's cancel of the put under way (checked between rounds); any thread.
    void requestCancel() { cancelRequested_.store(true, std::memory_order_relaxed); }
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

private:
    [[nodiscard]] FtpResult buildConnection(const JobSite& site);
    // The connect has failed: the sound, and the tray back to idle.
    [[nodiscard]] FtpResult connectFailed(const FtpResult& result);

    SessionReporter reporter_;
    std::stop_token stop_;
    ConnectionOptions options_;
    std::unique_ptr<FtpConnection> connection_;
    int readBufferSize_ = 4096;
    int writeBufferSize_ = 4096;
    std::optional<TransferType> transferType_;
    std::optional<bool> renamesFiles_;
    std::atomic<bool> cancelRequested_ { false };
    PauseGate* pauseGate_ = nullptr;
};

} // namespace zelto
