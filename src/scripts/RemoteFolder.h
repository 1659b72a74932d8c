#pragma once

#include "ftp/FtpResult.h"
#include "ftp/RemoteListing.h"

#include <QString>

#include <optional>

namespace zelto {

class FtpConnection;

// A remote name taken apart: the folder it names (empty: the connection's current folder) and
// its last part.
struct RemoteName {
    QString folder;
    QString name;

    [[nodiscard]] static RemoteName of(const QString& path);
};

// What a script finds out about a remote folder by listing it.
class RemoteFolder final {
public:
    RemoteFolder() = delete;

    // The names in `folder` (empty: the connection's current folder), from its listing.
    [[nodiscard]] static FtpValue<RemoteListing> list(
        FtpConnection& connection, const QString& folder);
    // Whether the folder of `path` holds its last part; none when that folder cannot be listed.
    [[nodiscard]] static std::optional<bool> holds(FtpConnection& connection, const QString& path);
};

} // namespace zelto
