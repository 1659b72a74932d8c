#pragma once

#include "options/ui/COptionsPage.h"

namespace zelto {

class SoundPlayer;

// "Sounds": a wave file for each connection and transfer event, and whether the transfer sounds
// play per file or once per batch.
class CSoundsPage final : public COptionsPage {
    Q_OBJECT
public:
    // Test plays through `player`, the one the transfers use.
    explicit CSoundsPage(SoundPlayer& player, QWidget* parent = nullptr);
};

} // namespace zelto
