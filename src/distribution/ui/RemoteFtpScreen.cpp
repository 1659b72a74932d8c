#include "RemoteFtpScreen.h"

#include "distribution/ui/BrowserTransfers.h"
#include "distribution/ui/CRemFilesView.h"
#include "distribution/ui/RemoteHalf.h"

#include <QAction>

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
    for (std::size_t i = 0; i < halves_.size(); ++i) {
        auto* action = new QAction(tr("&Copy to the Other Site"), halves_[i]->files());
        action->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C));
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this, [this, i] { copySelected(i); });
        halves_[i]->files()->addAction(action);
    }
}

void RemoteFtpScreen::copySelected(std::size_t from)
{
    RemoteHalf* source = halves_.at(from);
    RemoteHalf* target = halves_.at(1 - from);
    if (source->isConnected() && target->isConnected() && !source->isBusy() && !target->isBusy())
        copy(source, target, source->selectedFileNames());
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
