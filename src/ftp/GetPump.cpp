#include "GetPump.h"

#include "ftp/CTransferSession.h"
#include "ftp/RoundProgress.h"
#include "ftp/TransferCounters.h"

#include <QDir>

#include <algorithm>
#include <cerrno>
#include <cstdio>

namespace zelto {
namespace {

constexpr qint64 kStagingSize = 256 * 1024;

} // namespace

QString GetPump::partialPath(const QString& localPath)
{
    return localPath + QStringLiteral(".zelto-part");
}

GetPump::GetPump(
    CTransferSession& session, const QString& localPath, TransferType type, RoundProgress& progress)
    : session_(session)
    , progress_(progress)
    , readBuffer_(session.readBufferSize())
    , writeBuffer_(session.writeBufferSize())
    , text_(type == TransferType::Text)
    , localPath_(localPath)
    , file_(partialPath(localPath))
{
}

bool GetPump::write(const char* data, qint64 size)
{
    if (!file_.isOpen() && !open())
        return false;
    session_.reporter().setTray(TrayState::Busy);
    auto& counters = TransferCounters::instance();
    const qint64 gather = writeBuffer_ < readBuffer_ ? 1 : writeBuffer_ / readBuffer_;
    for (qint64 at = 0; at < size;) {
        // One round: the blocks it reads from the remote file...
        qint64 round = 0;
        for (qint64 block = 0; block < gather && at + round < size; ++block) {
            const qint64 read = std::min<qint64>(readBuffer_, size - at - round);
            counters.addRemoteBytesRead(read);
            round += read;
        }
        if (!writeRound(data + at, round))
            return false;
        at += round;
        counters.addBytesReceived(round);
        progress_.round(round);
    }
    return true;
}

bool GetPump::writeRound(const char* data, qint64 size)
{
    if (text_) {
        converted_.resize(0);
        converter_.fromWire({ data, size }, converted_);
        data = converted_.constData();
        size = converted_.size();
    }
    // Pieces of the write buffer, or one piece when blocks were gathered.
    const qint64 piece = writeBuffer_ < readBuffer_ ? writeBuffer_ : std::max<qint64>(size, 1);
    for (qint64 done = 0; done < size; done += piece) {
        if (!writePiece(data + done, std::min(piece, size - done)))
            return false;
    }
    return true;
}

FtpResult GetPump::finish(bool downloaded)
{
    const bool opened = file_.isOpen() || (downloaded && open());
    bool written = opened;
    if (written && text_) {
        converted_.resize(0);
        converter_.finish(converted_); // a CR that ended the file
        written = writeRound(converted_.constData(), converted_.size());
    }
    written = written && flush();
    file_.close();
    if (downloaded && written && replaceLocalFile())
        return FtpResult::success();
    if (opened)
        file_.remove();
    if (failure_)
        return *failure_;
    return downloaded ? FtpResult::failure(int(LocalFileError::Generic)) : FtpResult::success();
}

bool GetPump::replaceLocalFile()
{
    // rename() replaces an existing file in one step; QFile::rename would refuse it.
    if (std::rename(QFile::encodeName(file_.fileName()).constData(),
            QFile::encodeName(localPath_).constData())
        == 0)
        return true;
    const int error = errno;
    return fail(FtpResult::localFailure(FtpResult::localErrorFor(error),
        QDir::toNativeSeparators(localPath_), qt_error_string(error)));
}

bool GetPump::open()
{
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return fail(FtpResult::fileFailure(file_, errno));
    staging_.reserve(kStagingSize);
    return true;
}

bool GetPump::writePiece(const char* data, qint64 size)
{
    if (staging_.size() + size > kStagingSize && !flush())
        return false;
    if (size >= kStagingSize) {
        if (file_.write(data, size) != size)
            return fail(FtpResult::fileFailure(file_, errno));
    } else {
        staging_.append(data, size);
    }
    TransferCounters::instance().addLocalBytesWritten(size);
    return true;
}

bool GetPump::flush()
{
    if (staging_.isEmpty())
        return true;
    const qint64 written = file_.write(staging_);
    if (written != staging_.size())
        return fail(FtpResult::fileFailure(file_, errno));
    staging_.resize(0);
    return true;
}

bool GetPump::fail(FtpResult result)
{
    if (!failure_)
        failure_ = std::move(result);
    return false;
}

} // namespace zelto
