#include "RemoteFtpScreen.h"

#include "distribution/ui/BrowserTransfers.h"
#include "distribution/ui/RemoteHalf.h"

namespace zelto {

RemoteFtpScreen::RemoteFtpScreen(JobServices& jobs, Notifier& notifier, WorkerThreads& threads,
    BrowserTransfers& transfers, QObject* parent)
    : QObject(parent), transfers_(transfers)
{
    for (auto& half : halves_)
        half = new RemoteHalf(jobs, notifier, threads);
    for (RemoteHalf* to : halves_) {
        connect(to, &RemoteHalf::copyRequested, this,
            [this, to](RemoteHalf* from, const QStringList& names) { copy(from, to, names); });
    }
}

void RemoteFtpScreen::copy(RemoteHalf* from, RemoteHalf* to, const QStringList& names)
{
    if (names.isEmpty())
        return;
    std::vector<BrowserTransfers::RemoteFile> files;
    for (const auto& name : names)
        files.push_back({ name, from->sizeOf(name) });
    transfers_.copy(to->window(), from->site(), files, to->site(), to, [to] { to->refresh(); });
}

} // namespace zelto
