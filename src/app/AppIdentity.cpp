#include "AppIdentity.h"

#include <QCoreApplication>

namespace zelto {

void applyApplicationIdentity()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Pellmoor"));
    QCoreApplication::setApplicationName(QStringLiteral("Zelto"));
    QCoreApplication::setApplicationVersion(versionText());
}

QString versionText()
{
    return QStringLiteral(ZELTO_VERSION_TEXT);
}

} // namespace zelto
