#pragma once

#include "ftp/CTransferSession.h"
#include "ftp/FtpResult.h"
#include "ftp/JobSite.h"
#include "ftp/RemoteEntry.h"
#include "ftp/RemoteListing.h"

#include <QString>

#include <initializer_list>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>

namespace zelto {

struct JobServices;

// The connection of one remote half of the browser and what the user does with it: list a
// folder, rename, move, delete, make and remove folders, each written to the log with its pair's
// OK or Failed event. Every operation holds the connection lock from its first command to its
// last, so that two operations of the half never interleave on the one control connection.
//
// A listed name that is not plain (RemoteEntry::isPlainName) is refused before any command is
// sent: it could name another file than the one shown, or end the command early.
//
// Made on the UI thread, used by the half's worker; results go back to the window by value.
class BrowserSession final {
public:
    BrowserSession(JobServices& services, std::stop_token stop);
    ~BrowserSession();
    BrowserSession(const BrowserSession&) = delete;
    BrowserSession& operator=(const BrowserSession&) = delete;

    // Connects as the quick connect does (the typed values kept on success); a connection
    // already open is closed first.
    [[nodiscard]] FtpResult connect(const JobSite& site);
    // Closes the connection with its log records; nothing when none is open.
    void disconnect();
    [[nodiscard]] bool isConnected() const;
    [[nodiscard]] const QString& server() const { return server_; }
    // Where relative names start: the login's folder, then the last folder listed.
    [[nodiscard]] QString currentFolder() const;

    // Changes into `folder` (relative to the current one, or absolute) and lists it; the folder
    // becomes the current one only when both succeed. A refused change of folder is logged.
    [[nodiscard]] FtpValue<RemoteListing> list(const QString& folder);
    // Renames `entry` of `folder` to `newName` in the same folder. A name already listed there
    // is refused with ids::kRenameTargetExists.
    [[nodiscard]] FtpResult rename(
        const QString& folder, const RemoteEntry& entry, const QString& newName);
    // Moves `entry` of `from` into the folder `to`, keeping its name.
    [[nodiscard]] FtpResult move(const QString& from, const RemoteEntry& entry, const QString& to);
    // Deletes the file `entry` of `folder`: ids::kFileToDeleteNotFound when it is no longer
    // listed there, ids::kFileNotDeleted when the server refuses.
    [[nodiscard]] FtpResult removeFile(const QString& folder, const RemoteEntry& entry);
    // Makes the folder `name` in `parent`; ids::kDirectoryExists when the name is taken, unless
    // `existingIsOk`: then a folder already there is a success, without a log record.
    [[nodiscard]] FtpResult makeFolder(
        const QString& parent, const QString& name, bool existingIsOk = false);
    // Removes the (empty) folder `entry` of `parent`.
    [[nodiscard]] FtpResult removeFolder(const QString& parent, const RemoteEntry& entry);

    // "folder/name", with one separator between them.
    [[nodiscard]] static QString join(const QString& folder, const QString& name);

private:
    // Renames `from` to `to` unless `to`'s name is listed in `toFolder` already.
    [[nodiscard]] FtpResult renameChecked(const QString& fromFolder, const QString& fromName,
        const QString& toFolder, const QString& toName);
    [[nodiscard]] FtpResult notConnected() const;
    // Why an operation on `names` must not reach the server (no connection, a name a hostile
    // listing gave), or nothing when it may.
    [[nodiscard]] std::optional<FtpResult> refusal(std::initializer_list<QString> names) const;

    JobServices& services_;
    std::stop_token stop_;
    mutable std::mutex lock_; // the connection lock
    std::unique_ptr<CTransferSession> session_;
    QString server_;
};

} // namespace zelto
