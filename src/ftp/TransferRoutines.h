#pragma once

#include "ftp/FtpResult.h"
#include "ftp/RunningTime.h"

#include <QString>

#include <optional>

namespace zelto {

class CTransferSession;

// When the job began: gives the job's rate and time left and feeds the running-time total.
using JobStart = std::optional<RunningTime::Clock::time_point>;

// One file for a transfer routine to move.
struct TransferRequest {
    QString from; // put: the local path; get and copy: the remote name
    QString to; // put and copy: the remote name; get: the local path
    // The size when the job was built: a put sends the file up to it, and the progress counts
    // against it.
    qint64 size = 0;
    JobStart jobStart {};
    // The TransferType option decides the type first; otherwise the file's name alone.
    bool honourTransferType = true;
    // Put: the local file stays after DeletePut (the same file still goes to further sites).
    bool keepSource = true;
};

// The routines that move one file over connected sessions. Each reads ReadBuffer and WriteBuffer
// at its start, picks text or binary (a type set on the session first; then for a put or a get
// with `honourTransferType` the TransferType option; then the file's name), publishes its progress
// every round and returns success when the whole file moved. They log only the delete of a source
// after DeleteGet, and a failed delete after DeletePut; the outcome of the file is for the caller
// to log and sound. Remote names are full paths or relative to the connection's current folder.
//
// Text mode is TYPE A with CRLF line ends on the wire: a put turns local LF into CRLF, a get turns
// CRLF back into LF, and a copy passes the wire form through unchanged. libcurl converts nothing
// (see FtpConnection), so nothing is converted twice.

// Local file to remote file. The file is sent up to the request's size, and a file found shorter
// fails. Cancel (CTransferSession::requestCancel) ends it with ids::kPutCanceled: before the remote
// open nothing is created on the server, later the partial file stays. After success DeletePut
// "YES" deletes the local file unless the request keeps it; only a failed delete is logged
// (ids::kLogDeletionFailed).
[[nodiscard]] FtpResult putFile(CTransferSession& session, const TransferRequest& request);

// Remote file to local file. The bytes go to a partial file beside it (GetPump::partialPath) that
// replaces the local file only once the whole file arrived; a get that fails or is stopped (with
// ids::kGetCanceled) removes its partial file and leaves the local file as it was. After success
// DeleteGet "YES" deletes the remote file, logged as ids::kLogDeletionOk or
// ids::kLogDeletionFailed.
[[nodiscard]] FtpResult getFile(CTransferSession& session, const TransferRequest& request);

// Remote file on `source` to a remote file on `target`, streamed through a bounded buffer from a
// download on this thread to an upload on another; no local file. The target is opened when the
// first bytes arrived (or once an empty source was read whole), so a source that cannot be read
// leaves no target behind. Where the target server renames, the copy goes to a partial name
// (GetPump::partialPath of the target's) that is renamed over the target once whole, and a failed
// copy removes it; a server that renames nothing (CTransferSession::renamesFiles) is sent that
// copy again, and the later ones, under the target's own name. The TransferType option and the
// request's `honourTransferType` do not apply: the type is the one set on the source or else the
// target session, or else the extension's. The time goes to the copy-time total. After success
// DeleteGet "YES" deletes the source, logged as ids::kLogDeletionOk or ids::kLogDeletionFailed.
[[nodiscard]] FtpResult copyFile(
    CTransferSession& source, CTransferSession& target, const TransferRequest& request);

} // namespace zelto
