#include "WindowedRun.h"

#include "app/BackgroundWork.h"
#include "app/ProgramServices.h"
#include "app/SettingsStore.h"
#include "app/StartupChecks.h"
#include "app/ui/CMainFrame.h"
#include "app/ui/MessageBoxNotifier.h"
#include "options/ui/QtSoundPlayer.h"

#include <QApplication>

namespace zelto {

int WindowedRun::run(const StartRequest& request)
{
    MessageBoxNotifier notifier;
    // Unattended, the main window is never shown: the work runs and the program ends with it,
    // not when the user closes a message box that the work showed.
    if (request.unattended) {
        QApplication::setQuitOnLastWindowClosed(false);
        QtSoundPlayer player;
        return StartupChecks::runUnattended(request, notifier, player);
    }

    StartupChecks::applyQueueStartRule();
    QtSoundPlayer player;
    ProgramServices services(notifier, player);
    BackgroundWork background(services);
    background.start();
    CMainFrame frame;
    // Without a tray icon to bring it back, an "ICONIC" start shows the window minimised.
    if (SettingsStore::get(settings::config::kWinState)
        == QLatin1StringView(settings::config::kWinStateIconic))
        frame.showMinimized();
    else
        frame.show();
    return QApplication::exec();
}

} // namespace zelto
