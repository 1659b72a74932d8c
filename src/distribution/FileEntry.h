#pragma once

#include <QString>
#include <QtGlobal>

namespace zelto {

// One file of a job's file set, as the engines read and write it and as the queue's bookkeeping
// reads it at the end of the job.
//
// The local fields name the file on this machine and the remote fields the file on the server, as
// the queue keeps them (LocDirFile and LocalName, RemDirFile and RemoteName). A copy between two
// servers has no file on this machine: its local fields name the source (a folder of the source
// server, empty for the folder its connection starts in, and the name there) and its remote
// fields the target. The source folder is then what FTPDirTree re-creates on the target, as a
// put re-creates its local folder.
struct FileEntry {
    static constexpr int kNotTried = -1;
    static constexpr int kSent = 0;

    QString localFolder; // with or without a trailing separator
    QString localName;
    QString remoteName; // already cased
    QString remoteFolder; // empty: the folder the (target) connection starts in
    qint64 size = 0;

    // kSent, kNotTried, ids::kPutCanceled (cancelled), ids::kCannotOverwrite (refused to
    // overwrite), ids::kCannotCreateFolder (remote folder could not be made), or the code of the
    // failing transfer.
    int result = kNotTried;
    QString message; // the failure's text, for the log and the queue
    qint64 transferred = 0; // bytes really moved; positive means the file reached the server
};

} // namespace zelto
