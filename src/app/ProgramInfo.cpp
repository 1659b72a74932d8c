#include "ProgramInfo.h"

#include "app/AppIdentity.h"
#include "queue/QueueStore.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

namespace zelto {

QString ProgramInfo::usage()
{
    return QStringLiteral(
        "Usage: zelto [options]\n"
        "\n"
        "Without options Zelto opens its main window.\n"
        "\n"
        "  -b FILE.cmd   run an FTP command script, then end\n"
        "  -l NAME       send the link NAME to its sites in parallel, then end\n"
        "  -q            send the transfer queue once, wait for its jobs, then end\n"
        "  -q --reset    mark every item of the transfer queue as waiting to be sent\n"
        "                (a flag may also be written with a slash: /b, /l, /q)\n"
        "  --headless    run without any window, messages on standard error\n"
        "                (the default when no display is available)\n"
        "  --help        show this text\n"
        "  --version     show the version\n"
        "\n"
        "Exit status: 0 done (for -q: the queue is empty at the end), 1 some of the work\n"
        "failed, 2 the work could not start.\n");
}

QString ProgramInfo::versionLine()
{
    return QStringLiteral("Zelto %1").arg(versionText());
}

QString ProgramInfo::locations()
{
    return QStringLiteral("Settings: %1\nData folder: %2\nQueue file: %3\n")
        .arg(SettingsStore::location(), DataFolders::base(), QueueStore::defaultFile());
}

} // namespace zelto
