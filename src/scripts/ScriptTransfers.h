#pragma once

#include "ftp/FtpResult.h"
#include "ftp/RemoteListing.h"
#include "ftp/TransferRoutines.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <stop_token>

namespace zelto {

class ScriptReport;
class TransferSounds;
struct LogEvent;
struct ScriptConnection;

// The commands of a script that move files: "get", "put" and "send". Each file is one call of a
// transfer routine, reported and logged as "FTP Transfer Complete" or "FTP Transfer Failed"
// with the file's name, and sounded.
class ScriptTransfers final {
public:
    ScriptTransfers(ScriptReport& report, TransferSounds& sounds, std::stop_token stop);

    // The remote file into the local folder, under its own name.
    void get(ScriptConnection& from, const QString& remotePath, const QString& localFolder);
    // The local file (relative to the local folder, or absolute) into the connection's folder,
    // under its own name.
    void put(ScriptConnection& to, const QString& localPath, const QString& localFolder);
    // `what` (a name, or a pattern with "*" or "?" that the source's folder listing is matched
    // against) from one connection to the other's folder: copied between two servers, or put or
    // got when one side is LOCAL. An existing target is overwritten only when the Overwrite
    // option allows it; otherwise that file fails with "Can't overwrite existing file!".
    void send(ScriptConnection& from, ScriptConnection& to, const QString& what,
        const QString& localFolder);

    // Whether any file was tried: the run's transfer sound is due at its end.
    [[nodiscard]] bool anyTried() const { return tried_; }

private:
    // The source paths that `what` names on `from`, sorted; a failure when they cannot be found.
    [[nodiscard]] FtpValue<QStringList> sources(
        const ScriptConnection& from, const QString& what, const QString& localFolder) const;
    // Whether `name` is already in the target folder; `targets` caches the remote listing.
    [[nodiscard]] bool targetExists(const ScriptConnection& to, const QString& name,
        const QString& localFolder, std::optional<RemoteListing>& targets) const;
    [[nodiscard]] FtpResult sendOne(ScriptConnection& from, ScriptConnection& to,
        const QString& path, const QString& name, const QString& localFolder);
    void report(const QString& subject, const QString& object, const FtpResult& result,
        const LogEvent& record);

    ScriptReport& report_;
    TransferSounds& sounds_;
    std::stop_token stop_;
    JobStart start_;
    QString localMachine_;
    bool tried_ = false;
};

} // namespace zelto
