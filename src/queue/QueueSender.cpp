#include "QueueSender.h"

#include "distribution/ParallelStarter.h"
#include "distribution/RunOffThread.h"
#include "platform/Notifier.h"
#include "platform/PrivateProfile.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace zelto {

// One send: its jobs, started one after another, and how many have ended.
struct QueueSender::Run {
    std::vector<TransferJob::Setup> setups;
    std::vector<std::shared_ptr<TransferJob>> jobs;
    std::size_t ended = 0;
    Ended onEnded;
};

namespace {

quint16 portOf(const QString& text)
{
    return quint16(PrivateProfile::toInt(text, queuefile::kDefaultPort));
}

FileEntry fileOf(const QueueItem& item, TransferMode mode, DirTree dirTree, bool shortNames)
{
    FileEntry file;
    file.localFolder = item.locDirFile;
    file.localName = item.localName;
    file.remoteName = item.remoteName;
    file.size = PrivateProfile::leadingNumber(item.fileSize);
    if (mode == TransferMode::Get) {
        // The get engine leaves a failed file's folders as they were: it places it the same way.
        file.remoteFolder = item.remDirFile;
        return file;
    }
    // Only the put engine shortens names; a copy keeps them.
    const bool shorten = shortNames && mode == TransferMode::Put;
    const QString name = shorten ? RemotePlacement::shortName(item.remoteName) : item.remoteName;
    file.remoteFolder = QueueSender::resendFolder(item.locDirFile, item.remDirFile, name, dirTree);
    if (mode == TransferMode::Put) {
        // The put routine sends exactly the size it is given, and the file may have changed
        // since it failed.
        const QFileInfo local(RemotePlacement::localPath(item.locDirFile, item.localName));
        if (local.isFile())
            file.size = local.size();
    }
    return file;
}

} // namespace

QueueSender::QueueSender(
    JobServices& services, WorkerThreads& threads, JobOutcomeSink& bookkeeping, QueueStore store)
    : services_(services), threads_(threads), bookkeeping_(bookkeeping), store_(std::move(store))
{
}

QueueSender::~QueueSender() = default;

std::vector<QueueSender::Group> QueueSender::groupsOf(const std::vector<QueueItem>& items)
{
    QStringList keys;
    QSet<QString> seen;
    QHash<std::pair<QString, QString>, std::vector<int>> pairs;
    for (const QueueItem& item : items) {
        pairs[{ item.source, item.destination }].push_back(item.position);
        if (item.status != QueueItem::kIdle)
            continue;
        const QString key = item.source + u' ' + item.destination;
        if (!seen.contains(key)) {
            seen.insert(key);
            keys.append(key);
        }
    }
    std::vector<Group> groups;
    for (const QString& key : keys) {
        const QStringList words = key.simplified().split(u' ', Qt::SkipEmptyParts);
        // A side missing names no site to connect to: the items stay idle instead of failing
        // again. Every item that has no section is such an item.
        if (words.size() < 2)
            continue;
        Group group { words.value(0), words.value(1), {} };
        group.positions = pairs.value({ group.source, group.destination });
        groups.push_back(std::move(group));
    }
    return groups;
}

TransferJob::Setup QueueSender::setupOf(const std::vector<QueueItem>& items)
{
    TransferJob::Setup setup;
    if (items.empty())
        return setup;
    const QueueItem& last = items.back();
    setup.mode = last.direction();
    JobSite site;
    site.server = setup.mode == TransferMode::Put ? last.destination : last.source;
    site.user = last.login;
    site.password = last.password;
    site.port = portOf(last.port);
    site.remoteFolder = last.remDir;
    setup.sites = { site };
    if (setup.mode == TransferMode::Copy) {
        JobSite target;
        target.server = last.destination;
        target.user = last.remLogin;
        target.password = last.remPassword;
        target.port = portOf(last.remotePort);
        target.remoteFolder = last.remRemDir;
        setup.target = target;
    }
    const DirTree dirTree = RemotePlacement::dirTreeSetting(false);
    const bool shortNames = RemotePlacement::shortNamesSetting();
    for (const QueueItem& item : items)
        setup.files.push_back(fileOf(item, setup.mode, dirTree, shortNames));
    return setup;
}

QString QueueSender::resendFolder(
    const QString& localFolder, const QString& remoteFolder, const QString& name, DirTree mode)
{
    const Placement added = RemotePlacement::onServer(localFolder, QString(), name, mode);
    if (added.folders.empty())
        return remoteFolder;
    const QChar separator = RemotePlacement::remoteSeparator(remoteFolder);
    QStringList parts;
    for (const FolderStep& step : added.folders)
        parts.append(step.name);
    const QString tail = parts.join(separator);
    QString folder = remoteFolder;
    while (folder.size() > 1 && folder.endsWith(separator))
        folder.chop(1);
    if (folder == tail)
        return QString();
    if (folder.endsWith(separator + tail))
        return folder.chopped(tail.size());
    return remoteFolder;
}

void QueueSender::sendQueue(Ended ended)
{
    ++reading_;
    runOffThread(
        threads_, &context_, [store = store_] { return takeIdleItems(store); },
        [this, ended = std::move(ended)](Taken queue) { startSend(std::move(queue), ended); });
}

QueueSender::Taken QueueSender::takeIdleItems(QueueStore store)
{
    Taken queue;
    const bool marked = store.update([&](QueueBatch& batch) {
        queue.count = batch.count();
        // Items left marked by a run that died go again, as idle ones.
        batch.releaseAbandoned();
        const std::vector<QueueItem> items = batch.items(QueueReader::Sender);
        for (const Group& group : groupsOf(items)) {
            std::vector<QueueItem> taken;
            for (const int position : group.positions) {
                batch.markSending(position);
                taken.push_back(items[std::size_t(position - 1)]);
            }
            if (!taken.empty())
                queue.setups.push_back(setupOf(taken));
        }
    });
    if (!marked) {
        queue.setups.clear();
        queue.notRecorded = PrivateProfile::lastWriteFailure();
    }
    return queue;
}

void QueueSender::startSend(Taken queue, Ended ended)
{
    --reading_;
    if (queue.notRecorded) {
        services_.notifier.showMessage(
            QStringLiteral("The queue could not be written: %1. No item was marked as being sent, "
                           "and none was sent.")
                .arg(*queue.notRecorded),
            MessageIcon::Stop);
        if (ended)
            ended(false);
        return;
    }
    if (queue.count < 1) {
        if (ended)
            ended(true);
        return;
    }
    auto run = std::make_shared<Run>();
    run->setups = std::move(queue.setups);
    run->onEnded = std::move(ended);
    runs_.push_back(run);
    startNext(run);
}

bool QueueSender::starting() const
{
    return reading_ > 0 || std::any_of(runs_.begin(), runs_.end(), [](const auto& run) {
        return run->jobs.size() < run->setups.size();
    });
}

void QueueSender::startNext(const std::shared_ptr<Run>& run)
{
    while (run->jobs.size() < run->setups.size()) {
        TransferJob::Setup& setup = run->setups[run->jobs.size()];
        const bool pause = setup.mode != TransferMode::Copy;
        auto job = TransferJob::create(std::move(setup), services_, bookkeeping_, threads_);
        run->jobs.push_back(job);
        // The end comes on the job's thread; it is counted on this one, while the send is kept.
        job->start([this, guard = QPointer<QObject>(&context_), weak = std::weak_ptr<Run>(run)] {
            postWhileAlive(guard, [this, weak] {
                if (const auto kept = weak.lock())
                    jobEnded(kept);
            });
        });
        if (pause && run->jobs.size() < run->setups.size()) {
            QTimer::singleShot(
                ParallelStarter::kInterval, &context_, [this, run] { startNext(run); });
            return;
        }
    }
    // A send without jobs ends from the event loop too, as the caller expects.
    if (run->setups.empty())
        QTimer::singleShot(0, &context_, [this, run] { finish(run); });
}

void QueueSender::jobEnded(const std::shared_ptr<Run>& run)
{
    ++run->ended;
    if (run->ended == run->setups.size() && run->jobs.size() == run->setups.size())
        finish(run);
}

void QueueSender::finish(const std::shared_ptr<Run>& run)
{
    std::erase(runs_, run);
    if (run->onEnded)
        run->onEnded(false);
}

} // namespace zelto
