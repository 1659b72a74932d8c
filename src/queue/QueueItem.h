#pragma once

#include "distribution/TransferMode.h"
#include "queue/QueueFileFormat.h"

#include <QString>

namespace zelto {

// One failed transfer waiting in the queue, as the queue file holds it: every value is the
// file's text, numbers included, except the position, the attempts and the status.
struct QueueItem {
    static constexpr int kIdle = 0;
    static constexpr int kSending = 1;

    int position = 0; // 1-based section number when read from the file
    int numTimes = 1; // failed attempts
    int status = kIdle;

    QString localName;
    QString remoteName;
    QString source; // "Local" for an upload, else the source host
    QString destination; // "Local" for a download, else the destination host
    QString reason;
    QString remDirFile;
    QString locDirFile;
    // Of the site named by Destination (upload) or Source (download, site-to-site).
    QString remDir;
    QString password;
    QString login;
    QString ftpMethod = QString::fromLatin1(queuefile::kMethodPut);
    QString fileSize;
    QString port; // empty when the file has none; the sender then takes 21
    // The second site of a site-to-site item; empty for the others.
    QString remPassword;
    QString remLogin;
    QString remRemDir;
    QString remotePort;
    // Who marked it as being sent (ProcessMark); empty when idle or marked by an older version.
    QString sendingBy;

    // Upload, download, or (any other method word) site-to-site.
    [[nodiscard]] TransferMode direction() const
    {
        if (ftpMethod == QLatin1StringView(queuefile::kMethodPut))
            return TransferMode::Put;
        if (ftpMethod == QLatin1StringView(queuefile::kMethodGet))
            return TransferMode::Get;
        return TransferMode::Copy;
    }

    // The word the file keeps for a job's mode; a distribution's files are uploads.
    [[nodiscard]] static QString methodOf(TransferMode mode)
    {
        switch (mode) {
        case TransferMode::Get:
            return QString::fromLatin1(queuefile::kMethodGet);
        case TransferMode::Copy:
            return QString::fromLatin1(queuefile::kMethodCopy);
        case TransferMode::Put:
        case TransferMode::DistributionPut:
            break;
        }
        return QString::fromLatin1(queuefile::kMethodPut);
    }
};

} // namespace zelto
