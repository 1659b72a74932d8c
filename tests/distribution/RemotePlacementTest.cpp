// The placement rules: short names, and where each FTPDirTree mode puts a file, for Windows- and
// Unix-style folders on either side.

#include "distribution/RemotePlacement.h"

#include <QStringList>

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

TEST(RemotePlacementTest, LocalPathsKeepTheFoldersOwnSeparator)
{
    const std::pair<const char*, const char*> cases[] = {
        { "C:\\web\\site", "C:\\web\\site\\a.txt" },
        { "C:\\web\\", "C:\\web\\a.txt" },
        { "/home/me/site", "/home/me/site/a.txt" },
        { "/home/me/", "/home/me/a.txt" },
        { "www", "www/a.txt" }, // relative, one level: this system's separator
        { "", "a.txt" },
    };
    for (const auto& [folder, path] : cases) {
        EXPECT_EQ(
            show(RemotePlacement::localPath(QString::fromUtf8(folder), QStringLiteral("a.txt"))),
            path);
    }
}

TEST(RemotePlacementTest, ShortNamesFollowTheEightDotThreeRule)
{
    const std::pair<const char*, const char*> cases[] = {
        { "readme.txt", "readme.txt" }, // 10 characters: kept
        { "longfilenames", "longfi~1" }, // 13, no dot
        { "my long name.html", "mylong~1.htm" }, // blanks skipped, extension cut to fit 12
        { "longname.backup.txt", "longna~1.bac" }, // from the first dot, not the last
        { "abcdefghijklm.c", "abcdef~1.c" }, // a short extension is not padded
    };
    for (const auto& [name, expected] : cases)
        EXPECT_EQ(show(RemotePlacement::shortName(QString::fromUtf8(name))), expected) << name;
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
        // A file at the root of a drive has no folder to re-create.
        { "C:\\", "/pub", "a.jpg", DirTree::LastDir, {}, "/pub/a.jpg" },
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

} // namespace
} // namespace zelto::test
