#pragma once

#include "distribution/TransferJob.h"
#include "ftp/JobSite.h"

#include <QStringList>

#include <functional>

class QObject;
class QWidget;

namespace zelto {

class JobOutcomeSink;
class WorkerThreads;
struct JobServices;

// Starts the browser's transfers, each in a transfer window of its own: a get of remote files
// into a local folder, a put of local files into a remote folder, a copy from one site to
// another. The names are cased as FileCasingGet (the local name of a get) and FileCasingPut (the
// remote name of a put or copy) ask.
class BrowserTransfers final {
public:
    BrowserTransfers(JobServices& jobs, JobOutcomeSink& outcomes, WorkerThreads& threads);
    BrowserTransfers(const BrowserTransfers&) = delete;
    BrowserTransfers& operator=(const BrowserTransfers&) = delete;

    // A remote file to get: its name in the site's folder and its size as listed.
    struct RemoteFile {
        QString name;
        qint64 size = 0;
    };
    // `done` runs on the UI thread once the job has ended, unless `context` has gone by then.
    void get(QWidget* parent, const JobSite& site, const std::vector<RemoteFile>& files,
        const QString& localFolder, QObject* context, std::function<void()> done);
    void put(QWidget* parent, const JobSite& site, const QStringList& paths, QObject* context,
        std::function<void()> done);
    // A get (TransferMode::Get) or put (TransferMode::Put) of files already placed and cased;
    // `keepFolder` for those that keep their folders (FolderUpload, FolderDownload).
    void transfer(QWidget* parent, TransferMode mode, const JobSite& site,
        std::vector<FileEntry> files, bool keepFolder, QObject* context,
        std::function<void()> done);
    void copy(QWidget* parent, const JobSite& source, const std::vector<RemoteFile>& files,
        const JobSite& target, QObject* context, std::function<void()> done);

private:
    void open(
        QWidget* parent, TransferJob::Setup setup, QObject* context, std::function<void()> done);

    JobServices& jobs_;
    JobOutcomeSink& outcomes_;
    WorkerThreads& threads_;
};

} // namespace zelto
