#include "Paths.h"

#include <QDir>

namespace zelto {

bool endsWithSeparator(const QString& path)
{
    return path.endsWith(u'/') || path.endsWith(u'\\');
}

QString joinPath(const QString& left, const QString& right)
{
    if (left.isEmpty() || endsWithSeparator(left))
        return left + right;
    return left + QDir::separator() + right;
}

} // namespace zelto
