// The file-list screen driven as the user drives it: lists opened from the tree, files added from
// the local half, the save question when a changed list is left, lists made, renamed and deleted
// with the links that name them, and where the screen opens.

#include "profiles/ui/CSite.h"

#include "ProfilesFixture.h"
#include "TestWait.h"
#include "profiles/ui/CFileListView.h"
#include "profiles/ui/CSiteTree.h"
#include "widgets/CDirView.h"
#include "widgets/CDriveTree.h"

#include <QPointer>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 10s;

class SiteScreenTest : public ProfilesFixture {
protected:
    void SetUp() override
    {
        for (const char* name : { "a.txt", "b.txt" })
            writeFile(localFolder() + u'/' + name, name);
        makeList("one", {});
        makeList("two", { localFolder() + "|a.txt" });
        makeLink("uses-two", {}, FileListStore::listFile(listFolder("two")));
        screen_ = std::make_unique<CSite>(notifier_, events_);
        changes_ = std::make_unique<QSignalSpy>(screen_.get(), &CSite::listsChanged);
    }

    [[nodiscard]] CSiteTree& tree() const { return screen_->siteTree(); }
    [[nodiscard]] CFileListView& files() const { return screen_->filesView(); }
    [[nodiscard]] QStringList treeLabels() const
    {
        QStringList labels;
        const QTreeWidgetItem* root = tree().topLevelItem(0);
        for (int at = 0; at < root->childCount(); ++at)
            labels.append(root->child(at)->text(0));
        return labels;
    }
    [[nodiscard]] QTreeWidgetItem* treeItem(const QString& label) const
    {
        const auto found = tree().findItems(label, Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? nullptr : found.front();
    }
    // Opens the local folder and adds `name` by Return on its row, as a double click does.
    void addByActivation(const QString& name)
    {
        CDirView& dir = screen_->dirView();
        dir.setFolder(localFolder());
        ASSERT_TRUE(dir.selectRow(name));
        QTest::keyClick(&dir, Qt::Key_Return);
        ASSERT_TRUE(waitUntil([&] { return !files().adding(); }, kDeadline));
    }
    [[nodiscard]] QStringList stored(const char* list) const
    {
        FileList read;
        read.load(FileListStore::listFile(listFolder(list)));
        return localNames(read.entries());
    }

    std::unique_ptr<CSite> screen_;
    std::unique_ptr<QSignalSpy> changes_;
};

TEST_F(SiteScreenTest, AddedFilesAreSavedOnlyWhenTheQuestionIsAnsweredYes)
{
    for (const bool yes : { false, true }) {
        SCOPED_TRACE(yes ? "Yes" : "No");
        notifier_.reset({});
        notifier_.yes = yes;
        ASSERT_TRUE(tree().selectList(listFolder("one")));
        ASSERT_EQ(files().listFolder(), listFolder("one"));
        addByActivation("b.txt");
        screen_->dirView().selectRow("a.txt");
        screen_->addSelected();
        ASSERT_TRUE(waitUntil([&] { return !files().adding(); }, kDeadline));
        EXPECT_EQ(localNames(files().entries()), QStringList({ "b.txt", "a.txt" }));

        ASSERT_TRUE(tree().selectList(listFolder("two")));
        EXPECT_EQ(notifier_.yesNoQuestions, texts(ids::kListChangedSave));
        EXPECT_EQ(stored("one"), yes ? QStringList({ "b.txt", "a.txt" }) : QStringList());
        EXPECT_EQ(localNames(files().entries()), QStringList({ "a.txt" })) << "list two is shown";

        // An unchanged list is left without a question.
        ASSERT_TRUE(tree().selectList(listFolder("one")));
        EXPECT_EQ(notifier_.yesNoQuestions.size(), 1);
    }
}

TEST_F(SiteScreenTest, RenamingAListKeepsItsUnsavedEntries)
{
    ASSERT_TRUE(tree().selectList(listFolder("two")));
    addByActivation("b.txt");
    treeItem("two")->setText(0, "renamed");

    EXPECT_EQ(treeLabels(), QStringList({ "one", "renamed" }));
    EXPECT_FALSE(QFileInfo::exists(listFolder("two")));
    EXPECT_EQ(changes_->size(), 1);
    // The unsaved entry stays and is saved under the new name, without a question.
    EXPECT_EQ(files().listFolder(), listFolder("renamed"));
    files().saveList();
    EXPECT_EQ(stored("renamed"), QStringList({ "a.txt", "b.txt" }));
    EXPECT_TRUE(notifier_.yesNoQuestions.isEmpty());

    // A name taken by another list is refused with the tree's message, and nothing moves.
    treeItem("renamed")->setText(0, "one");
    EXPECT_EQ(notifier_.messages, texts(ids::kFolderNotRenamed));
    EXPECT_EQ(treeLabels(), QStringList({ "one", "renamed" }));
    EXPECT_EQ(changes_->size(), 1);
}

TEST_F(SiteScreenTest, DeletingAListTakesItsLinksAndAsksNothingMore)
{
    ASSERT_TRUE(tree().selectList(listFolder("two")));
    addByActivation("b.txt");
    for (const Answer answer : { Answer::Cancelled, Answer::Accepted }) {
        notifier_.reset({ answer });
        notifier_.yes = true;
        tree().deleteCurrent();
        const bool gone = answer == Answer::Accepted;
        EXPECT_EQ(QFileInfo::exists(listFolder("two")), !gone);
        EXPECT_EQ(QFileInfo::exists(linkPath("uses-two")), !gone);
        EXPECT_EQ(changes_->size(), gone ? 1 : 0);
    }
    EXPECT_EQ(treeLabels(), QStringList({ "one" }));
    EXPECT_TRUE(notifier_.yesNoQuestions.isEmpty()) << "a deleted list is not offered for saving";
    EXPECT_FALSE(QFileInfo::exists(listFolder("two"))) << "and not written back";
}

TEST_F(SiteScreenTest, ListsAreMadeNewOrByTheNameOfASaveFromTheRoot)
{
    tree().newList();
    EXPECT_TRUE(QFileInfo(listFolder("New Folder")).isDir());
    EXPECT_EQ(tree().currentList(), listFolder("New Folder"));
    EXPECT_EQ(changes_->size(), 1);

    tree().setCurrentItem(tree().topLevelItem(0));
    EXPECT_TRUE(files().listFolder().isEmpty()) << "the root is no list";
    addByActivation("a.txt");
    files().dialogs().askText = [](const QString&, const QString&) { return QString("fresh"); };
    files().saveList();
    EXPECT_EQ(stored("fresh"), QStringList({ "a.txt" }));
    EXPECT_EQ(files().listFolder(), listFolder("fresh"));
    EXPECT_EQ(treeLabels(), QStringList({ "fresh", "New Folder", "one", "two" }));
    EXPECT_EQ(changes_->size(), 2);
}

// Over a small frame in the corner, centring alone would put the screen off the screen.
TEST_F(SiteScreenTest, OpensOnTheScreenThenWhereItWasLeft)
{
    QWidget corner;
    corner.setGeometry(0, 0, 200, 150);
    CSite first(notifier_, events_, &corner);
    EXPECT_TRUE(corner.screen()->availableGeometry().contains(first.pos()));

    first.show();
    first.setGeometry(30, 40, 900, 650);
    first.close();
    CSite again(notifier_, events_, &corner);
    EXPECT_EQ(again.size(), QSize(900, 650));
    EXPECT_EQ(again.pos(), first.pos());
}

TEST_F(SiteScreenTest, AChangedListIsOfferedForSavingWhenTheScreenOrTheFrameCloses)
{
    for (const bool byFrame : { false, true }) {
        SCOPED_TRACE(byFrame ? "frame" : "screen");
        QWidget frame;
        CSite screen(notifier_, events_, &frame);
        frame.show();
        screen.show();
        notifier_.reset({});
        notifier_.yes = true;
        ASSERT_TRUE(screen.siteTree().selectList(listFolder("one")));
        screen.filesView().addPaths({ localFolder() + "/b.txt" });
        ASSERT_TRUE(waitUntil([&] { return !screen.filesView().adding(); }, kDeadline));
        if (byFrame)
            frame.close();
        else
            screen.close();
        EXPECT_EQ(notifier_.yesNoQuestions, texts(ids::kListChangedSave));
        EXPECT_EQ(stored("one"), QStringList({ "b.txt" }));
        writeList(FileListStore::listFile(listFolder("one")), {});
    }
}

TEST_F(SiteScreenTest, OneScreenIsRaisedUntilItCloses)
{
    QWidget frame;
    const QPointer<CSite> first = CSite::showOrRaise(&frame, notifier_, events_);
    EXPECT_EQ(CSite::showOrRaise(&frame, notifier_, events_), first.data());
    first->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(first.isNull());
    const QPointer<CSite> second = CSite::showOrRaise(&frame, notifier_, events_);
    ASSERT_FALSE(second.isNull());
    second->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace
} // namespace zelto::test
