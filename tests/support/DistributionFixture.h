#pragma once

// What the engine, job and window tests share: a recording outcome sink, one fixture server for
// the engines or three for the jobs with a local tree of nested folders to send, and ways to look
// at the results on both sides.

#include "DataFiles.h"
#include "FtpTestKit.h"
#include "TestFiles.h"
#include "distribution/FileEntry.h"
#include "distribution/FileSet.h"
#include "distribution/JobOutcomeSink.h"
#include "distribution/TransferJob.h"
#include "distribution/WorkerThreads.h"
#include "ftp/CTransferSession.h"
#include "ftp/JobProgress.h"
#include "platform/StringIds.h"
#include "settings/DataFolders.h"
#include "settings/SettingsStore.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QMap>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace zelto::test {

// Every site's end, in the order the jobs handed them over, whatever thread they came from.
class RecordingOutcomes final : public JobOutcomeSink {
public:
    struct Site {
        JobSite site;
        quint16 targetPort = 0; // a copy's destination
        std::vector<FileEntry> files;
    };

    void siteFinished(const SiteOutcome& outcome) override
    {
        const std::lock_guard lock(mutex_);
        sites_.push_back(
            { outcome.site, outcome.target ? outcome.target->port : quint16(0), outcome.files });
    }

    [[nodiscard]] std::vector<Site> sites() const
    {
        const std::lock_guard lock(mutex_);
        return sites_;
    }
    [[nodiscard]] std::size_t count() const { return sites().size(); }
    // The end of the site on `port`; fails the test when there is none or more than one.
    [[nodiscard]] Site of(quint16 port) const
    {
        const auto all = sites();
        const auto on = [port](const Site& end) { return end.site.port == port; };
        EXPECT_EQ(std::count_if(all.begin(), all.end(), on), 1) << "ends of port " << port;
        const auto found = std::find_if(all.begin(), all.end(), on);
        return found == all.end() ? Site {} : *found;
    }

private:
    mutable std::mutex mutex_;
    std::vector<Site> sites_;
};

// A file-list entry naming a file or a folder.
inline FileListEntry listed(const QString& folder, const QString& localName)
{
    FileListEntry entry;
    entry.folder = folder;
    entry.localName = localName;
    return entry;
}

// Relative path -> SHA-1 of the contents, for every file under `root`.
inline QMap<QString, QByteArray> treeOf(const QString& root)
{
    QMap<QString, QByteArray> tree;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            tree.insert(QDir(root).relativeFilePath(file.fileName()),
                QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1));
    }
    return tree;
}

// The results of the files, in their order.
inline std::vector<int> resultsOf(const std::vector<FileEntry>& files)
{
    std::vector<int> results;
    for (const auto& entry : files)
        results.push_back(entry.result);
    return results;
}

// One pyftpdlib server with quick time-outs for the engines, and a local folder.
class EngineFixture : public FtpTest {
protected:
    EngineFixture() : FtpTest(2) { }
    void SetUp() override
    {
        FtpTest::SetUp();
        if (!IsSkipped())
            server_ = std::make_unique<FtpServer>();
    }

    [[nodiscard]] std::unique_ptr<CTransferSession> session()
    {
        return std::make_unique<CTransferSession>(recorder_.services, &progress_);
    }

    [[nodiscard]] QString home() const { return server_->home(); }
    [[nodiscard]] QString local(const QString& path = {}) const
    {
        return path.isEmpty() ? local_.path() : local_.filePath(path);
    }

    // A local file of `size` bytes under the local folder, as a file entry to send.
    [[nodiscard]] FileEntry localFile(const QString& folder, const QString& name, qint64 size)
    {
        EXPECT_TRUE(makeFile(local(folder + u'/' + name), size, ++seed_));
        FileEntry entry;
        entry.localFolder = local(folder);
        entry.localName = entry.remoteName = name;
        entry.size = size;
        return entry;
    }

    [[nodiscard]] static QStringList filesUnder(const QString& root) { return treeOf(root).keys(); }
    [[nodiscard]] static QStringList foldersUnder(const QString& root)
    {
        QStringList folders;
        QDirIterator it(root, QDir::Dirs | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (it.hasNext())
            folders.append(QDir(root).relativeFilePath(it.next()));
        folders.sort();
        return folders;
    }

    // The second field of each record with `id`, in order.
    [[nodiscard]] QStringList logged(int id) const
    {
        QStringList fields;
        for (const auto& event : recorder_.events())
            if (event.messageId == id)
                fields.append(event.field2);
        return fields;
    }

    // How often each command reached the server since the last call.
    [[nodiscard]] std::map<QString, int> newCommands()
    {
        const auto log = server_->commandLog();
        std::map<QString, int> counts;
        for (size_t i = seen_; i < log.size(); ++i)
            ++counts[log[i].command];
        seen_ = log.size();
        return counts;
    }

    QTemporaryDir local_;
    std::unique_ptr<FtpServer> server_;
    quint64 seed_ = 0;
    size_t seen_ = 0;
};

// Three pyftpdlib servers and a local tree of nested folders, sent with FULL_PATH, and the jobs
// that send it.
class DistributionFixture : public FtpTest {
protected:
    static constexpr int kServers = 3;
    static constexpr std::chrono::seconds kJobDeadline { 20 };

    // No worker may outlive its job.
    void TearDown() override { EXPECT_TRUE(threads_.waitAll(kJobDeadline)); }

    DistributionFixture() : FtpTest(5) { }
    void SetUp() override
    {
        FtpTest::SetUp();
        if (IsSkipped())
            return;
        // Every file under the site's folder, in the nested folders it came from.
        SettingsStore::set(settings::config::kFtpDirTree, QStringLiteral("FULL_PATH"));
        for (int i = 0; i < kServers; ++i)
            servers_.push_back(std::make_unique<FtpServer>());
        ASSERT_TRUE(local_.isValid());
        // Nested folders, a file at each depth, one empty file and one of a few blocks.
        const std::pair<const char*, qint64> files[]
            = { { "www/index.html", 1200 }, { "www/css/site.css", 0 },
                  { "www/img/logo.png", 300'000 }, { "www/img/icons/a.ico", 4096 } };
        quint64 seed = 1;
        for (const auto& [path, size] : files)
            ASSERT_TRUE(makeFile(localPath(path), size, seed++));
    }

    // A job that sends `files` (the local tree's when none) and hands each site's end to `sink`
    // (the fixture's outcomes when none).
    std::shared_ptr<TransferJob> makeJob(std::vector<JobSite> sites, bool serial,
        JobOutcomeSink* sink = nullptr, std::vector<FileEntry> files = {})
    {
        TransferJob::Setup setup;
        setup.serial = serial;
        setup.sites = std::move(sites);
        setup.files = files.empty() ? fileSet() : std::move(files);
        return TransferJob::create(
            std::move(setup), recorder_.services, sink ? *sink : outcomes_, threads_);
    }
    [[nodiscard]] static bool ended(const std::shared_ptr<TransferJob>& job)
    {
        return waitUntil([&] { return job->done(); }, kJobDeadline);
    }
    // The result of every file of the tree, or the first cancelled in its transfer and the
    // others never tried.
    [[nodiscard]] std::vector<int> all(int result) const
    {
        return std::vector<int>(fileSet().size(), result);
    }
    [[nodiscard]] std::vector<int> firstCancelled() const
    {
        auto results = all(FileEntry::kNotTried);
        results.front() = ids::kPutCanceled;
        return results;
    }

    [[nodiscard]] QString localPath(const QString& relative) const
    {
        return local_.path() + u'/' + relative;
    }
    [[nodiscard]] JobSite site(int server) const { return siteOf(*servers_[server]); }
    // Profile "site<server>" of fixture server `server`.
    [[nodiscard]] QString profileOf(int server) const
    {
        const QString file = DataFolders::profiles() + QStringLiteral("/site%1.ini").arg(server);
        writeProfile(file, *servers_[server]);
        return file;
    }
    // Link `name` of the fixture servers `servers`, over a list of the local tree's files.
    void writeLinkOf(const QString& name, const std::vector<int>& servers) const
    {
        const QString list = DataFolders::files() + QStringLiteral("/web/flist.ini");
        QStringList entries;
        for (const FileEntry& file : fileSet())
            entries << file.localFolder + u'|' + file.localName;
        writeList(list, entries);
        QStringList profiles;
        for (int server : servers)
            profiles << profileOf(server);
        writeLink(DataFolders::linkFile(name), profiles, list);
    }
    // The local tree as a file list names it: its top folder, expanded by the file set.
    [[nodiscard]] std::vector<FileEntry> fileSet() const
    {
        return FileSet::build({ listed(local_.path(), QStringLiteral("www")) }).files();
    }
    // Every file of the set arrived whole at `server`, under its whole local path (FULL_PATH).
    [[nodiscard]] ::testing::AssertionResult served(int server) const
    {
        for (const FileEntry& file : fileSet()) {
            const QString path = file.localFolder + u'/' + file.localName;
            if (auto same = sameBytes(path, servers_[server]->home() + path); !same)
                return same << " (server " << server << ")";
        }
        return ::testing::AssertionSuccess();
    }
    [[nodiscard]] bool empty(int server) const
    {
        return treeOf(servers_[server]->home()).isEmpty();
    }
    void clearServers() const
    {
        for (const auto& server : servers_) {
            QDir(server->home()).removeRecursively();
            QDir().mkpath(server->home());
        }
    }
    // Holds `server`'s reply to `command` so long (the fault replaces the server's others).
    void stall(
        int server, const char* command, std::chrono::milliseconds time = FtpFaults::kForever) const
    {
        servers_[server]->setFaults({ .stall = { { QLatin1String(command), time } } });
    }
    [[nodiscard]] int count(int server, const char* command) const
    {
        return servers_[server]->commandCount(QLatin1String(command));
    }
    // The server has received the command more than `before` times, within 20 s.
    [[nodiscard]] bool commandSeen(int server, const char* command, int before = 0) const
    {
        using namespace std::chrono_literals;
        return waitUntil([&] { return count(server, command) > before; }, 20s);
    }

    RecordingOutcomes outcomes_;
    QTemporaryDir local_;
    std::vector<std::unique_ptr<FtpServer>> servers_;
    WorkerThreads threads_; // last: its workers have ended before what they report to goes
};

} // namespace zelto::test
