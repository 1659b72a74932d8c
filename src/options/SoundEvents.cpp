#include "SoundEvents.h"

#include "options/SoundPlayer.h"
#include "settings/SettingsStore.h"

namespace zelto {
namespace {

const settings::TextKey& keyOf(SoundEvent event)
{
    switch (event) {
    case SoundEvent::ConnectOk:
        return settings::sounds::kConnectOk;
    case SoundEvent::ConnectFail:
        return settings::sounds::kConnectFail;
    case SoundEvent::TransferOk:
        return settings::sounds::kTransferOk;
    case SoundEvent::TransferFail:
        return settings::sounds::kTransferFail;
    }
    return settings::sounds::kConnectOk;
}

} // namespace

SoundEvents::SoundEvents(SoundPlayer& player) : player_(player)
{
}

void SoundEvents::play(SoundEvent event)
{
    const QString file = SettingsStore::get(keyOf(event));
    if (file != QLatin1StringView(settings::sounds::kPlayerSentinel))
        player_.playFile(file);
}

} // namespace zelto
