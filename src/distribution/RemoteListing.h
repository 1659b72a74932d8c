#pragma once

#include "ftp/FtpResult.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QSet>
#include <QString>

namespace zelto {

class FtpConnection;

// The names in one remote folder, as a LIST reply gives them (Unix "ls -l" lines or DOS lines).
// Used to find out what is there; a name from a listing is never used as a path.
struct RemoteListing {
    // A reply past either bound is refused: a server that never ends its listing must not take
    // the client's memory. Both are far beyond any folder a person keeps.
    static constexpr qint64 kMaxBytes = 64LL * 1024 * 1024;
    static constexpr qsizetype kMaxEntries = 500'000;

    QSet<QString> files; // everything that is not a folder: files, links, devices
    QSet<QString> folders;

    [[nodiscard]] bool contains(const QString& name) const
    {
        return files.contains(name) || folders.contains(name);
    }
    [[nodiscard]] qsizetype size() const { return files.size() + folders.size(); }

    // Takes one line of a LIST reply (its line end may still be on it). Lines of neither format,
    // and "." and "..", are left out; a link counts by its own name, as a file. Linear in the
    // length of the line, whatever it holds.
    void addLine(QByteArrayView line);

    // The names of a whole LIST reply.
    [[nodiscard]] static RemoteListing parse(const QByteArray& reply);
    // Lists `path` (which ends in "/") on `connection`, taking the lines as they arrive. A reply
    // past kMaxBytes or kMaxEntries is refused with kReplyNotParsed and says which bound it passed.
    [[nodiscard]] static FtpValue<RemoteListing> fetch(
        FtpConnection& connection, const QString& path);
};

} // namespace zelto
