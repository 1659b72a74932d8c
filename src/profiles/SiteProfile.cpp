#include "SiteProfile.h"

#include "platform/IniDocument.h"
#include "platform/PrivateProfile.h"
#include "profiles/StoredFormats.h"
#include "profiles/StoredIni.h"

#include <QFileInfo>

namespace zelto {

using namespace profilefile;

QString SiteProfile::fileNameFor(const QString& typedName)
{
    const qsizetype dot = typedName.indexOf(u'.');
    const QString name = dot > 0 ? typedName.left(dot) : typedName;
    return name + QLatin1String(kExtension);
}

QString SiteProfile::nameOf(const QString& file)
{
    const QString fileName = QFileInfo(file).fileName();
    return fileName.left(std::max<qsizetype>(0, fileName.size() - 4));
}

bool SiteProfile::isAnonymous(const QString& user)
{
    return user.compare(QLatin1String(kAnonymousUser), Qt::CaseInsensitive) == 0;
}

ProfileFields SiteProfile::readFields(const QString& file)
{
    const StoredIni ini(file);
    const auto read = [&](const char* key) {
        return ini.text(QLatin1String(kSection), QLatin1String(key), QString(), kFieldBuffer);
    };
    return { read(kHost), read(kUser), read(kPassword), read(kRemotePath), read(kDescription),
        read(kPort) };
}

SiteRecord SiteProfile::readSite(const QString& file, int bufferSize)
{
    const StoredIni ini(file);
    const auto read = [&](const char* key) {
        return ini.text(QLatin1String(kSection), QLatin1String(key), QString(), bufferSize);
    };
    // As an unsigned read of the platform's integer: a negative number wraps.
    const auto port
        = unsigned(ini.integer(QLatin1String(kSection), QLatin1String(kPort), kPortFallback));
    return { read(kHost), read(kUser), read(kPassword), read(kRemotePath), port };
}

bool SiteProfile::write(const QString& file, const ProfileFields& fields)
{
    return PrivateProfile::update(file, [&](IniDocument& document) {
        const auto set = [&](const char* key, const QString& value) {
            document.setValue(QLatin1String(kSection), QLatin1String(key), value);
        };
        set(kHost, fields.host);
        set(kUser, fields.user);
        set(kPassword, fields.password);
        set(kRemotePath, fields.remotePath);
        set(kDescription, fields.description);
        set(kPort, fields.port);
        return true;
    });
}

} // namespace zelto
