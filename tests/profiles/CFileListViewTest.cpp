// The file-list view: files and folders dropped on it, and removing, renaming and saving driven as
// the user drives them, with the questions answered by the test.

#include "profiles/ui/CFileListView.h"

#include "ProfilesFixture.h"
#include "TestWait.h"
#include "profiles/FileList.h"
#include "profiles/MessageText.h"
#include "profiles/ui/FileListModel.h"

#include <QDropEvent>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <optional>
#include <vector>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 10s;

class FileListViewTest : public ProfilesFixture {
protected:
    void SetUp() override
    {
        for (const char* name : { "a.txt", "b.txt", "c.txt" })
            writeFile(local(name), name);
        view_.dialogs().askText = [this](const QString& prompt, const QString& initial) {
            prompts_.append(prompt + u'|' + initial);
            return answer_;
        };
    }

    [[nodiscard]] QString local(const QString& name) const { return localFolder() + u'/' + name; }
    [[nodiscard]] QStringList names() const { return localNames(view_.entries()); }
    [[nodiscard]] QString shown(int row, int column) const
    {
        return view_.model()->index(row, column).data().toString();
    }
    void select(const std::vector<int>& rows)
    {
        view_.selectionModel()->clearSelection();
        for (const int row : rows) {
            view_.selectionModel()->select(view_.model()->index(row, 0),
                QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }
    // Drops `urls` on the view as the desktop does; returns whether the drop was taken.
    bool drop(const QList<QUrl>& urls)
    {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view_.viewport(), &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view_.viewport(), &drop);
        return drop.isAccepted();
    }
    void makeAbc()
    {
        makeList("abc",
            { localFolder() + "|a.txt", localFolder() + "|b.txt", localFolder() + "|c.txt" });
    }
    // The list of a.txt, b.txt and c.txt, loaded unchanged into the view, which is tied to it.
    void openAbc()
    {
        makeAbc();
        view_.openList(listFolder("abc"));
        ASSERT_EQ(names(), QStringList({ "a.txt", "b.txt", "c.txt" }));
        ASSERT_FALSE(view_.changed());
    }

    CFileListView view_ { notifier_ };
    std::optional<QString> answer_;
    QStringList prompts_;
};

TEST_F(FileListViewTest, DroppedFilesAndFoldersAreAddedOnce)
{
    writeFile(local("site/index.html"), "<html/>");
    QSignalSpy changed(&view_, &CFileListView::changedFlagChanged);
    EXPECT_FALSE(drop({ QUrl(QStringLiteral("https://example.org/a.txt")) }));

    const QUrl file = QUrl::fromLocalFile(local("a.txt"));
    ASSERT_TRUE(drop({ file, QUrl::fromLocalFile(local("site")), file,
        QUrl::fromLocalFile(local("missing.txt")), QUrl(QStringLiteral("https://example.org/")) }));
    ASSERT_TRUE(waitUntil([&] { return !view_.adding(); }, kDeadline));
    // Dropped again: held already.
    ASSERT_TRUE(drop({ file }));
    ASSERT_TRUE(waitUntil([&] { return !view_.adding(); }, kDeadline));

    ASSERT_EQ(names(), QStringList({ "a.txt", "site" }));
    EXPECT_EQ(shown(0, FileListModel::Size), "5");
    // The folder stays one entry, without a size; the send expands it.
    EXPECT_EQ(shown(1, FileListModel::Size), "");
    EXPECT_TRUE(view_.changed());
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(FileListViewTest, ThousandsOfDroppedFilesNeverHoldTheEventLoop)
{
    constexpr int kFiles = 3000;
    QList<QUrl> urls;
    for (int i = 0; i < kFiles; ++i) {
        const QString path = local(QStringLiteral("many/f%1.bin").arg(i));
        writeFile(path, "x");
        urls.append(QUrl::fromLocalFile(path));
    }
    int turns = 0;
    QTimer turn;
    turn.setInterval(0);
    QObject::connect(&turn, &QTimer::timeout, [&] { ++turns; });
    turn.start();

    ASSERT_TRUE(drop(urls));
    EXPECT_TRUE(view_.adding());
    EXPECT_TRUE(view_.entries().empty());
    ASSERT_TRUE(waitUntil([&] { return !view_.adding(); }, 60s));
    EXPECT_EQ(view_.entries().size(), std::size_t(kFiles));
    EXPECT_GE(turns, 2) << "the files were added in one go";
}

TEST_F(FileListViewTest, DeleteAsksForEachSelectedRow)
{
    // One question per answer given; All (the middle answer) is offered for two rows or more.
    const struct {
        const char* what;
        std::vector<int> selected;
        std::deque<Answer> answers;
        QStringList left;
    } cases[] = {
        { "nothing selected", {}, {}, { "a.txt", "b.txt", "c.txt" } },
        { "one row", { 1 }, { Answer::Accepted }, { "a.txt", "c.txt" } },
        { "Yes, then Cancel", { 0, 2 }, { Answer::Accepted, Answer::Cancelled },
            { "b.txt", "c.txt" } },
        { "All removes the rest unasked", { 0, 1, 2 }, { Answer::Middle }, {} },
        { "Cancel first", { 0, 1 }, { Answer::Cancelled }, { "a.txt", "b.txt", "c.txt" } },
    };
    view_.show();
    view_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view_));
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        openAbc();
        const QStringList before = names();
        notifier_.reset(c.answers);
        select(c.selected);
        view_.setFocus();
        QTest::keyClick(&view_, Qt::Key_Delete);

        EXPECT_EQ(names(), c.left);
        EXPECT_EQ(view_.changed(), c.left.size() < 3);
        EXPECT_EQ(notifier_.messages, texts(c.selected.empty() ? ids::kSelectFile : 0));
        ASSERT_EQ(notifier_.questions.size(), c.answers.size());
        if (c.answers.empty())
            continue;
        const Question& first = notifier_.questions.front();
        EXPECT_EQ(first.text, messageText(ids::kConfirmRemoveFile, { before[c.selected[0]] }));
        EXPECT_EQ(first.middleEnabled, c.selected.size() > 1);
    }
    EXPECT_TRUE(QFileInfo::exists(local("a.txt"))) << "the file itself stays";
}

TEST_F(FileListViewTest, ChangeRemoteNameAsksForTheNameThenConfirms)
{
    // Row 0, a.txt, is renamed when one row is selected; an empty remote name stands for the local.
    const struct {
        const char* what;
        std::vector<int> selected;
        std::optional<QString> typed;
        std::deque<Answer> confirm;
        int message;
        QString stored;
        bool changed;
    } cases[] = {
        { "two rows", { 0, 1 }, {}, {}, ids::kOnlyOneFileAtATime, "", false },
        { "no row", {}, {}, {}, ids::kSelectFileToRename, "", false },
        { "renamed", { 0 }, "index.htm", { Answer::Accepted }, 0, "index.htm", true },
        { "the local name: nothing to confirm", { 0 }, "a.txt", {}, 0, "", true },
        { "empty: the local name", { 0 }, QString(), { Answer::Accepted }, 0, "a.txt", true },
        { "not confirmed", { 0 }, "x.txt", { Answer::Cancelled }, 0, "", true },
        { "prompt cancelled", { 0 }, std::nullopt, {}, 0, "", false },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        openAbc();
        notifier_.reset(c.confirm);
        prompts_.clear();
        answer_ = c.typed;
        select(c.selected);
        view_.changeRemoteName();

        EXPECT_EQ(prompts_,
            c.selected.size() == 1
                ? QStringList { StringTable::text(ids::kEnterNewFileName) + "|a.txt" }
                : QStringList());
        EXPECT_EQ(notifier_.messages, texts(c.message));
        EXPECT_EQ(view_.entries()[0].remoteName, c.stored);
        EXPECT_EQ(shown(0, FileListModel::RemoteName), c.stored.isEmpty() ? "a.txt" : c.stored);
        EXPECT_EQ(view_.changed(), c.changed);
        ASSERT_EQ(notifier_.questions.size(), c.confirm.size());
        if (!c.confirm.empty()) {
            EXPECT_EQ(notifier_.questions[0].text,
                messageText(ids::kConfirmRename, { QStringLiteral("a.txt"), *c.typed }));
        }
    }
}

TEST_F(FileListViewTest, SaveAsksForANameUnlessTiedToAList)
{
    // A name is asked for when the view holds entries and stands for no saved list; the name of
    // another list replaces it only when the user says yes.
    struct Case {
        const char* what;
        bool tied;
        bool empty;
        std::optional<QString> name;
        bool plainFileInTheWay;
        std::optional<bool> replace; // the answer when the name is taken by the list "abc"
        const char* savedIn; // the list folder written, or none
    };
    const Case cases[] = {
        { "a new name", false, false, "web", false, {}, "web" },
        { "a plain file of that name", false, false, "web", true, {}, nullptr },
        { "prompt cancelled", false, false, std::nullopt, false, {}, nullptr },
        { "an empty list", false, true, "web", false, {}, nullptr },
        { "tied to a list", true, false, std::nullopt, false, {}, "abc" },
        { "a taken name, No", false, false, "abc", false, false, nullptr },
        { "a taken name, Yes", false, false, "abc", false, true, "abc" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        QDir(FileListStore::root()).removeRecursively();
        CFileListView view(notifier_);
        prompts_.clear();
        notifier_.reset({});
        notifier_.yes = c.replace.value_or(false);
        view.dialogs().askText = view_.dialogs().askText;
        answer_ = c.name;
        if (c.plainFileInTheWay)
            writeFile(listFolder("web"), "not a folder");
        if (c.replace)
            makeAbc();
        if (c.tied) {
            makeList("abc", { localFolder() + QStringLiteral("|a.txt|") });
            view.openList(listFolder("abc"));
        }
        if (!c.empty) {
            view.addPaths({ local("b.txt"), local("c.txt") });
            ASSERT_TRUE(waitUntil([&] { return !view.adding(); }, kDeadline));
        }
        QSignalSpy saved(&view, &CFileListView::listSaved);
        view.saveList();

        EXPECT_TRUE(notifier_.messages.isEmpty());
        EXPECT_EQ(notifier_.yesNoQuestions.size(), c.replace ? 1 : 0);
        EXPECT_EQ(prompts_,
            c.tied || c.empty ? QStringList()
                              : QStringList { StringTable::text(ids::kEnterFileListName) + u'|' });
        if (!c.savedIn) {
            EXPECT_EQ(saved.count(), 0);
            EXPECT_EQ(view.changed(), !c.empty);
            EXPECT_FALSE(QFileInfo::exists(FileListStore::listFile(listFolder("web"))));
            EXPECT_EQ(FileList::readStored(FileListStore::listFile(listFolder("abc"))).size(),
                c.replace ? 3U : 0U);
            continue;
        }
        ASSERT_EQ(saved.count(), 1);
        EXPECT_EQ(saved.at(0).at(0).toString(), listFolder(c.savedIn));
        EXPECT_EQ(summary(FileList::readStored(FileListStore::listFile(listFolder(c.savedIn)))),
            summary(view.entries()));
        EXPECT_FALSE(view.changed());
    }
}

TEST_F(FileListViewTest, ASaveThatFailsSaysSoAndKeepsTheListChanged)
{
    // A folder where the list file goes: the write cannot replace it.
    ASSERT_TRUE(QDir().mkpath(FileListStore::listFile(listFolder("web"))));
    view_.openList(listFolder("web"));
    view_.addPaths({ local("b.txt") });
    ASSERT_TRUE(waitUntil([&] { return !view_.adding(); }, kDeadline));
    QSignalSpy saved(&view_, &CFileListView::listSaved);
    view_.saveList();
    EXPECT_EQ(saved.count(), 0);
    ASSERT_EQ(notifier_.messages.size(), 1);
    EXPECT_TRUE(notifier_.messages[0].contains(FileListStore::listFile(listFolder("web"))));
    EXPECT_TRUE(view_.changed());
}

} // namespace
} // namespace zelto::test
