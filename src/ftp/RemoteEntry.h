#pragma once

#include <QDateTime>
#include <QString>

namespace zelto {

// One entry of a remote folder's listing, as the server described it.
struct RemoteEntry {
    enum class Kind { File, Folder, Link };

    QString name; // as listed: shown as it is, but see isPlainName()
    Kind kind = Kind::File;
    qint64 size = -1; // bytes; -1 when the listing gave none that can be believed
    QDateTime modified {}; // UTC; invalid when the listing gave none that can be read

    [[nodiscard]] bool isFolder() const { return kind == Kind::Folder; }

    // Whether the name can be joined to a folder, local or remote, and still name this entry: a
    // hostile server may list "../x", "a/b" or names with line ends, which would write outside
    // the chosen folder or end a command early and start another.
    [[nodiscard]] static bool isPlainName(const QString& name);
    [[nodiscard]] bool isPlainName() const { return isPlainName(name); }
};

} // namespace zelto
