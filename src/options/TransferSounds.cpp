#include "TransferSounds.h"

#include "options/SoundSink.h"
#include "settings/SettingsStore.h"

namespace zelto {
namespace {

SoundEvent outcome(bool transferred)
{
    return transferred ? SoundEvent::TransferOk : SoundEvent::TransferFail;
}

} // namespace

TransferSounds::TransferSounds(SoundSink& sounds)
    : sounds_(sounds)
    , perBatch_(SettingsStore::get(settings::sounds::kTransferType)
          == QLatin1StringView(settings::sounds::kBatch))
{
}

void TransferSounds::fileDone(bool transferred)
{
    if (perBatch_)
        allTransferred_ = allTransferred_ && transferred;
    else
        sounds_.play(outcome(transferred));
}

void TransferSounds::runEnded()
{
    if (perBatch_)
        sounds_.play(outcome(allTransferred_));
}

} // namespace zelto
