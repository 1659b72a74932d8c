// The placement rules: short names, separators and joins, and where each FTPDirTree mode puts a
// file, for Windows- and Unix-style folders on either side.

#include "distribution/RemotePlacement.h"

#include "app/SettingsKeys.h"

#include <QDir>

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

std::string show(const QString& text)
{
    return text.toStdString();
}

QStringList pathsOf(const Placement& placement)
{
    QStringList paths;
    for (const auto& step : placement.folders)
        paths.append(step.path);
    return paths;
}

// Each step's parent is the folder before it, starting at the target folder, and its path is
// the parent with its name added.
void expectChained(const Placement& placement, const QString& top)
{
    auto parent = top;
    for (const auto& step : placement.folders) {
        EXPECT_EQ(show(step.parent), show(parent));
        EXPECT_TRUE(step.path.startsWith(step.parent) && step.path.endsWith(step.name))
            << show(step.path);
        parent = step.path;
    }
    EXPECT_EQ(show(placement.folder), show(parent));
}

TEST(RemotePlacementTest, ShortNamesFollowTheEightDotThreeRule)
{
    const std::pair<const char*, const char*> cases[] = {
        { "readme.txt", "readme.txt" }, // 10 characters: kept
        { "longfilename", "longfilename" }, // 12: kept
        { "longfilenames", "longfi~1" }, // 13, no dot
        { "my long name.html", "mylong~1.htm" }, // blanks skipped, extension cut to fit 12
        { "Annual Report 1999.doc", "Annual~1.doc" },
        { "longname.backup.txt", "longna~1.bac" }, // from the first dot, not the last
        { "abcdefghijklm.c", "abcdef~1.c" }, // a short extension is not padded
    };
    for (const auto& [name, expected] : cases)
        EXPECT_EQ(show(RemotePlacement::shortName(QString::fromUtf8(name))), expected) << name;
}

TEST(RemotePlacementTest, EachSideJoinsWithItsOwnSeparatorOnce)
{
    struct Case {
        bool remote;
        const char* folder;
        const char* expected;
    };
    const Case cases[] = {
        { false, "C:\\web\\site", "C:\\web\\site\\a.txt" },
        { false, "C:\\web\\site\\", "C:\\web\\site\\a.txt" },
        { false, "/home/me/site", "/home/me/site/a.txt" },
        { false, "/home/me/site/", "/home/me/site/a.txt" },
        { false, "C:\\web/site", "C:\\web/site/a.txt" }, // any "/" makes it the separator
        { true, "/pub", "/pub/a.txt" }, { true, "/pub/", "/pub/a.txt" }, { true, "/", "/a.txt" },
        { true, "\\pub", "\\pub\\a.txt" }, { true, "\\pub\\", "\\pub\\a.txt" },
        { true, "", "a.txt" }, // no folder: the name alone, relative to the current folder
    };
    for (const auto& c : cases) {
        const auto folder = QString::fromUtf8(c.folder);
        const auto joined = c.remote ? RemotePlacement::remotePath(folder, QStringLiteral("a.txt"))
                                     : RemotePlacement::localPath(folder, QStringLiteral("a.txt"));
        EXPECT_EQ(show(joined), c.expected) << c.folder;
    }
}

TEST(RemotePlacementTest, ModeValuesAndTheKeepFolderFlag)
{
    struct Case {
        const char* value;
        bool keepFolder;
        DirTree expected;
    };
    const Case cases[] = {
        { settings::config::kDirTreeNoPath, false, DirTree::NoPath },
        { settings::config::kDirTreeLastDir, false, DirTree::LastDir },
        { settings::config::kDirTreeFullPath, false, DirTree::FullPath },
        { "last_dir", false, DirTree::NoPath }, // compared exactly
        { "", false, DirTree::NoPath },
        { settings::config::kDirTreeNoPath, true, DirTree::LastDir },
        { "anything", true, DirTree::LastDir },
        { settings::config::kDirTreeFullPath, true, DirTree::FullPath },
    };
    for (const auto& c : cases)
        EXPECT_EQ(RemotePlacement::dirTreeOf(QString::fromUtf8(c.value), c.keepFolder), c.expected)
            << c.value << " keep " << c.keepFolder;
}

TEST(RemotePlacementTest, PutPlacesFilesByMode)
{
    struct Case {
        const char* localFolder;
        const char* remoteFolder;
        const char* name;
        DirTree mode;
        QStringList folders;
        const char* path;
    };
    const Case cases[] = {
        { "C:\\web\\site\\img", "/pub", "logo.gif", DirTree::NoPath, {}, "/pub/logo.gif" },
        { "D:\\photos\\2024", "/pub/", "a.jpg", DirTree::LastDir, { "/pub/2024" },
            "/pub/2024/a.jpg" },
        { "C:\\web\\site\\img", "/pub", "logo.gif", DirTree::FullPath,
            { "/pub/web", "/pub/web/site", "/pub/web/site/img" }, "/pub/web/site/img/logo.gif" },
        // Unix-style local folders split at "/"; runs of separators count as one.
        { "/home/me//site/img/", "/pub", "logo.gif", DirTree::FullPath,
            { "/pub/home", "/pub/home/me", "/pub/home/me/site", "/pub/home/me/site/img" },
            "/pub/home/me/site/img/logo.gif" },
        { "/home/me/site", "/pub", "a.txt", DirTree::LastDir, { "/pub/site" }, "/pub/site/a.txt" },
        // A file at the root of a drive has no folder to re-create.
        { "C:\\", "/pub", "a.jpg", DirTree::LastDir, {}, "/pub/a.jpg" },
        { "C:\\", "/pub", "a.jpg", DirTree::FullPath, {}, "/pub/a.jpg" },
        // A part with ":" never reaches the server, wherever it is.
        { "/mnt/x:y/z", "/pub", "a", DirTree::FullPath, { "/pub/mnt", "/pub/mnt/z" },
            "/pub/mnt/z/a" },
        // The walk stops at a part equal to the file's name.
        { "C:\\web\\logo.gif\\old", "/pub", "logo.gif", DirTree::FullPath, { "/pub/web" },
            "/pub/web/logo.gif" },
        { "C:\\a\\b\\a.jpg\\c", "/pub", "a.jpg", DirTree::LastDir, { "/pub/b" }, "/pub/b/a.jpg" },
        // A DOS-like server keeps "\" between the parts.
        { "D:\\photos\\2024", "\\pub", "a.jpg", DirTree::LastDir, { "\\pub\\2024" },
            "\\pub\\2024\\a.jpg" },
        { "/web/site", "\\pub\\", "a.gif", DirTree::FullPath, { "\\pub\\web", "\\pub\\web\\site" },
            "\\pub\\web\\site\\a.gif" },
        // No remote folder: the folders are relative to the connection's folder.
        { "D:\\photos\\2024", "", "a.jpg", DirTree::LastDir, { "2024" }, "2024/a.jpg" },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.localFolder) + " -> " + c.remoteFolder);
        const auto placement = RemotePlacement::onServer(QString::fromUtf8(c.localFolder),
            QString::fromUtf8(c.remoteFolder), QString::fromUtf8(c.name), c.mode);
        EXPECT_EQ(pathsOf(placement), c.folders);
        EXPECT_EQ(show(placement.path), c.path);
        expectChained(placement, QString::fromUtf8(c.remoteFolder));
    }
}

TEST(RemotePlacementTest, GetPlacesFilesUnderTheLocalFolderByMode)
{
    struct Case {
        const char* remoteFolder;
        DirTree mode;
        QStringList folders; // under the local folder
        const char* path;
    };
    const Case cases[] = {
        { "/data/2024", DirTree::NoPath, {}, "a.jpg" },
        { "/data/2024", DirTree::LastDir, { "2024" }, "2024/a.jpg" },
        { "/data/2024/", DirTree::FullPath, { "data", "data/2024" }, "data/2024/a.jpg" },
        { "C:\\data\\2024", DirTree::FullPath, { "data", "data/2024" }, "data/2024/a.jpg" },
        { "/", DirTree::LastDir, {}, "a.jpg" },
    };
    const auto local = QStringLiteral("/tmp/in/"); // ends with a separator: none added
    for (const auto& c : cases) {
        SCOPED_TRACE(c.remoteFolder);
        const auto placement = RemotePlacement::onDisk(
            QString::fromUtf8(c.remoteFolder), local, QStringLiteral("a.jpg"), c.mode);
        QStringList expected;
        for (const auto& folder : c.folders)
            expected.append(QDir::toNativeSeparators(local + folder));
        EXPECT_EQ(pathsOf(placement), expected);
        EXPECT_EQ(show(placement.path), show(QDir::toNativeSeparators(local + c.path)));
        expectChained(placement, local);
    }
}

TEST(RemotePlacementTest, LongPathTextsShowTheirEnd)
{
    const auto of = [](int length) { return QString(length, u'x') + u'|' + QString(10, u'y'); };
    const std::pair<QString, QString> cases[] = {
        { QString(36, u'a'), QString(36, u'a') },
        { of(26), of(26) }, // 37 characters: scrolled by 0
        { of(39), of(39).mid(13) }, // 50 characters: the last 37
    };
    for (const auto& [path, shown] : cases)
        EXPECT_EQ(show(RemotePlacement::shownPath(path)), show(shown)) << path.size();
}

} // namespace
} // namespace zelto::test
