#pragma once

// What the engine tests share: a pyftpdlib server with quick time-outs, a recording job, a local
// folder, and ways to look at the results on both sides.

#include "FtpServer.h"
#include "FtpTestKit.h"
#include "TempSettings.h"
#include "TestFiles.h"
#include "distribution/FileEntry.h"
#include "ftp/CTransferSession.h"
#include "ftp/JobProgress.h"

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace zelto::test {

class EngineFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        SKIP_WITHOUT(FtpServer);
        useQuickTimeouts(2);
        useDirectAccess();
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
        const auto path = local(folder + u'/' + name);
        EXPECT_TRUE(makeFile(path, size, ++seed_));
        FileEntry entry;
        entry.localFolder = local(folder);
        entry.localName = name;
        entry.remoteName = name;
        entry.size = size;
        return entry;
    }

    // Every file under `root`, by its path relative to `root`.
    [[nodiscard]] static QStringList filesUnder(const QString& root)
    {
        QStringList files;
        QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext())
            files.append(QDir(root).relativeFilePath(it.next()));
        files.sort();
        return files;
    }
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

    TempSettings settings_;
    Recorder recorder_;
    JobProgress progress_;
    QTemporaryDir local_;
    std::unique_ptr<FtpServer> server_;
    quint64 seed_ = 0;
    size_t seen_ = 0;
};

} // namespace zelto::test
