#include "OwnerOnly.h"

#include <QFileInfo>

namespace zelto {

bool restrictToOwner(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return false;
    QFile::Permissions wanted = QFile::ReadOwner | QFile::WriteOwner;
    if (info.isDir())
        wanted |= QFile::ExeOwner;
    constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
        | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    if ((info.permissions() & others) == QFile::Permissions()
        && (info.permissions() & wanted) == wanted)
        return true;
    return QFile::setPermissions(path, wanted);
}

} // namespace zelto
