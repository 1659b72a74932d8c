#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

namespace zelto {

// The names in one remote folder, as a LIST reply gives them (Unix "ls -l" lines or DOS lines).
// Used to find out what is there; a name from a listing is never used as a path.
struct RemoteListing {
    QSet<QString> files; // everything that is not a folder: files, links, devices
    QSet<QString> folders;

    [[nodiscard]] bool contains(const QString& name) const
    {
        return files.contains(name) || folders.contains(name);
    }

    // The names of a LIST reply. Lines of neither format, and "." and "..", are left out; a link
    // counts by its own name, as a file.
    [[nodiscard]] static RemoteListing parse(const QByteArray& reply);
};

} // namespace zelto
