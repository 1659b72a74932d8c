// The file set of a send: each local file once, folders expanded, names cased.

#include "distribution/FileSet.h"

#include "FtpTestKit.h"
#include "TestFiles.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"

#include <QTemporaryDir>

namespace zelto::test {
namespace {

class FileSetTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir_.isValid());
        for (const char* path : { "www/Index.HTML", "www/img/logo.png", "www/img/icons/a.ico",
                 "www/img/icons/b.ico", "other/readme.txt" })
            ASSERT_TRUE(makeFile(path_(path), 100, 1));
    }

    [[nodiscard]] QString path_(const char* relative) const
    {
        return dir_.path() + u'/' + QLatin1String(relative);
    }
    // An entry as a file list holds it: folder and local name.
    [[nodiscard]] FileListEntry entry(const char* folder, const char* name,
        const char* remoteName = "", qint64 listedSize = 0) const
    {
        QString in = dir_.path();
        if (*folder)
            in += u'/' + QLatin1String(folder);
        return { in, QLatin1String(name), QLatin1String(remoteName), listedSize };
    }
    // "folder/local -> remote" for each file of the set, the folder relative to the test's.
    [[nodiscard]] QStringList shown(const FileSet& set) const
    {
        QStringList rows;
        for (const FileEntry& file : set.files()) {
            rows << QDir(dir_.path()).relativeFilePath(file.localFolder) + u'/' + file.localName
                    + QStringLiteral(" -> ") + file.remoteName;
        }
        return rows;
    }

    TempSettings settings_;
    QTemporaryDir dir_;
};

TEST_F(FileSetTest, EachFileOnceInListOrderWithItsCasedName)
{
    struct Case {
        const char* what;
        const char* casing;
        std::vector<FileListEntry> entries;
        QStringList files;
    };
    const Case cases[] = {
        { "a file listed twice", "PRESERVE",
            { entry("www", "Index.HTML"), entry("other", "readme.txt"),
                entry("www", "Index.HTML") },
            { "www/Index.HTML -> Index.HTML", "other/readme.txt -> readme.txt" } },
        { "a folder, then a file inside it", "PRESERVE",
            { entry("www", "img"), entry("www/img", "logo.png"), entry("", "www") },
            { "www/img/icons/a.ico -> a.ico", "www/img/icons/b.ico -> b.ico",
                "www/img/logo.png -> logo.png", "www/Index.HTML -> Index.HTML" } },
        { "lower case", "LOWER_CASE", { entry("www", "Index.HTML") },
            { "www/Index.HTML -> index.html" } },
        { "upper case, of the stored remote name", "UPPER_CASE",
            { entry("www", "Index.HTML", "home.htm") }, { "www/Index.HTML -> HOME.HTM" } },
        { "a missing file stays, to be reported", "PRESERVE", { entry("www", "gone.txt") },
            { "www/gone.txt -> gone.txt" } },
    };
    for (const Case& c : cases) {
        SettingsStore::set(settings::config::kFileCasingPut, QLatin1String(c.casing));
        EXPECT_EQ(shown(FileSet::build(c.entries)), c.files) << c.what;
    }
}

TEST_F(FileSetTest, PreparationRefusesWithoutSitesOrFilesAndShowsTheWaitText)
{
    struct Case {
        const char* what;
        std::size_t sites;
        std::vector<FileListEntry> entries;
        int refusal;
    };
    const Case cases[] = {
        { "no sites", 0, { entry("www", "Index.HTML") }, ids::kNoTargetSites },
        { "neither", 0, {}, ids::kNoTargetSites },
        { "no files", 2, {}, ids::kNoFilesToSend },
        { "ready", 2, { entry("www", "Index.HTML") }, 0 },
    };
    for (const Case& c : cases) {
        Recorder recorder;
        QStringList status;
        const auto set = FileSet::prepare(
            c.sites, c.entries, recorder, [&](const QString& text) { status << text; });
        if (c.refusal) {
            EXPECT_FALSE(set) << c.what;
            ASSERT_EQ(recorder.messages().size(), 1u) << c.what;
            EXPECT_EQ(recorder.messages().front().first, StringTable::text(c.refusal));
            EXPECT_EQ(recorder.messages().front().second, MessageIcon::Stop);
            EXPECT_TRUE(status.isEmpty()) << c.what;
        } else {
            ASSERT_TRUE(set) << c.what;
            EXPECT_EQ(set->files().size(), 1u);
            EXPECT_TRUE(recorder.messages().empty());
            EXPECT_EQ(status, QStringList({ StringTable::text(ids::kSortingFiles), QString() }));
        }
    }
}

} // namespace
} // namespace zelto::test
