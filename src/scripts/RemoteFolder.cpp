#include "RemoteFolder.h"

#include "ftp/FtpConnection.h"

namespace zelto {

RemoteName RemoteName::of(const QString& path)
{
    const qsizetype slash = path.lastIndexOf(u'/');
    if (slash < 0)
        return { {}, path };
    return { slash == 0 ? QStringLiteral("/") : path.left(slash), path.mid(slash + 1) };
}

FtpValue<RemoteListing> RemoteFolder::list(FtpConnection& connection, const QString& folder)
{
    return connection.list(folder);
}

std::optional<bool> RemoteFolder::holds(FtpConnection& connection, const QString& path)
{
    const RemoteName name = RemoteName::of(path);
    const auto listing = list(connection, name.folder);
    if (!listing.ok())
        return std::nullopt;
    return listing.value.contains(name.name);
}

} // namespace zelto
