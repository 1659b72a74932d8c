#pragma once

#include "distribution/EngineOptions.h"
#include "distribution/FileEntry.h"
#include "distribution/RemotePlacement.h"
#include "ftp/FtpResult.h"
#include "ftp/JobSite.h"
#include "options/TransferSounds.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace zelto {

class CTransferSession;

// The frame that the put, get and copy engines share for one site: the connect, the settings read
// at the start of the run, the walk over the files, and what each file's outcome publishes
// (entry, status, sound, log). The run's session is the site's; for a copy it is the target's,
// where the files land, and the source's session is connected first beside it.
class EngineRun final {
public:
    EngineRun(CTransferSession& session, const EngineOptions& options);
    EngineRun(const EngineRun&) = delete;
    EngineRun& operator=(const EngineRun&) = delete;

    // Connects to `site`, reads the run's settings and gives every file without a remote folder
    // the connection's folder. On failure every file keeps its
    // not-tried result and gets the connect's text as its message, so that the bookkeeping can
    // say why it was not sent.
    [[nodiscard]] FtpResult connect(const JobSite& site, std::vector<FileEntry>& files);
    // A copy: connects `source` to `sourceSite`, then the run's session to `site` as above.
    // Every file without a source folder (its local folder) gets the source connection's folder.
    // A failure of either connect is every file's message.
    [[nodiscard]] FtpResult connect(CTransferSession& source, const JobSite& sourceSite,
        const JobSite& site, std::vector<FileEntry>& files);

    // Hands the files to `send` in order until a stop, then plays the run's sound. Once a
    // connection of the run is lost (its control channel timed out or was dropped), the files
    // not yet tried fail at once with the reason it was lost: none of them logs in again.
    void sendEach(std::vector<FileEntry>& files, const std::function<void(FileEntry&)>& send);

    [[nodiscard]] DirTree mode() const { return mode_; }
    [[nodiscard]] bool shortNames() const { return shortNames_; }
    // The connection's folder when the run began.
    [[nodiscard]] const QString& startFolder() const { return startFolder_; }
    [[nodiscard]] JobStart jobStart() const { return jobStart_; }
    [[nodiscard]] const QString& host() const { return host_; }
    [[nodiscard]] const QString& localMachine() const { return localMachine_; }

    void showPaths(const QString& localPath, const QString& remotePath) const;
    void log(int messageId, const QString& field1, const QString& field2,
        const QString& field3 = {}, const QString& detail = {}) const;

    void fileSent(FileEntry& entry);
    void fileFailed(FileEntry& entry, int code, const QString& message);

private:
    [[nodiscard]] bool stopRequested() const;
    [[nodiscard]] std::optional<FtpResult> lostConnection() const;

    CTransferSession& session_;
    CTransferSession* source_ = nullptr; // a copy's
    const EngineOptions& options_;
    std::optional<TransferSounds> sounds_;
    DirTree mode_ = DirTree::NoPath;
    bool shortNames_ = false;
    QString startFolder_;
    JobStart jobStart_;
    QString host_;
    QString localMachine_;
};

} // namespace zelto
