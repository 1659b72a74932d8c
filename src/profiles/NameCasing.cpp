#include "NameCasing.h"

#include "settings/SettingsKeys.h"

namespace zelto {

QString casedName(const QString& name, const QString& casing)
{
    if (casing == QLatin1StringView(settings::config::kCasingUpper))
        return name.toUpper();
    if (casing == QLatin1StringView(settings::config::kCasingLower))
        return name.toLower();
    return name;
}

} // namespace zelto
