#include "WindowedRun.h"

#include "app/SettingsStore.h"
#include "app/StartupChecks.h"
#include "app/ui/CMainFrame.h"
#include "app/ui/MessageBoxNotifier.h"

#include <QApplication>

namespace zelto {

int WindowedRun::run(const StartRequest& request)
{
    MessageBoxNotifier notifier;
    if (request.unattended)
        return StartupChecks::runUnattended(request, notifier);

    StartupChecks::applyQueueStartRule();
    CMainFrame frame;
    // Without a tray icon to bring it back, an "ICONIC" start shows the window minimised.
    if (SettingsStore::get(settings::config::kWinState) == QLatin1StringView("ICONIC"))
        frame.showMinimized();
    else
        frame.show();
    return QApplication::exec();
}

} // namespace zelto
