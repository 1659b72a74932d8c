#include "FileMask.h"

namespace zelto {

FileMask::FileMask(const QString& mask)
    : pattern_(QRegularExpression::wildcardToRegularExpression(
                   mask.trimmed().isEmpty() ? QStringLiteral("*") : mask.trimmed()),
        QRegularExpression::CaseInsensitiveOption)
{
}

bool FileMask::matches(const QString& name) const
{
    return pattern_.match(name).hasMatch();
}

} // namespace zelto
