#include "TransferCounters.h"

namespace zelto {
namespace {

constexpr auto kRelaxed = std::memory_order_relaxed;

void addSeconds(std::atomic<double>& total, double seconds)
{
    double seen = total.load(kRelaxed);
    while (!total.compare_exchange_weak(seen, seen + seconds, kRelaxed)) { }
}

} // namespace

TransferCounters& TransferCounters::instance()
{
    static TransferCounters counters;
    return counters;
}

void TransferCounters::addLocalBytesRead(qint64 bytes)
{
    localBytesRead_.fetch_add(bytes, kRelaxed);
}

void TransferCounters::addLocalBytesWritten(qint64 bytes)
{
    localBytesWritten_.fetch_add(bytes, kRelaxed);
}

void TransferCounters::addRemoteBytesRead(qint64 bytes)
{
    remoteBytesRead_.fetch_add(bytes, kRelaxed);
}

void TransferCounters::addRemoteBytesWritten(qint64 bytes)
{
    remoteBytesWritten_.fetch_add(bytes, kRelaxed);
}

void TransferCounters::addBytesReceived(qint64 bytes)
{
    bytesReceived_.fetch_add(bytes, kRelaxed);
}

void TransferCounters::addFileTransferred()
{
    filesTransferred_.fetch_add(1, kRelaxed);
}

void TransferCounters::addTransferSeconds(double seconds)
{
    addSeconds(transferSeconds_, seconds);
}

void TransferCounters::addCopySeconds(double seconds)
{
    addSeconds(copySeconds_, seconds);
}

TransferCounters::Snapshot TransferCounters::snapshot() const
{
    return Snapshot {
        .localBytesRead = localBytesRead_.load(kRelaxed),
        .localBytesWritten = localBytesWritten_.load(kRelaxed),
        .remoteBytesRead = remoteBytesRead_.load(kRelaxed),
        .remoteBytesWritten = remoteBytesWritten_.load(kRelaxed),
        .bytesReceived = bytesReceived_.load(kRelaxed),
        .filesTransferred = filesTransferred_.load(kRelaxed),
        .transferSeconds = transferSeconds_.load(kRelaxed),
        .copySeconds = copySeconds_.load(kRelaxed),
    };
}

} // namespace zelto
