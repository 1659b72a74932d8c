#include "HeadlessRun.h"

#include "app/ProgramInfo.h"
#include "app/StartupChecks.h"
#include "platform/ConsoleNotifier.h"

#include <cstdio>

namespace zelto {
namespace {

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
    return StartupChecks::runUnattended(request, notifier);
}

} // namespace zelto
