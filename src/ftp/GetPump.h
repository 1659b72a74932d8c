#pragma once

#include "ftp/FtpResult.h"
#include "ftp/LineEndConverter.h"
#include "ftp/TransferType.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <optional>

namespace zelto {

class CTransferSession;
class RoundProgress;

// The pump of a get, run by libcurl's write callback: each chunk that libcurl hands over is cut
// into rounds as if it had been read in blocks of the read buffer, and each round is written to
// the local file in pieces of the write buffer (several blocks gathered into one piece when the
// write buffer is the larger). The pieces are collected in a staging buffer, so the disk sees a
// few large writes whatever the configured sizes.
//
// In text mode the CRLF line ends of the wire become LF before they are written.
//
// The bytes go to a partial file beside the local one (partialPath()), created when the first
// bytes arrive, and it takes the local file's name only once the download ended whole: a remote
// file that cannot be read, or a download cut short, leaves an existing local file untouched and
// never leaves a truncated file under the local name. A partial file left by a killed process has
// the same name, so the next attempt of that file replaces it.
class GetPump final {
public:
    // The name of the partial file that a get to `localPath` writes.
    [[nodiscard]] static QString partialPath(const QString& localPath);

    GetPump(CTransferSession& session, const QString& localPath, TransferType type,
        RoundProgress& progress);

    // libcurl's write callback: false aborts the download (failure() then says why).
    [[nodiscard]] bool write(const char* data, qint64 size);
    // After the download: writes what is staged and puts the file under its local name, creating
    // an empty one when the download succeeded without bytes. A failed download removes its
    // partial file.
    [[nodiscard]] FtpResult finish(bool downloaded);
    [[nodiscard]] const std::optional<FtpResult>& failure() const { return failure_; }

private:
    [[nodiscard]] bool open();
    [[nodiscard]] bool writeRound(const char* data, qint64 size);
    [[nodiscard]] bool writePiece(const char* data, qint64 size);
    [[nodiscard]] bool flush();
    [[nodiscard]] bool replaceLocalFile();
    [[nodiscard]] bool fail(FtpResult result);

    CTransferSession& session_;
    RoundProgress& progress_;
    int readBuffer_;
    int writeBuffer_;
    bool text_;
    LineEndConverter converter_;
    QByteArray converted_;
    QString localPath_;
    QFile file_; // the partial file
    QByteArray staging_;
    std::optional<FtpResult> failure_;
};

} // namespace zelto
