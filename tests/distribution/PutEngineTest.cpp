// The put engine against the pyftpdlib fixture: where files land under each FTPDirTree mode, the
// folders it makes, and the refusals (folder, overwrite). A refused login is in the job tests.

#include "distribution/PutEngine.h"

#include "DistributionFixture.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "settings/SettingsStore.h"

#include <QFile>

namespace zelto::test {
namespace {

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

class PutEngineTest : public EngineFixture {
protected:
    // Runs the engine over `files` against the fixture, into `folder` of its home.
    FtpResult put(
        std::vector<FileEntry>& files, const QString& folder, const EngineOptions& options)
    {
        auto job = session();
        return runPutEngine(*job, siteOf(*server_, u'/' + folder), files, options);
    }

    void makeRemoteFolder(const QString& folder) { ASSERT_TRUE(QDir(home()).mkpath(folder)); }
};

TEST_F(PutEngineTest, EachModePlacesNestedFilesAndMakesEachFolderOnce)
{
    SettingsStore::set(settings::config::kRenameLongFileNames, QStringLiteral("YES"));
    SettingsStore::set(settings::config::kDeletePut, QStringLiteral("YES"));
    const std::vector<FileEntry> files = {
        localFile(QStringLiteral("site"), QStringLiteral("index.html"), 1000),
        localFile(QStringLiteral("site"), QStringLiteral("longname.backup.txt"), 10),
        localFile(QStringLiteral("site/img"), QStringLiteral("logo.gif"), 300'000),
        localFile(QStringLiteral("site/img"), QStringLiteral("icon.png"), 0),
        localFile(QStringLiteral("site/css"), QStringLiteral("style.css"), 300),
        localFile(QStringLiteral("other/img"), QStringLiteral("b.gif"), 5),
    };
    // Each file's path under the remote folder: by its folder's last part, or by the whole
    // local folder (without its leading "/").
    const QStringList names
        = { "index.html", "longna~1.bac", "logo.gif", "icon.png", "style.css", "b.gif" };
    const QStringList lastParts = { "site", "site", "img", "img", "css", "img" };
    QStringList noPath;
    QStringList lastDir;
    QStringList fullPath;
    for (size_t i = 0; i < files.size(); ++i) {
        noPath.append(names[i]);
        lastDir.append(lastParts[i] + u'/' + names[i]);
        fullPath.append(files[i].localFolder.mid(1) + u'/' + names[i]);
    }
    struct Case {
        const char* value;
        bool keepFolder;
        QStringList expected;
    };
    const Case cases[] = {
        { settings::config::kDirTreeNoPath, false, noPath },
        { settings::config::kDirTreeLastDir, false, lastDir },
        { settings::config::kDirTreeFullPath, false, fullPath },
        { "unknown", true, lastDir }, // a selection sent with its folder
    };
    int n = 0;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        SettingsStore::set(settings::config::kFtpDirTree, QString::fromUtf8(c.value));
        const auto folder = QStringLiteral("m%1").arg(++n);
        makeRemoteFolder(folder);
        recorder_.clear();
        static_cast<void>(newCommands());

        auto sent = files;
        EngineOptions options;
        options.keepFolder = c.keepFolder;
        options.overwriteAllowed = true;
        ASSERT_TRUE(put(sent, folder, options).ok());

        const auto root = home() + u'/' + folder;
        EXPECT_EQ(filesUnder(root), sorted(c.expected));
        for (size_t i = 0; i < sent.size(); ++i) {
            EXPECT_EQ(sent[i].result, FileEntry::kSent) << sent[i].message.toStdString();
            EXPECT_TRUE(sameBytes(
                sent[i].localFolder + u'/' + sent[i].localName, root + u'/' + c.expected[int(i)]));
        }

        // Each folder made once, logged once; one listing at most; nothing per file but STOR.
        const auto made = foldersUnder(root);
        QStringList madePaths;
        for (const auto& path : made)
            madePaths.append(u'/' + folder + u'/' + path);
        EXPECT_EQ(sorted(logged(ids::kLogMakeDirectoryOk)), madePaths);
        auto commands = newCommands();
        EXPECT_EQ(commands["MKD"], made.size());
        EXPECT_EQ(commands["STOR"], int(files.size()));
        EXPECT_EQ(commands["USER"], 1);
    }
    // A distribution keeps its local files for the other sites, whatever DeletePut says.
    for (const auto& entry : files)
        EXPECT_TRUE(QFile::exists(entry.localFolder + u'/' + entry.localName));
}

TEST_F(PutEngineTest, AFolderThatIsAPlainFileFailsItsFilesAndLaterFilesStillGo)
{
    SettingsStore::set(
        settings::config::kFtpDirTree, QString::fromLatin1(settings::config::kDirTreeLastDir));
    makeRemoteFolder(QStringLiteral("p"));
    ASSERT_TRUE(makeFile(home() + QStringLiteral("/p/2024"), 3, 99));
    std::vector<FileEntry> files = {
        localFile(QStringLiteral("2024"), QStringLiteral("a.jpg"), 10),
        localFile(QStringLiteral("2024"), QStringLiteral("b.jpg"), 10),
        localFile(QStringLiteral("2025"), QStringLiteral("c.jpg"), 10),
    };
    static_cast<void>(newCommands());

    ASSERT_TRUE(put(files, QStringLiteral("p"), {}).ok());

    EXPECT_EQ(resultsOf(files), (std::vector<int> { 240, 240, 0 }));
    EXPECT_EQ(files[0].message, StringTable::text(ids::kCannotCreateFolder));
    EXPECT_TRUE(QFileInfo(home() + QStringLiteral("/p/2024")).isFile());
    EXPECT_TRUE(sameBytes(
        files[2].localFolder + QStringLiteral("/c.jpg"), home() + QStringLiteral("/p/2025/c.jpg")));
    EXPECT_EQ(logged(ids::kLogMakeDirectoryFailed), QStringList({ "/p/2024", "/p/2024" }));
    EXPECT_EQ(logged(ids::kLogMakeDirectoryOk), QStringList { "/p/2025" });
    auto commands = newCommands();
    EXPECT_EQ(commands["MKD"], 2); // the refused folder is not asked for again
    EXPECT_EQ(commands["USER"], 1); // a refusal keeps the connection
}

TEST_F(PutEngineTest, ForbiddenOverwriteRefusesExistingFilesAndSendsTheRest)
{
    makeRemoteFolder(QStringLiteral("o"));
    const auto existing = home() + QStringLiteral("/o/a.txt");
    ASSERT_TRUE(makeFile(existing, 7, 1000));
    const auto before = makeBytes(7, 1000);
    const std::vector<FileEntry> files = {
        localFile(QStringLiteral("x"), QStringLiteral("a.txt"), 20),
        localFile(QStringLiteral("x"), QStringLiteral("c.txt"), 20),
        localFile(QStringLiteral("y"), QStringLiteral("c.txt"), 30), // sent just before
        localFile(QStringLiteral("x"), QStringLiteral("d.txt"), 20),
    };
    static_cast<void>(newCommands());

    auto refused = files;
    ASSERT_TRUE(put(refused, QStringLiteral("o"), {}).ok());
    EXPECT_EQ(resultsOf(refused), (std::vector<int> { 239, 0, 239, 0 }));
    EXPECT_EQ(refused[0].message, StringTable::text(ids::kCannotOverwrite));
    EXPECT_EQ(contents(existing), before);
    EXPECT_TRUE(sameBytes(local(QStringLiteral("x/c.txt")), home() + QStringLiteral("/o/c.txt")));
    EXPECT_EQ(newCommands()["MLSD"], 1); // one folder, listed once for four files

    auto replaced = files;
    EngineOptions options;
    options.overwriteAllowed = true;
    ASSERT_TRUE(put(replaced, QStringLiteral("o"), options).ok());
    EXPECT_EQ(resultsOf(replaced), (std::vector<int> { 0, 0, 0, 0 }));
    EXPECT_TRUE(sameBytes(local(QStringLiteral("x/a.txt")), existing));
    EXPECT_TRUE(sameBytes(local(QStringLiteral("y/c.txt")), home() + QStringLiteral("/o/c.txt")));
    EXPECT_EQ(newCommands()["MLSD"], 0); // nothing to look up when overwriting is allowed
}

} // namespace
} // namespace zelto::test
