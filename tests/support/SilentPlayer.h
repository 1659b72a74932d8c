#pragma once

#include "options/SoundPlayer.h"

namespace zelto::test {

// A sound player that plays nothing.
class SilentPlayer final : public SoundPlayer {
public:
    void playFile(const QString&) override { }
};

} // namespace zelto::test
