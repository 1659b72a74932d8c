#pragma once

#include <QString>
#include <QtGlobal>

namespace zelto {

// One file of a job's file set, as the engines read and write it and as the queue's bookkeeping
// reads it at the end of the job.
struct FileEntry {
    static constexpr int kNotTried = -1;
    static constexpr int kSent = 0;

    QString localFolder; // with or without a trailing separator
    QString localName;
    QString remoteName; // already cased
    QString remoteFolder; // empty: the folder the connection starts in
    qint64 size = 0;

    // kSent, kNotTried, 237 (cancelled), 239 (refused to overwrite), 240 (remote folder could not
    // be made), or the code of the failing transfer.
    int result = kNotTried;
    QString message; // the failure's text, for the log and the queue
    qint64 transferred = 0; // bytes really moved; positive means the file reached the server
};

} // namespace zelto
