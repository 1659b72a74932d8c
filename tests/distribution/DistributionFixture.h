#pragma once

// What the tests of the transfer jobs and the link run share: three fixture servers, a local
// tree of nested folders to send, a recording outcome sink, and the remote trees compared.

#include "FtpTestKit.h"
#include "TestFiles.h"
#include "app/SettingsStore.h"
#include "distribution/FileEntry.h"
#include "distribution/FileSet.h"
#include "distribution/JobOutcomeSink.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <vector>

namespace zelto::test {

// Every site's end, in the order the jobs handed them over, whatever thread they came from.
class RecordingOutcomes final : public JobOutcomeSink {
public:
    struct Site {
        JobSite site;
        std::vector<FileEntry> files;
    };

    void siteFinished(const SiteOutcome& outcome) override
    {
        const std::lock_guard lock(mutex_);
        sites_.push_back({ outcome.site, outcome.files });
    }

    [[nodiscard]] std::vector<Site> sites() const
    {
        const std::lock_guard lock(mutex_);
        return sites_;
    }
    [[nodiscard]] std::size_t count() const
    {
        const std::lock_guard lock(mutex_);
        return sites_.size();
    }
    // The end of the site on `port`; fails the test when there is none or more than one.
    [[nodiscard]] Site of(quint16 port) const
    {
        Site found;
        int seen = 0;
        for (const Site& site : sites()) {
            if (site.site.port == port) {
                found = site;
                ++seen;
            }
        }
        EXPECT_EQ(seen, 1) << "ends reported for port " << port;
        return found;
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
        const QString path = it.next();
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        tree.insert(QDir(root).relativeFilePath(path),
            QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1));
    }
    return tree;
}

class DistributionFixture : public ::testing::Test {
protected:
    static constexpr int kServers = 3;

    void SetUp() override
    {
        SKIP_WITHOUT(FtpServer);
        useQuickTimeouts(5);
        useDirectAccess();
        // Every file under the site's folder, in the nested folders it came from.
        SettingsStore::set(settings::config::kFtpDirTree, QStringLiteral("FULL_PATH"));
        for (int i = 0; i < kServers; ++i)
            servers_.push_back(std::make_unique<FtpServer>());
        ASSERT_TRUE(local_.isValid());
        // Nested folders, a file at each depth, one empty file and one of a few blocks.
        const struct {
            const char* path;
            qint64 size;
        } files[] = {
            { "www/index.html", 1200 },
            { "www/css/site.css", 0 },
            { "www/img/logo.png", 300'000 },
            { "www/img/icons/a.ico", 4096 },
        };
        quint64 seed = 1;
        for (const auto& file : files)
            ASSERT_TRUE(makeFile(localPath(file.path), file.size, seed++));
    }

    [[nodiscard]] QString localPath(const QString& relative) const
    {
        return local_.path() + u'/' + relative;
    }
    [[nodiscard]] JobSite site(int server) const { return siteOf(*servers_[server]); }
    // Where a file sent with FULL_PATH lands on `server`: the whole local path under its home.
    [[nodiscard]] QString stored(int server, const QString& relative) const
    {
        return servers_[server]->home() + localPath(relative);
    }
    // The local tree as a file list names it: its top folder, expanded by the file set.
    [[nodiscard]] std::vector<FileEntry> fileSet() const
    {
        return FileSet::build({ listed(local_.path(), QStringLiteral("www")) }).files();
    }

    Recorder recorder_;
    RecordingOutcomes outcomes_;
    TempSettings settings_;
    QTemporaryDir local_;
    std::vector<std::unique_ptr<FtpServer>> servers_;
};

} // namespace zelto::test
