#pragma once

namespace zelto {

enum class SoundEvent { ConnectOk, ConnectFail, TransferOk, TransferFail };

// Plays the sound chosen for an event. Returns at once; a new sound cuts off one still playing.
class SoundSink {
public:
    virtual ~SoundSink() = default;
    virtual void play(SoundEvent event) = 0;
};

} // namespace zelto
