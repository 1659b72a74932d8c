#pragma once

// The data files a run reads, laid out by the tests as the program stores them.

#include "FtpServer.h"
#include "TestFiles.h"

#include <QStringList>

namespace zelto::test {

// A site profile of the fixture server's user, or with `password` instead of the user's own.
inline void writeProfile(const QString& path, const FtpServer& server, const QString& password = {})
{
    const FtpUser& user = server.users().front();
    writeFile(path,
        QStringLiteral("[Settings]\nHost=%1\nUser=%2\nPassword=%3\nPort=%4\n")
            .arg(FtpServer::host(), user.name, password.isEmpty() ? user.password : password)
            .arg(server.port())
            .toUtf8());
}

// A queue of `items` idle uploads to a host that does not exist: a queue file of some size.
inline void writeWaitingQueue(const QString& path, int items)
{
    QString text = QStringLiteral("[QUEUE]\nNumQueues=%1\n").arg(items);
    for (int i = 1; i <= items; ++i)
        text += QStringLiteral("[QUEUE%1]\nLocalName=waiting%1.bin\nSource=Local\n"
                               "Destination=elsewhere.invalid\nNumTimes=1\nStatus=0\n")
                    .arg(i);
    writeFile(path, text.toUtf8());
}

// A file list of `entries`, each "folder|local name|remote name".
inline void writeList(const QString& path, const QStringList& entries)
{
    QString text = QStringLiteral("[LIST]\nNumItems=%1\n").arg(entries.size());
    for (int i = 0; i < entries.size(); ++i) {
        const QStringList parts = entries[i].split(u'|');
        text += QStringLiteral("[FILE%1]\nLocalName=%2\nFolder=%3\nRemoteName=%4\n")
                    .arg(i + 1)
                    .arg(parts[1], parts[0], parts.value(2));
    }
    writeFile(path, text.toUtf8());
}

// A link of the profiles `sites` and the file list `files`.
inline void writeLink(const QString& path, const QStringList& sites, const QString& files)
{
    QString text = QStringLiteral("[LinkItems]\nSites=%1\nFiles=%2\n").arg(sites.size()).arg(files);
    for (int i = 0; i < sites.size(); ++i)
        text += QStringLiteral("[SITE%1]\nSITE=%2\n").arg(i + 1).arg(sites[i]);
    writeFile(path, text.toUtf8());
}

} // namespace zelto::test
