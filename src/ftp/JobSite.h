#pragma once

#include <QString>
#include <QtGlobal>

namespace zelto {

// The server a job works with, as the transfer window or an engine fills it in: where to log in,
// the folder to start in (empty: the login's own folder) and the size of all files of the job.
struct JobSite {
    QString server;
    QString user;
    QString password; // handed to libcurl only; never logged or shown
    quint16 port = 21;
    QString remoteFolder;
    qint64 totalBytes = 0;
    QString name; // the site's profile, when the job was started from one; for titles only
};

} // namespace zelto
