#pragma once

#include "platform/TrayIndicator.h"

namespace zelto {

// An unattended run has no tray icon.
class NoTray final : public TrayIndicator {
public:
    void setState(TrayState) override { }
};

} // namespace zelto
