#include "EngineOptions.h"

#include "settings/SettingsStore.h"

namespace zelto {

bool EngineOptions::overwriteSetting()
{
    return SettingsStore::get(settings::config::kOverwrite) != QLatin1StringView(settings::kNo);
}

} // namespace zelto
