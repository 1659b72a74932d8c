#pragma once

#include "options/SoundSink.h"

namespace zelto {

class SoundPlayer;

// Plays the file the user chose for an event (section SOUNDS). An event whose key is absent plays
// nothing; any stored value, an empty one included, goes to the player.
class SoundEvents final : public SoundSink {
public:
    explicit SoundEvents(SoundPlayer& player);

    void play(SoundEvent event) override;

private:
    SoundPlayer& player_;
};

} // namespace zelto
