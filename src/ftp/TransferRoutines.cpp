#include "TransferRoutines.h"

#include "ftp/CTransferSession.h"
#include "ftp/CopyPipe.h"
#include "ftp/FtpErrors.h"
#include "ftp/GetPump.h"
#include "ftp/PutPump.h"
#include "ftp/RoundProgress.h"
#include "ftp/TransferCounters.h"
#include "ftp/TransferType.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <thread>

namespace zelto {
namespace {

using namespace std::chrono_literals;

// The copy buffer holds a few rounds; more would only cost memory.
constexpr qint64 kPipeCapacity = 4 * 1024 * 1024;
// How long one side of a copy waits for the other beyond the data time-outs, after which libcurl
// itself has given up on a stalled side; and the wait when those time-outs are off.
constexpr auto kPipeGrace = 5s;
constexpr auto kPipeWaitWithoutTimeouts = 5min;

bool isYes(const settings::TextKey& key)
{
    return SettingsStore::get(key) == QLatin1String(settings::kYes);
}

FtpResult notConnected()
{
    return FtpResult::failure(inet::kInvalidOperation, QStringLiteral("not connected"));
}

// DeleteGet: the source of a get or a copy goes once it arrived whole.
void removeSourceAfterTransfer(CTransferSession& session, const QString& remotePath)
{
    if (!isYes(settings::config::kDeleteGet))
        return;
    const auto removed = session.connection()->removeFile(remotePath);
    session.reporter().logDeletion(remotePath, session.server(), removed);
}

// DeletePut: the local file goes once it arrived whole. Only a failed delete is logged: the user
// asked for the file to go, and it stays.
void removeLocalSource(CTransferSession& session, const QString& localPath)
{
    if (!isYes(settings::config::kDeletePut))
        return;
    QFile source(localPath);
    if (!source.remove())
        session.reporter().logDeletion(localPath, StringTable::text(ids::kLocalMachine),
            FtpResult::fileFailure(source, errno));
}

// A type set on the session (a script's "binary" or "ascii") wins over the routine's own choice.
TransferType typeFor(const CTransferSession& session, const QString& name, bool honourTransferType)
{
    if (const auto set = session.transferType())
        return *set;
    return transferTypeFor(name, honourTransferType);
}

std::chrono::milliseconds pipeWait(const CTransferSession& source, const CTransferSession& target)
{
    const auto stall = std::max(source.options().receiveStall, target.options().sendStall);
    if (stall.count() <= 0)
        return kPipeWaitWithoutTimeouts;
    return stall + kPipeGrace;
}

} // namespace

FtpResult putFile(CTransferSession& session, const TransferRequest& request)
{
    if (!session.isConnected())
        return notConnected();
    session.loadBufferSizes();
    const auto type = typeFor(session, request.from, request.honourTransferType);
    QFile file(request.from);
    // Unbuffered: the pump reads straight into libcurl's buffer.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return FtpResult::fileFailure(file, errno);
    if (session.cancelRequested())
        return FtpResult::failure(ids::kPutCanceled); // before the remote file exists

    RoundProgress progress(
        session.reporter(), request.size, request.jobStart, RoundProgress::Total::Transfer);
    progress.start();
    PutPump pump(session, file, request.size, type, progress);
    auto result = session.connection()->upload(
        request.to, type, type == TransferType::Text ? -1 : request.size,
        [&](char* buffer, qint64 room) { return pump.fill(buffer, room); },
        [&] { return session.cancelRequested(); });
    progress.finish();
    if (!result.ok() && pump.failure())
        result = *pump.failure();
    file.close();
    session.reporter().setTray(TrayState::Idle);
    if (!result.ok())
        return result;

    TransferCounters::instance().addFileTransferred();
    if (!request.keepSource)
        removeLocalSource(session, request.from);
    return result;
}

FtpResult getFile(CTransferSession& session, const TransferRequest& request)
{
    if (!session.isConnected())
        return notConnected();
    session.loadBufferSizes();
    const auto type = typeFor(session, request.from, request.honourTransferType);
    RoundProgress progress(
        session.reporter(), request.size, request.jobStart, RoundProgress::Total::Transfer);
    progress.start();
    GetPump pump(session, request.to, type, progress);
    auto result = session.connection()->download(
        request.from, type, [&](const char* data, qint64 size) { return pump.write(data, size); });
    const auto finished = pump.finish(result.ok());
    progress.finish();
    session.reporter().setTray(TrayState::Idle);
    if (!result.ok() && pump.failure())
        result = *pump.failure();
    else if (result.ok())
        result = finished;
    if (!result.ok())
        return result;

    TransferCounters::instance().addFileTransferred();
    removeSourceAfterTransfer(session, request.from);
    return result;
}

namespace {

// One copy of the source to `targetName`: the result, and whether the target was opened (so a
// failure may have left a file there).
struct CopyOutcome {
    FtpResult result;
    bool targetOpened = false;
};

CopyOutcome copyOnce(CTransferSession& source, CTransferSession& target,
    const TransferRequest& request, const QString& targetName)
{
    source.loadBufferSizes();
    const qint64 readBuffer = source.readBufferSize();
    const qint64 writeBuffer = source.writeBufferSize();
    // The TransferType option is for gets and puts: a copy goes by the extension, unless a type
    // was set on one of its sessions (the source's first).
    const auto type = source.transferType().value_or(typeFor(target, request.from, false));
    CopyPipe pipe(kPipeCapacity, pipeWait(source, target), source.stopToken());

    // The upload runs on its own thread, from the first bytes of the source on.
    FtpResult uploaded;
    std::jthread uploader;
    const auto startUpload = [&] {
        uploader = std::jthread([&] {
            uploaded = target.connection()->upload(targetName, type, -1,
                [&](char* buffer, qint64 room) { return pipe.pop(buffer, room); });
            if (!uploaded.ok())
                pipe.abandon();
        });
    };

    RoundProgress progress(
        source.reporter(), request.size, request.jobStart, RoundProgress::Total::Copy);
    progress.start();
    source.reporter().setTray(TrayState::Sending);
    auto& counters = TransferCounters::instance();
    const qint64 gather = writeBuffer < readBuffer ? 1 : writeBuffer / readBuffer;
    const auto downloaded
        = source.connection()->download(request.from, type, [&](const char* data, qint64 size) {
              if (!uploader.joinable())
                  startUpload();
              // Both ends speak the type's wire form: the bytes pass unchanged, the whole chunk
              // at once. The rounds below count it as blocks read and pieces written.
              if (!pipe.push(data, size))
                  return false;
              for (qint64 at = 0; at < size;) {
                  qint64 round = 0;
                  for (qint64 block = 0; block < gather && at + round < size; ++block) {
                      const qint64 read = std::min(readBuffer, size - at - round);
                      counters.addRemoteBytesRead(read);
                      round += read;
                  }
                  const qint64 piece = writeBuffer < readBuffer ? writeBuffer : round;
                  for (qint64 done = 0; done < round; done += piece)
                      counters.addRemoteBytesWritten(std::min(piece, round - done));
                  at += round;
                  progress.round(round);
              }
              return true;
          });
    if (downloaded.ok()) {
        if (!uploader.joinable())
            startUpload(); // an empty source still makes an empty target
        pipe.finish();
    } else {
        pipe.fail();
    }
    const bool opened = uploader.joinable();
    if (opened)
        uploader.join();
    progress.finish();
    source.reporter().setTray(TrayState::Idle);

    FtpResult result = uploaded;
    if (!downloaded.ok()) {
        // A download aborted by us ended because the upload failed, which then says why.
        const bool uploadFailedFirst = downloaded.code == ids::kGetCanceled
            && !source.stopToken().stop_requested() && !uploaded.ok();
        result = uploadFailedFirst ? uploaded : downloaded;
    }
    if (!result.ok() && pipe.timedOut())
        result = FtpResult::failure(inet::kTimeout, QStringLiteral("the copy stalled"));
    return { result, opened };
}

// The whole copy takes the target's name. A server that renames only onto a free name has the
// target removed first (the overwrite rule let it go before the copy began); one that renames
// nothing is sent the copy again under the target's name.
FtpResult nameWhole(CTransferSession& source, CTransferSession& target,
    const TransferRequest& request, const QString& partial)
{
    FtpConnection& connection = *target.connection();
    auto renamed = connection.rename(partial, request.to);
    if (!renamed.ok() && connection.removeFile(request.to).ok())
        renamed = connection.rename(partial, request.to);
    if (renamed.ok() || target.renamesFiles() == true) {
        target.setRenamesFiles(renamed.ok());
        if (!renamed.ok())
            (void)connection.removeFile(partial);
        return renamed;
    }
    (void)connection.removeFile(partial);
    target.setRenamesFiles(false);
    return copyOnce(source, target, request, request.to).result;
}

} // namespace

FtpResult copyFile(
    CTransferSession& source, CTransferSession& target, const TransferRequest& request)
{
    if (!source.isConnected() || !target.isConnected())
        return notConnected();
    // Under a partial name first, as a get does, where the server renames.
    const bool direct = target.renamesFiles() == false;
    const QString partial = direct ? request.to : GetPump::partialPath(request.to);
    const auto copied = copyOnce(source, target, request, partial);
    FtpResult result = copied.result;
    if (result.ok() && !direct)
        result = nameWhole(source, target, request, partial);
    else if (!result.ok() && copied.targetOpened && !direct)
        (void)target.connection()->removeFile(partial);
    if (!result.ok())
        return result;

    TransferCounters::instance().addFileTransferred();
    removeSourceAfterTransfer(source, request.from);
    return result;
}

} // namespace zelto
