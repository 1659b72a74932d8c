// The get engine against the pyftpdlib fixture: the remote folders mirrored under the local
// folder by FTPDirTree, and names that would lead out of the local folder.

#include "distribution/GetEngine.h"

#include "DistributionFixture.h"
#include "platform/StringIds.h"
#include "settings/SettingsStore.h"

namespace zelto::test {
namespace {

class GetEngineTest : public EngineFixture {
protected:
    // A file on the server, under its home.
    void remoteFile(const QString& path, qint64 size)
    {
        ASSERT_TRUE(makeFile(home() + u'/' + path, size, ++seed_));
    }

    // An entry that fetches `remoteFolder`/`name` into `localFolder` under the local folder.
    [[nodiscard]] FileEntry wanted(
        const QString& remoteFolder, const QString& name, const QString& localFolder) const
    {
        FileEntry entry;
        entry.remoteFolder = remoteFolder;
        entry.remoteName = name;
        entry.localName = name;
        entry.localFolder = local(localFolder);
        return entry;
    }

    FtpResult get(std::vector<FileEntry>& files, const EngineOptions& options = {})
    {
        auto job = session();
        return runGetEngine(*job, siteOf(*server_), files, options);
    }

    static void setMode(const char* value)
    {
        SettingsStore::set(settings::config::kFtpDirTree, QString::fromUtf8(value));
    }
};

TEST_F(GetEngineTest, EachModeMirrorsTheRemoteFolders)
{
    remoteFile(QStringLiteral("data/2024/a.jpg"), 200'000);
    remoteFile(QStringLiteral("data/2024/b.bin"), 0);
    remoteFile(QStringLiteral("data/c.txt"), 33);
    const QStringList remote = { "data/2024/a.jpg", "data/2024/b.bin", "data/c.txt" };
    const std::pair<const char*, QStringList> cases[] = {
        { settings::config::kDirTreeNoPath, { "a.jpg", "b.bin", "c.txt" } },
        { settings::config::kDirTreeLastDir, { "2024/a.jpg", "2024/b.bin", "data/c.txt" } },
        { settings::config::kDirTreeFullPath,
            { "data/2024/a.jpg", "data/2024/b.bin", "data/c.txt" } },
    };
    int n = 0;
    for (const auto& [mode, expected] : cases) {
        SCOPED_TRACE(mode);
        setMode(mode);
        recorder_.clear();
        const auto into = QStringLiteral("in%1").arg(++n);
        ASSERT_TRUE(QDir(local()).mkpath(into));
        std::vector<FileEntry> files = {
            wanted(QStringLiteral("/data/2024"), QStringLiteral("a.jpg"), into),
            wanted(QStringLiteral("/data/2024/"), QStringLiteral("b.bin"), into),
            wanted(QStringLiteral("/data"), QStringLiteral("c.txt"), into),
        };

        ASSERT_TRUE(get(files).ok());
        EXPECT_EQ(resultsOf(files), (std::vector<int> { 0, 0, 0 }));
        const auto root = local(into);
        EXPECT_EQ(filesUnder(root), expected);
        for (int i = 0; i < remote.size(); ++i)
            EXPECT_TRUE(sameBytes(home() + u'/' + remote[i], root + u'/' + expected[i]));
        QStringList made;
        for (const auto& folder : foldersUnder(root))
            made.append(root + u'/' + folder);
        EXPECT_EQ(logged(ids::kLogMakeDirectoryOk), made);
    }
}

TEST_F(GetEngineTest, NamesThatWouldLeaveTheLocalFolderAreRefused)
{
    setMode(settings::config::kDirTreeLastDir);
    remoteFile(QStringLiteral("x"), 5); // what "/data/../x" would fetch
    remoteFile(QStringLiteral("data/ok.bin"), 5);
    const auto in = QStringLiteral("in");
    ASSERT_TRUE(QDir(local()).mkpath(in));
    std::vector<FileEntry> files = {
        wanted(QStringLiteral("/data"), QStringLiteral("../x"), in),
        wanted(QStringLiteral("/data"), QStringLiteral("..\\x"), in),
        wanted(QStringLiteral("/data"), QStringLiteral(".."), in),
        wanted(QStringLiteral("/data/.."), QStringLiteral("x"), in), // LAST_DIR would be ".."
        wanted(QStringLiteral("/data"), QStringLiteral("ok.bin"), in),
    };
    files[1].remoteName = QStringLiteral("x"); // a local name of its own can lie as well

    ASSERT_TRUE(get(files).ok());
    const int refused = int(LocalFileError::BadPath);
    EXPECT_EQ(resultsOf(files), (std::vector<int> { refused, refused, refused, refused, 0 }));
    EXPECT_TRUE(files[0].message.contains(QStringLiteral("/data/../x")))
        << files[0].message.toStdString();
    EXPECT_EQ(filesUnder(local()), QStringList { "in/data/ok.bin" });
    EXPECT_EQ(server_->commandCount(QStringLiteral("RETR")), 1);
}

} // namespace
} // namespace zelto::test
