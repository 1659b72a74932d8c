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

FtpResult RemoteFolder::list(
    FtpConnection& connection, const QString& folder, RemoteListing& listing)
{
    QString path = folder.isEmpty() ? connection.currentFolder() : folder;
    if (path.isEmpty())
        path = QStringLiteral(".");
    // A path that ends in "/" is listed (LIST) rather than fetched.
    if (!path.endsWith(u'/'))
        path += u'/';
    return RemoteListing::fetch(connection, path, listing);
}

std::optional<bool> RemoteFolder::holds(FtpConnection& connection, const QString& path)
{
    const RemoteName name = RemoteName::of(path);
    RemoteListing listing;
    if (!list(connection, name.folder, listing).ok())
        return std::nullopt;
    return listing.contains(name.name);
}

} // namespace zelto
