#include "PutPump.h"

#include "ftp/CTransferSession.h"
#include "ftp/RoundProgress.h"
#include "ftp/TransferCounters.h"
#include "platform/StringIds.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace zelto {

PutPump::PutPump(
    CTransferSession& session, QFile& file, qint64 size, TransferType type, RoundProgress& progress)
    : session_(session)
    , file_(file)
    , size_(size)
    , text_(type == TransferType::Text)
    , progress_(progress)
    , readBuffer_(session.readBufferSize())
    , writeBuffer_(session.writeBufferSize())
    , roundLimit_(writeBuffer_ < readBuffer_ ? readBuffer_
                                             : qint64(writeBuffer_ / readBuffer_) * readBuffer_)
{
}

qint64 PutPump::fill(char* buffer, qint64 room)
{
    if (!started_) {
        started_ = true;
        session_.reporter().setTray(TrayState::Sending);
        // The remote file is open now; a cancel that came meanwhile stops here.
        if (session_.cancelRequested())
            return fail(FtpResult::failure(ids::kPutCanceled));
    }
    qint64 filled = takeSpill(buffer, room);
    while (filled < room && sent_ < size_) {
        // As many whole rounds as libcurl's buffer takes, in one read; at least one round.
        const qint64 rounds = std::max<qint64>(1, (room - filled) / roundLimit_);
        const qint64 wanted = std::min(rounds * roundLimit_, size_ - sent_);
        const bool direct = !text_ && wanted <= room - filled;
        if (!direct)
            block_.resize(wanted);
        char* const out = direct ? buffer + filled : block_.data();
        const qint64 read = file_.read(out, wanted);
        if (read < 0)
            return fail(FtpResult::fileFailure(file_, errno));
        if (read == 0) {
            // The file is shorter than when the job was built: reading on would never end.
            return fail(FtpResult::localFailure(LocalFileError::EndOfFile,
                QDir::toNativeSeparators(file_.fileName()),
                QStringLiteral("%1 of %2 bytes").arg(sent_).arg(size_)));
        }
        if (!direct) {
            spill_.resize(0);
            spillAt_ = 0;
        }
        for (qint64 at = 0; at < read; at += roundLimit_) {
            if (!round(out + at, std::min(roundLimit_, read - at), direct))
                return -1;
        }
        filled += direct ? read : takeSpill(buffer + filled, room - filled);
    }
    return filled;
}

bool PutPump::round(const char* bytes, qint64 size, bool direct)
{
    // The blocks the round read from the local file...
    auto& counters = TransferCounters::instance();
    for (qint64 at = 0; at < size; at += readBuffer_)
        counters.addLocalBytesRead(std::min<qint64>(readBuffer_, size - at));
    // ...and what it writes to the remote file: in pieces of the write buffer when that is the
    // smaller, otherwise as one piece.
    qint64 wire = size;
    if (text_) {
        const auto before = spill_.size();
        converter_.toWire({ bytes, size }, spill_);
        wire = spill_.size() - before;
    } else if (!direct) {
        spill_.append(bytes, size);
    }
    const qint64 piece = writeBuffer_ < readBuffer_ ? writeBuffer_ : std::max<qint64>(wire, 1);
    for (qint64 at = 0; at < wire; at += piece)
        counters.addRemoteBytesWritten(std::min(piece, wire - at));
    sent_ += size;
    progress_.round(size);
    if (session_.cancelRequested()) {
        failure_ = FtpResult::failure(ids::kPutCanceled);
        return false;
    }
    return true;
}

qint64 PutPump::takeSpill(char* buffer, qint64 room)
{
    const qint64 count = std::min(room, qint64(spill_.size()) - spillAt_);
    if (count <= 0)
        return 0;
    std::memcpy(buffer, spill_.constData() + spillAt_, size_t(count));
    spillAt_ += count;
    return count;
}

qint64 PutPump::fail(FtpResult result)
{
    failure_ = std::move(result);
    return -1;
}

} // namespace zelto
