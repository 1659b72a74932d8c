#pragma once

#include "options/SoundPlayer.h"

#include <QSoundEffect>

namespace zelto {

// Plays wave files through Qt Multimedia on the thread that made the player (the UI thread);
// calls from workers are queued there. Without an audio device, or with a file that is missing
// or cannot be decoded, it stays silent.
class QtSoundPlayer final : public SoundPlayer {
public:
    QtSoundPlayer() = default;
    QtSoundPlayer(const QtSoundPlayer&) = delete;
    QtSoundPlayer& operator=(const QtSoundPlayer&) = delete;

    void playFile(const QString& path) override;

private:
    void start(const QString& path);

    QSoundEffect effect_;
};

} // namespace zelto
