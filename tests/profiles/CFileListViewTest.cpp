// The file-list view: files and folders dropped on it, and removing, renaming, loading an .fls
// file and saving driven as the user drives them, with the questions answered by the test.

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

#include <deque>
#include <optional>
#include <vector>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 10s;

// Answers questions from a script and keeps each one whole; an unexpected question fails.
struct AnsweringNotifier final : Notifier {
    void showMessage(const QString& text, MessageIcon /*icon*/) override { messages.append(text); }
    Answer ask(const Question& question) override
    {
        questions.push_back(question);
        if (answers.empty()) {
            ADD_FAILURE() << "unexpected question: " << question.text.toStdString();
            return Answer::Cancelled;
        }
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }

    void reset(std::deque<Answer> script)
    {
        answers = std::move(script);
        questions.clear();
        messages.clear();
    }

    std::deque<Answer> answers;
    std::vector<Question> questions;
    QStringList messages;
};

// What a saved list keeps of an entry.
[[nodiscard]] QStringList stored(const std::vector<FileListEntry>& entries)
{
    QStringList kept;
    for (const FileListEntry& entry : entries) {
        kept.append(entry.folder + u'|' + entry.localName + u'|' + entry.remoteName + u'|'
            + QString::number(entry.size));
    }
    return kept;
}

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
    [[nodiscard]] QStringList names() const
    {
        QStringList names;
        for (const FileListEntry& entry : view_.entries())
            names.append(entry.localName);
        return names;
    }
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
    // The list of a.txt, b.txt and c.txt, loaded unchanged into the view, which is tied to it.
    void openAbc()
    {
        makeList("abc",
            { localFolder() + QStringLiteral("|a.txt|"), localFolder() + QStringLiteral("|b.txt|"),
                localFolder() + QStringLiteral("|c.txt|") });
        view_.openList(listFolder("abc"));
        ASSERT_EQ(names(), QStringList({ "a.txt", "b.txt", "c.txt" }));
        ASSERT_FALSE(view_.changed());
    }

    AnsweringNotifier answers_;
    CFileListView view_ { answers_ };
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
    EXPECT_EQ(view_.entries()[0].folder, localFolder());
    EXPECT_EQ(view_.entries()[0].size, 5);
    EXPECT_EQ(shown(0, FileListModel::RemoteName), "a.txt");
    EXPECT_EQ(shown(0, FileListModel::Size), "5");
    // The folder stays one entry, without a size; the send expands it.
    EXPECT_EQ(view_.entries()[1].folder, localFolder());
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
    struct Case {
        const char* what;
        std::vector<int> selected;
        std::deque<Answer> answers;
        int questions;
        const char* firstAsked;
        bool allEnabled;
        QStringList left;
        QStringList messages;
    };
    const Case cases[] = {
        { "nothing selected", {}, {}, 0, nullptr, false, { "a.txt", "b.txt", "c.txt" },
            texts(ids::kSelectFile) },
        { "one row: All is disabled", { 1 }, { Answer::Accepted }, 1, "b.txt", false,
            { "a.txt", "c.txt" }, {} },
        { "Yes, then Cancel", { 0, 2 }, { Answer::Accepted, Answer::Cancelled }, 2, "a.txt", true,
            { "b.txt", "c.txt" }, {} },
        { "All removes the rest unasked", { 0, 1, 2 }, { Answer::Middle }, 1, "a.txt", true, {},
            {} },
        { "Cancel first", { 0, 1 }, { Answer::Cancelled }, 1, "a.txt", true,
            { "a.txt", "b.txt", "c.txt" }, {} },
    };
    view_.show();
    view_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view_));
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        openAbc();
        answers_.reset(c.answers);
        select(c.selected);
        view_.setFocus();
        QTest::keyClick(&view_, Qt::Key_Delete);

        EXPECT_EQ(names(), c.left);
        EXPECT_EQ(view_.changed(), c.left.size() < 3);
        EXPECT_EQ(answers_.messages, c.messages);
        ASSERT_EQ(int(answers_.questions.size()), c.questions);
        if (c.questions == 0)
            continue;
        const Question& first = answers_.questions.front();
        EXPECT_EQ(
            first.text, messageText(ids::kConfirmRemoveFile, { QString::fromUtf8(c.firstAsked) }));
        EXPECT_EQ(first.middleEnabled, c.allEnabled);
    }
}

TEST_F(FileListViewTest, ChangeRemoteNameAsksForTheNameThenConfirms)
{
    const QString prompt = StringTable::text(ids::kEnterNewFileName) + u'|';
    struct Case {
        const char* what;
        std::vector<int> selected;
        std::optional<QString> typed;
        std::deque<Answer> confirm;
        QStringList prompts;
        QStringList messages;
        QString storedRemoteName;
        QString shownRemoteName;
        bool changed;
    };
    const Case cases[] = {
        { "two rows", { 0, 1 }, {}, {}, {}, texts(ids::kOnlyOneFileAtATime), "", "a.txt", false },
        { "no row", {}, {}, {}, {}, texts(ids::kSelectFileToRename), "", "a.txt", false },
        { "renamed", { 0 }, QStringLiteral("index.htm"), { Answer::Accepted }, { prompt + "a.txt" },
            {}, "index.htm", "index.htm", true },
        { "the local name: nothing to confirm", { 0 }, QStringLiteral("a.txt"), {},
            { prompt + "a.txt" }, {}, "", "a.txt", true },
        { "empty: the local name", { 0 }, QString(), { Answer::Accepted }, { prompt + "a.txt" }, {},
            "a.txt", "a.txt", true },
        { "not confirmed", { 0 }, QStringLiteral("x.txt"), { Answer::Cancelled },
            { prompt + "a.txt" }, {}, "", "a.txt", true },
        { "prompt cancelled", { 0 }, std::nullopt, {}, { prompt + "a.txt" }, {}, "", "a.txt",
            false },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        openAbc();
        answers_.reset(c.confirm);
        prompts_.clear();
        answer_ = c.typed;
        select(c.selected);
        view_.changeRemoteName();

        EXPECT_EQ(prompts_, c.prompts);
        EXPECT_EQ(answers_.messages, c.messages);
        EXPECT_EQ(view_.entries()[0].remoteName, c.storedRemoteName);
        EXPECT_EQ(shown(0, FileListModel::RemoteName), c.shownRemoteName);
        EXPECT_EQ(view_.changed(), c.changed);
        if (!c.confirm.empty()) {
            ASSERT_EQ(answers_.questions.size(), 1u);
            EXPECT_EQ(answers_.questions[0].text,
                messageText(ids::kConfirmRename, { QStringLiteral("a.txt"), *c.typed }));
        }
    }
}

TEST_F(FileListViewTest, ServerFileAppendsOrReplacesAndKeepsCarriageReturns)
{
    writeFile(local("d.txt"), "d");
    writeFile(local("crlf.txt\r"), "r");
    const QByteArray header = "FTP_SERVER_FILE\n";
    const QByteArray d = local("d.txt").toUtf8();
    const QByteArray crlf = local("crlf.txt").toUtf8();
    struct Case {
        const char* what;
        bool tied; // the view shows a saved list (the file-list screen)
        QByteArray fls;
        std::deque<Answer> answers;
        QStringList names;
        QStringList messages;
        bool savedAtOnce;
    };
    const Case cases[] = {
        { "no header", true, "FTP_SERVER\n" + d + "\n", {}, { "a.txt", "b.txt", "c.txt" },
            texts(ids::kNotAnFtpServerFile), false },
        { "append", true, header + d + "\n", { Answer::Accepted },
            { "a.txt", "b.txt", "c.txt", "d.txt" }, {}, false },
        { "replace", true, header + d + "\n", { Answer::Middle }, { "d.txt" }, {}, true },
        { "cancel", true, header + d + "\n", { Answer::Cancelled }, { "a.txt", "b.txt", "c.txt" },
            {}, false },
        // The carriage return stays part of the path; a last line without a line feed is
        // not read.
        { "CRLF into an empty view", false, "FTP_SERVER_FILE\r\n" + crlf + "\r\n" + d, {},
            { "crlf.txt\r" }, {}, false },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        CFileListView view(answers_);
        answers_.reset(c.answers);
        const QString fls = local(QStringLiteral("list.fls"));
        writeFile(fls, c.fls);
        view.dialogs().chooseServerFile = [&] { return fls; };
        makeList("abc",
            { localFolder() + QStringLiteral("|a.txt|"), localFolder() + QStringLiteral("|b.txt|"),
                localFolder() + QStringLiteral("|c.txt|") });
        const QByteArray stored = readFile(FileListStore::listFile(listFolder("abc")));
        if (c.tied)
            view.openList(listFolder("abc"));
        view.loadServerFile();

        QStringList names;
        for (const FileListEntry& entry : view.entries())
            names.append(entry.localName);
        EXPECT_EQ(names, c.names);
        EXPECT_EQ(answers_.messages, c.messages);
        if (!c.answers.empty()) {
            EXPECT_EQ(
                answers_.questions.at(0).caption, StringTable::text(ids::kAppendOrReplaceCaption));
        }
        const auto savedNames = [&] {
            QStringList saved;
            for (const FileListEntry& entry :
                FileList::readStored(FileListStore::listFile(listFolder("abc"))))
                saved.append(entry.localName);
            return saved;
        };
        if (c.savedAtOnce) {
            EXPECT_EQ(savedNames(), c.names);
            EXPECT_FALSE(view.changed());
        } else {
            EXPECT_EQ(readFile(FileListStore::listFile(listFolder("abc"))), stored);
        }
    }
}

TEST_F(FileListViewTest, SaveAsksForANameUnlessTiedToAList)
{
    struct Case {
        const char* what;
        bool tied;
        bool empty;
        std::optional<QString> name;
        bool plainFileInTheWay;
        QStringList prompts;
        const char* savedIn; // the list folder written, or none
    };
    const QString prompt = StringTable::text(ids::kEnterFileListName) + u'|';
    const Case cases[] = {
        { "a new name", false, false, QStringLiteral("web"), false, { prompt }, "web" },
        { "a plain file of that name", false, false, QStringLiteral("web"), true, { prompt },
            nullptr },
        { "prompt cancelled", false, false, std::nullopt, false, { prompt }, nullptr },
        { "an empty list", false, true, QStringLiteral("web"), false, {}, nullptr },
        { "tied to a list", true, false, std::nullopt, false, {}, "abc" },
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        QDir(FileListStore::root()).removeRecursively();
        CFileListView view(answers_);
        prompts_.clear();
        view.dialogs().askText = view_.dialogs().askText;
        answer_ = c.name;
        if (c.plainFileInTheWay)
            writeFile(listFolder("web"), "not a folder");
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

        EXPECT_EQ(prompts_, c.prompts);
        if (!c.savedIn) {
            EXPECT_EQ(saved.count(), 0);
            EXPECT_EQ(view.changed(), !c.empty);
            EXPECT_FALSE(QFileInfo::exists(FileListStore::listFile(listFolder("web"))));
            continue;
        }
        ASSERT_EQ(saved.count(), 1);
        EXPECT_EQ(saved.at(0).at(0).toString(), listFolder(c.savedIn));
        EXPECT_EQ(stored(FileList::readStored(FileListStore::listFile(listFolder(c.savedIn)))),
            stored(view.entries()));
        EXPECT_FALSE(view.changed());
    }
}

} // namespace
} // namespace zelto::test
