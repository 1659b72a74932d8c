#pragma once

#include "ftp/FtpResult.h"
#include "ftp/LineEndConverter.h"
#include "ftp/TransferType.h"

#include <QByteArray>

#include <optional>

class QFile;

namespace zelto {

class CTransferSession;
class RoundProgress;

// The pump of a put, run by libcurl's read callback: it fills libcurl's buffer round by round.
// A round reads the local file in blocks of the read buffer and writes them in pieces of the
// write buffer: with a write buffer smaller than the read buffer one block is read and written in
// pieces; otherwise write / read blocks are gathered and written as one piece. Each round is
// counted, published and followed by the cancel check. The blocks are units of the pump, not of
// the system: as many whole rounds as libcurl's buffer holds come in one read, straight into
// that buffer (the file is best opened unbuffered). A round that does not fit, and every round of
// a text file (whose line ends grow), goes through a spill buffer. The file is sent up to the
// size the job was built with; a file that ends before it fails instead of being read again and
// again.
class PutPump final {
public:
    PutPump(CTransferSession& session, QFile& file, qint64 size, TransferType type,
        RoundProgress& progress);

    // libcurl's read callback: bytes put into `buffer`, 0 at the end, -1 to abort (failure() then
    // says why).
    [[nodiscard]] qint64 fill(char* buffer, qint64 room);
    [[nodiscard]] const std::optional<FtpResult>& failure() const { return failure_; }

private:
    // One round of `size` bytes read to `bytes`; false when a cancel ends the put after it.
    [[nodiscard]] bool round(const char* bytes, qint64 size, bool direct);
    [[nodiscard]] qint64 takeSpill(char* buffer, qint64 room);
    [[nodiscard]] qint64 fail(FtpResult result);

    CTransferSession& session_;
    QFile& file_;
    qint64 size_;
    bool text_;
    RoundProgress& progress_;
    int readBuffer_;
    int writeBuffer_;
    qint64 roundLimit_; // the most bytes one round reads
    qint64 sent_ = 0; // local bytes handed over
    bool started_ = false;
    QByteArray block_; // rounds that do not go straight into libcurl's buffer
    QByteArray spill_; // wire bytes waiting for the next call
    qint64 spillAt_ = 0;
    LineEndConverter converter_;
    std::optional<FtpResult> failure_;
};

} // namespace zelto
