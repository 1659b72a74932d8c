#include "HeadlessRun.h"

#include "app/ProgramInfo.h"
#include "app/RunWindows.h"
#include "app/StartupChecks.h"
#include "options/SoundPlayer.h"
#include "platform/ConsoleNotifier.h"

#include <cstdio>

namespace zelto {
namespace {

// A run without a display plays no sounds.
class SilentPlayer final : public SoundPlayer {
public:
    void playFile(const QString&) override { }
};

void print(const QString& text)
{
    std::fputs(text.toLocal8Bit().constData(), stdout);
    std::fflush(stdout);
}

} // namespace

int HeadlessRun::run(const StartRequest& request)
{
    ConsoleNotifier notifier;
    if (!request.unattended) {
        print(ProgramInfo::versionLine() + u'\n' + ProgramInfo::locations());
        return kExitOk;
    }
    SilentPlayer player;
    return StartupChecks::runUnattended(request, notifier, player, {});
}

} // namespace zelto
