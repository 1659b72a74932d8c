#include "QueueBookkeeping.h"

#include "distribution/RemotePlacement.h"
#include "log/LogSink.h"
#include "platform/Notifier.h"
#include "platform/PrivateProfile.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <utility>
#include <vector>

namespace zelto {
namespace {

bool isUpload(TransferMode mode)
{
    return mode == TransferMode::Put || mode == TransferMode::DistributionPut;
}

// Stopped by the user: ended by the cancel, or never started after it. A file not tried for
// another reason (a failed connect) carries that reason as its message.
bool cancelled(const FileEntry& file)
{
    return file.result == ids::kPutCanceled || file.result == ids::kGetCanceled
        || (file.result == FileEntry::kNotTried && file.message.isEmpty());
}

QString reasonOf(TransferMode mode, const FileEntry& file)
{
    if (cancelled(file) && isUpload(mode))
        return StringTable::text(ids::kPutCanceled);
    if (cancelled(file) && mode == TransferMode::Get)
        return StringTable::text(ids::kGetCanceled);
    return file.message;
}

} // namespace

QueueBookkeeping::QueueBookkeeping(LogSink& log, Notifier& notifier, QueueStore store)
    : log_(log), notifier_(notifier), store_(std::move(store))
{
}

QStringList QueueBookkeeping::notRecorded() const
{
    const std::lock_guard lock(mutex_);
    return notRecorded_;
}

void QueueBookkeeping::tellNotRecorded(const QStringList& queued, const QStringList& removed)
{
    QString text = QStringLiteral("The queue could not be written: %1.")
                       .arg(PrivateProfile::lastWriteFailure());
    if (!queued.isEmpty())
        text += QStringLiteral(" Not queued: %1.").arg(queued.join(QStringLiteral(", ")));
    if (!removed.isEmpty())
        text += QStringLiteral(" Sent but still in the queue: %1.")
                    .arg(removed.join(QStringLiteral(", ")));
    {
        const std::lock_guard lock(mutex_);
        notRecorded_.append(text);
    }
    notifier_.showMessage(text, MessageIcon::Stop);
}

void QueueBookkeeping::siteFinished(const SiteOutcome& outcome)
{
    if (outcome.mode == TransferMode::DistributionPut)
        recordSiteResults(outcome);
    else
        recordJobResults(outcome);
}

void QueueBookkeeping::recordSiteResults(const SiteOutcome& outcome)
{
    record(outcome, true);
}

void QueueBookkeeping::recordJobResults(const SiteOutcome& outcome)
{
    // DeletePut and DeleteGet need no step here: the put and get routines delete each source as
    // soon as it has arrived whole.
    record(outcome, false);
}

QueueItem QueueBookkeeping::itemOf(const SiteOutcome& outcome, const FileEntry& file)
{
    const JobSite& site = outcome.site;
    QueueItem item;
    item.localName = file.localName;
    item.remoteName = file.remoteName;
    item.remDirFile = file.remoteFolder;
    item.locDirFile = file.localFolder;
    item.reason = reasonOf(outcome.mode, file);
    item.password = site.password;
    item.login = site.user;
    item.remDir = site.remoteFolder;
    item.ftpMethod = QueueItem::methodOf(outcome.mode);
    item.fileSize = QString::number(file.size);
    item.port = QString::number(site.port);
    const QString local = QString::fromLatin1(queuefile::kLocal);
    if (isUpload(outcome.mode)) {
        item.source = local;
        item.destination = site.server;
    } else if (outcome.mode == TransferMode::Get) {
        item.source = site.server;
        item.destination = local;
    } else {
        const JobSite target = outcome.target ? *outcome.target : JobSite();
        item.source = site.server;
        item.destination = target.server;
        item.remPassword = target.password;
        item.remLogin = target.user;
        item.remRemDir = target.remoteFolder;
        item.remotePort = QString::number(target.port);
    }
    return item;
}

void QueueBookkeeping::record(const SiteOutcome& outcome, bool distribution)
{
    const bool resend = SettingsStore::get(settings::schedule::kResendFail) != 0;
    const QString localMachine = StringTable::text(ids::kLocalMachine);
    const QString& host = outcome.site.server;
    QString from = host;
    QString to = localMachine;
    if (isUpload(outcome.mode))
        std::swap(from, to);
    else if (outcome.mode == TransferMode::Copy)
        to = outcome.target ? outcome.target->server : QString();

    // In list order: a name may come twice (from two folders), once failed and once sent. Each
    // file's queue item is made in the update, so that a large job never holds them all.
    std::vector<std::pair<const FileEntry*, bool>> changes; // the file, and whether it was sent
    for (const FileEntry& file : outcome.files) {
        const bool sent = file.result == FileEntry::kSent;
        if (!sent) {
            LogEvent event;
            event.messageId = ids::kLogFtpTransferFailed;
            event.field1 = from;
            event.field2 = to;
            event.field3 = distribution
                ? RemotePlacement::remotePath(file.remoteFolder, file.localName)
                : file.localName;
            event.detail = reasonOf(outcome.mode, file);
            log_.write(event);
        }
        // A file sent whole leaves the queue, an empty one too (nothing moved, yet it arrived).
        if (sent || resend)
            changes.emplace_back(&file, sent);
    }
    const bool purge = !distribution && resend
        && SettingsStore::get(settings::schedule::kResendFreq)
            == QLatin1StringView(settings::schedule::kResendFreqByAttempts);
    if (changes.empty() && !purge)
        return;
    const bool written = store_.update([&](QueueBatch& batch) {
        for (const auto& [file, sent] : changes) {
            if (sent)
                batch.removeSent(itemOf(outcome, *file));
            else
                batch.appendFailed(itemOf(outcome, *file));
        }
        if (purge)
            batch.purgeByAttempts(SettingsStore::get(settings::schedule::kResendFreqNum));
    });
    if (written)
        return;
    QStringList queued;
    QStringList removed;
    for (const auto& [file, sent] : changes)
        (sent ? removed : queued)
            .append(RemotePlacement::localPath(file->localFolder, file->localName));
    tellNotRecorded(queued, removed);
}

} // namespace zelto
