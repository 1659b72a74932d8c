// The local half: the folder tree with its two roots, read lazily and folders only, and the
// folder's files on the list base, which F5 reads again.

#include "widgets/CDriveTree.h"

#include "TestFiles.h"
#include "widgets/CDirView.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

// A home folder of our own: "docs/deep", "music", a hidden ".cache" and a file.
class LocalHalfTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(home_.isValid());
        oldHome_ = qgetenv("HOME");
        qputenv("HOME", home_.path().toLocal8Bit());
        for (const char* folder : { "docs/deep", "music", ".cache" })
            ASSERT_TRUE(QDir(home_.path()).mkpath(folder));
        writeFile(path("notes.txt"), "notes");
        writeFile(path("docs/a.txt"), "a");
        writeFile(path("docs/.hidden"), "hidden");
    }
    void TearDown() override { qputenv("HOME", oldHome_); }

    [[nodiscard]] QString path(const QString& below) const { return home_.path() + u'/' + below; }
    [[nodiscard]] static QStringList labels(const QTreeWidgetItem* item)
    {
        QStringList texts;
        for (int at = 0; at < item->childCount(); ++at)
            texts.append(item->child(at)->text(0));
        return texts;
    }
    [[nodiscard]] static QStringList names(const CFileView& view)
    {
        QStringList texts;
        for (int row = 0; row < view.model()->rowCount(); ++row)
            texts.append(view.model()->index(row, 0).data().toString());
        return texts;
    }

    QTemporaryDir home_;
    QByteArray oldHome_;
};

TEST_F(LocalHalfTest, TreeListsFoldersWhenOpenedAndSelectsThroughHome)
{
    CDriveTree tree;
    ASSERT_EQ(tree.topLevelItemCount(), 2);
    EXPECT_EQ(tree.topLevelItem(0)->text(0), QDir::toNativeSeparators(QDir::rootPath()));
    QTreeWidgetItem* home = tree.topLevelItem(1);
    EXPECT_EQ(home->text(0), QDir::toNativeSeparators(home_.path()));
    EXPECT_EQ(home->childCount(), 0) << "nothing is read before the folder is opened";

    home->setExpanded(true);
    EXPECT_EQ(labels(home), QStringList({ "docs", "music" })) << "folders only, hidden left out";

    // Selecting a folder opens the unread ones ("docs") on its way.
    QSignalSpy selected(&tree, &CDriveTree::folderSelected);
    ASSERT_TRUE(tree.selectFolder(path("docs/deep/")));
    EXPECT_EQ(tree.currentFolder(), path("docs/deep"));
    EXPECT_EQ(tree.currentItem()->parent()->parent(), home);
    ASSERT_FALSE(selected.isEmpty());
    EXPECT_EQ(selected.back().front().toString(), path("docs/deep"));

    EXPECT_FALSE(tree.selectFolder(path("missing")));
    EXPECT_EQ(tree.currentFolder(), path("docs/deep")) << "a missing folder changes nothing";
}

TEST_F(LocalHalfTest, DirViewListsTheFolderAndReadsItAgainOnF5)
{
    CDirView view;
    view.setFolder(path("docs"));
    EXPECT_EQ(names(view), QStringList({ "deep", "a.txt" })) << "hidden ones left out";

    QSignalSpy files(&view, &CDirView::fileActivated);
    QSignalSpy folders(&view, &CDirView::folderActivated);
    for (const int row : { 0, 1 }) {
        view.setCurrentIndex(view.model()->index(row, 0));
        QTest::keyClick(&view, Qt::Key_Return);
    }
    ASSERT_EQ(folders.size(), 1);
    EXPECT_EQ(folders.front().front().toString(), path("docs/deep"));
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(files.front().front().toString(), path("docs/a.txt"));

    view.selectRow("a.txt");
    EXPECT_EQ(view.selectedPaths(), QStringList({ path("docs/a.txt") }));

    writeFile(path("docs/b.txt"), "b");
    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_F5);
    EXPECT_EQ(names(view), QStringList({ "deep", "a.txt", "b.txt" }));
    EXPECT_EQ(view.selectedPaths(), QStringList({ path("docs/a.txt") })) << "the selection stays";
}

} // namespace
} // namespace zelto::test
