#include "ProgramServices.h"

namespace zelto {

ProgramServices::ProgramServices(Notifier& notifier, SoundPlayer& player)
    : ProgramServices(notifier, player, noTray_)
{
}

ProgramServices::ProgramServices(Notifier& notifier, SoundPlayer& player, TrayIndicator& tray)
    : log_(notifier), sounds_(player), jobs_ { log_, sounds_, tray, notifier }
{
}

} // namespace zelto
