#pragma once

#include <QString>

namespace zelto {

// Plays one sound file. Returns at once and may be called from any thread; a new sound cuts off
// one still playing; a file that cannot be played plays nothing and reports nothing.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;
    virtual void playFile(const QString& path) = 0;
};

} // namespace zelto
