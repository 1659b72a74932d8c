#include "TempSettings.h"

#include "app/AppIdentity.h"
#include "settings/SettingsStore.h"

#include <QDir>

namespace zelto::test {

TempSettings::TempSettings()
    : oldConfigHome_(qgetenv("XDG_CONFIG_HOME")), oldDataHome_(qgetenv("XDG_DATA_HOME"))
{
    applyApplicationIdentity();
    QDir().mkpath(configHome());
    QDir().mkpath(dataHome());
    qputenv("XDG_CONFIG_HOME", configHome().toLocal8Bit());
    qputenv("XDG_DATA_HOME", dataHome().toLocal8Bit());
    SettingsStore::relocate(configHome());
}

TempSettings::~TempSettings()
{
    const auto restore = [](const char* name, const QByteArray& old) {
        if (old.isNull())
            qunsetenv(name);
        else
            qputenv(name, old);
    };
    restore("XDG_CONFIG_HOME", oldConfigHome_);
    restore("XDG_DATA_HOME", oldDataHome_);
}

QString TempSettings::settingsFile() const
{
    return configHome() + QStringLiteral("/Pellmoor/Zelto.conf");
}

QString TempSettings::appDataDir() const
{
    return dataHome() + QStringLiteral("/Pellmoor/Zelto");
}

} // namespace zelto::test
