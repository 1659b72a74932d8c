#pragma once

#include "ftp/CTransferSession.h"
#include "ftp/FtpErrors.h"
#include "ftp/FtpResult.h"

#include <QString>

#include <memory>

namespace zelto {

// One named connection of a script, as its "open" line gave it. The session (and through it
// the FTP connection) belongs to the connection and lives until the end of the run; the
// pseudo-connection LOCAL has none.
struct ScriptConnection final {
    QString name;
    QString host;
    QString user;
    QString password; // handed to the session only; never shown or logged
    QString extra; // the optional seventh word of "open", kept as given; no command reads it
    quint16 port = 21;
    std::unique_ptr<CTransferSession> session;

    // Success when the connection is open; LOCAL, a connection whose open failed and a closed
    // one are not.
    [[nodiscard]] FtpResult ready() const
    {
        if (session && session->isConnected())
            return FtpResult::success();
        return FtpResult::failure(inet::kInvalidOperation, QStringLiteral("not connected"));
    }
};

} // namespace zelto
