#include "StartupChecks.h"

#include "app/LinkCommand.h"
#include "app/QueueCommand.h"
#include "app/RunWindows.h"
#include "app/ScriptCommand.h"
#include "platform/Notifier.h"
#include "platform/PrivateProfile.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "queue/QueueFileFormat.h"
#include "queue/QueueStore.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>

namespace zelto {

int StartupChecks::refusal(const StartRequest& request)
{
    if (!request.scriptFile.isEmpty()) {
        const bool isScript
            = request.scriptFile.endsWith(QLatin1StringView(".cmd"), Qt::CaseInsensitive);
        if (!isScript || !QFileInfo(request.scriptFile).isFile())
            return ids::kScriptOpenFailed;
    }
    if (!request.linkName.isEmpty() && !QFileInfo(DataFolders::linkFile(request.linkName)).isFile())
        return ids::kLinkNotFound;
    return 0;
}

void StartupChecks::applyQueueStartRule()
{
    constexpr int kEmptyQueue = 0;
    if (SettingsStore::get(settings::schedule::kStartQueueProg) != kEmptyQueue)
        return;
    PrivateProfile::writeString(QueueStore::defaultFile(),
        QLatin1StringView(queuefile::kCountSection), QLatin1StringView(queuefile::kCountKey),
        QStringLiteral("0"));
}

int StartupChecks::runUnattended(
    const StartRequest& request, Notifier& notifier, SoundPlayer& player, const RunWindows& windows)
{
    if (const int refused = refusal(request)) {
        notifier.showMessage(StringTable::text(refused), MessageIcon::Stop);
        return kExitRefused;
    }
    if (request.resetQueue)
        return QueueCommand::reset(notifier);
    if (request.queueRun)
        return QueueCommand::run(notifier, player);
    if (!request.linkName.isEmpty())
        return LinkCommand::run(request.linkName, notifier, player, windows.linkJob);
    return ScriptCommand::run(request.scriptFile, notifier, player, windows.script);
}

} // namespace zelto
