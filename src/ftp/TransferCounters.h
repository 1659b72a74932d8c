#pragma once

#include <QtGlobal>

#include <atomic>

namespace zelto {

// The process-wide transfer counters shown by the statistics window: bytes and files of every
// transfer since the program started. They are never reset while the program runs. Worker threads
// add to them without locks and the window reads them on a timer; the values are for display only,
// so every access is relaxed and a slightly stale value on screen is accepted.
class TransferCounters final {
public:
    struct Snapshot {
        qint64 localBytesRead = 0;
        qint64 localBytesWritten = 0;
        qint64 remoteBytesRead = 0;
        qint64 remoteBytesWritten = 0;
        qint64 bytesReceived = 0; // every round of the get pump
        qint64 filesTransferred = 0;
        double transferSeconds = 0; // put and get pumps
        double copySeconds = 0; // the remote-to-remote copy pump
    };

    // The one set of counters of the process.
    [[nodiscard]] static TransferCounters& instance();

    TransferCounters(const TransferCounters&) = delete;
    TransferCounters& operator=(const TransferCounters&) = delete;

    void addLocalBytesRead(qint64 bytes);
    void addLocalBytesWritten(qint64 bytes);
    void addRemoteBytesRead(qint64 bytes);
    void addRemoteBytesWritten(qint64 bytes);
    void addBytesReceived(qint64 bytes);
    void addFileTransferred();
    // The running-time rule can hand a negative amount (see RunningTime); it is added as it is.
    void addTransferSeconds(double seconds);
    void addCopySeconds(double seconds);

    [[nodiscard]] Snapshot snapshot() const;

private:
    TransferCounters() = default;

    std::atomic<qint64> localBytesRead_ { 0 };
    std::atomic<qint64> localBytesWritten_ { 0 };
    std::atomic<qint64> remoteBytesRead_ { 0 };
    std::atomic<qint64> remoteBytesWritten_ { 0 };
    std::atomic<qint64> bytesReceived_ { 0 };
    std::atomic<qint64> filesTransferred_ { 0 };
    std::atomic<double> transferSeconds_ { 0 };
    std::atomic<double> copySeconds_ { 0 };
};

} // namespace zelto
