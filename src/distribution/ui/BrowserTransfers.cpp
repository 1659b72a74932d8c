#include "BrowserTransfers.h"

#include "distribution/RunOffThread.h"
#include "distribution/ui/CTransferDlg.h"
#include "ftp/JobServices.h"
#include "profiles/NameCasing.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>
#include <QPointer>

namespace zelto {

BrowserTransfers::BrowserTransfers(
    JobServices& jobs, JobOutcomeSink& outcomes, WorkerThreads& threads)
    : jobs_(jobs), outcomes_(outcomes), threads_(threads)
{
}

void BrowserTransfers::get(QWidget* parent, const JobSite& site,
    const std::vector<RemoteFile>& files, const QString& localFolder, QObject* context,
    std::function<void()> done)
{
    const QString casing = SettingsStore::get(settings::config::kFileCasingGet);
    std::vector<FileEntry> entries;
    for (const auto& file : files) {
        FileEntry entry;
        entry.localFolder = localFolder;
        entry.localName = casedName(file.name, casing);
        entry.remoteName = file.name;
        entry.size = file.size;
        entries.push_back(std::move(entry));
    }
    transfer(parent, TransferMode::Get, site, std::move(entries), false, context, std::move(done));
}

void BrowserTransfers::put(QWidget* parent, const JobSite& site, const QStringList& paths,
    QObject* context, std::function<void()> done)
{
    const QString casing = SettingsStore::get(settings::config::kFileCasingPut);
    std::vector<FileEntry> files;
    for (const auto& path : paths) {
        const QFileInfo info(path);
        if (!info.isFile())
            continue;
        FileEntry entry;
        entry.localFolder = info.absolutePath();
        entry.localName = info.fileName();
        entry.remoteName = casedName(info.fileName(), casing);
        entry.size = info.size();
        files.push_back(std::move(entry));
    }
    transfer(parent, TransferMode::Put, site, std::move(files), false, context, std::move(done));
}

void BrowserTransfers::transfer(QWidget* parent, TransferMode mode, const JobSite& site,
    std::vector<FileEntry> files, bool keepFolder, QObject* context, std::function<void()> done)
{
    TransferJob::Setup setup;
    setup.mode = mode;
    setup.sites = { site };
    setup.files = std::move(files);
    setup.keepFolder = keepFolder;
    open(parent, std::move(setup), context, std::move(done));
}

void BrowserTransfers::copy(QWidget* parent, const JobSite& source,
    const std::vector<RemoteFile>& files, const JobSite& target, QObject* context,
    std::function<void()> done)
{
    const QString casing = SettingsStore::get(settings::config::kFileCasingPut);
    TransferJob::Setup setup;
    setup.mode = TransferMode::Copy;
    setup.sites = { source };
    setup.target = target;
    for (const auto& file : files) {
        FileEntry entry;
        entry.localName = file.name;
        entry.remoteName = casedName(file.name, casing);
        entry.size = file.size;
        setup.files.push_back(std::move(entry));
    }
    open(parent, std::move(setup), context, std::move(done));
}

void BrowserTransfers::open(
    QWidget* parent, TransferJob::Setup setup, QObject* context, std::function<void()> done)
{
    if (setup.files.empty())
        return;
    const auto job = TransferJob::create(std::move(setup), jobs_, outcomes_, threads_);
    auto* window = new CTransferDlg(job, jobs_.notifier, nullptr, parent);
    window->show();
    job->start([guard = QPointer<QObject>(context), done = std::move(done)] {
        if (done)
            postWhileAlive(guard, done);
    });
}

} // namespace zelto
