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
    QString path = folder.isEmpty() ? connection.currentFolder() : folder;
    if (path.isEmpty())
        path = QStringLiteral(".");
    // A path that ends in "/" is listed (LIST) rather than fetched.
    if (!path.endsWith(u'/'))
        path += u'/';
    return RemoteListing::fetch(connection, path);
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
