#pragma once

#include "distribution/RemotePlacement.h"
#include "ftp/FtpResult.h"
#include "ftp/RemoteListing.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <optional>

namespace zelto {

class FtpConnection;

// What one engine run knows about the server's folders, so that a file costs no look-up that an
// earlier file of the run already made: each folder is listed at most once, a folder made or
// found stays known, and a folder that could not be made is not tried again. Folders are keyed by
// their path as the placement wrote it, without a trailing separator.
class RemoteFinder final {
public:
    // `homeFolder` is the connection's folder, where the job's relative names start.
    RemoteFinder(FtpConnection& connection, QString homeFolder);
    RemoteFinder(const RemoteFinder&) = delete;
    RemoteFinder& operator=(const RemoteFinder&) = delete;

    struct FolderOutcome {
        FtpResult result;
        bool made = false; // made now, by this call
    };
    // Makes sure that `step.path` is a folder: known, listed in its parent, or made now. When
    // the server refuses to make it, a change into it tells whether it was there after all (a
    // listing in a format we cannot read); otherwise the refusal is the outcome.
    [[nodiscard]] FolderOutcome ensureFolder(const FolderStep& step);

    // Whether `folder` holds an entry called `name`. A folder that cannot be listed is taken to
    // hold nothing, so upload-only folders still receive files.
    [[nodiscard]] bool contains(const QString& folder, const QString& name);
    // A file was stored as `name` in `folder`.
    void stored(const QString& folder, const QString& name);
    // The contents of `folder` are no longer known (a failed put may have left part of a file).
    void forget(const QString& folder);

private:
    [[nodiscard]] const std::optional<RemoteListing>& listing(const QString& folder);
    [[nodiscard]] bool changesInto(const QString& folder);

    FtpConnection& connection_;
    QString home_;
    QHash<QString, std::optional<RemoteListing>> listings_; // none: could not be listed
    QSet<QString> folders_;
    QHash<QString, FtpResult> refused_;
};

} // namespace zelto
