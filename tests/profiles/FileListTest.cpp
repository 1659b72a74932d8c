#include "profiles/FileList.h"

#include "ProfilesFixture.h"
#include "platform/StringTable.h"
#include "profiles/FileListStore.h"

namespace zelto {
namespace {

// One line per entry, "folder|local|remote|size", so that a whole list compares and prints.
QStringList summary(const FileList& list)
{
    QStringList lines;
    for (const FileListEntry& e : list.entries())
        lines.append(
            QStringLiteral("%1|%2|%3|%4").arg(e.folder, e.localName, e.remoteName).arg(e.size));
    return lines;
}

class FileListTest : public test::ProfilesFixture {
protected:
    void SetUp() override
    {
        makeLocal("a.txt", 3);
        makeLocal("B.TXT", 4);
        makeLocal("c.log", 5);
        QDir().mkpath(local("d.txt")); // a folder that a pattern matches
        QDir().mkpath(QFileInfo(listFile()).path());
    }

    [[nodiscard]] QString listFile() const
    {
        return temp_.root() + QStringLiteral("/list/flist.ini");
    }
    [[nodiscard]] QString local(const char* name) const
    {
        return localFolder() + u'/' + QString::fromUtf8(name);
    }
    void makeLocal(const char* name, int size) { writeFile(local(name), QByteArray(size, 'x')); }

    [[nodiscard]] QString fls(const QByteArray& body) const
    {
        const QString path = temp_.root() + QStringLiteral("/paths.fls");
        writeFile(path, body);
        return path;
    }

    // A list of the local files `names`, as the view holds them after adding them.
    [[nodiscard]] FileList listOf(std::initializer_list<const char*> names) const
    {
        FileList list;
        for (const char* name : names)
            list.add({ localFolder(), QString::fromUtf8(name), QString(), 1, 0, 0 });
        return list;
    }
};

TEST_F(FileListTest, LoadTakesTheCountedEntriesOnceEach)
{
    const QByteArray long300(300, 'n');
    const struct {
        const char* name;
        QByteArray file;
        QStringList entries;
    } cases[] = {
        { "the count bounds the entries",
            "[LIST]\nNumItems=2\n[FILE1]\nLocalName=1\nFolder=/f\n[FILE2]\nLocalName=2\nFolder=/f\n"
            "[FILE3]\nLocalName=3\nFolder=/f\n[FILE4]\nLocalName=4\nFolder=/f\n"
            "[FILE5]\nLocalName=5\nFolder=/f\n",
            { "/f|1||0", "/f|2||0" } },
        { "entries differing in case only are one",
            "[LIST]\nNumItems=3\n[FILE1]\nLocalName=a.txt\nFolder=/x/y\nRemoteName=r\n"
            "[FILE2]\nLocalName=A.TXT\nFolder=/X/Y\n[FILE3]\nLocalName=a.txt\nFolder=/x/z\n",
            { "/x/y|a.txt|r|0", "/x/z|a.txt||0" } },
        { "sizes read as a C library's long",
            "[LIST]\nNumItems=4\n[FILE1]\nLocalName=1\nSize=12abc\n[FILE2]\nLocalName=2\n"
            "[FILE3]\nLocalName=3\nSize=6442450944\n[FILE4]\nLocalName=4\nSize=-5\n",
            { "|1||12", "|2||0", "|3||6442450944", "|4||-5" } },
        { "a missing section is skipped",
            "[LIST]\nNumItems=3\n[FILE1]\nLocalName=1\n[FILE3]\nLocalName=3\n[FILE03]\nLocalName="
            "x\n",
            { "|1||0", "|3||0" } },
        { "a damaged count walks no further than the file",
            "[LIST]\nNumItems=2147483647\n[FILE1]\nLocalName=1\n", { "|1||0" } },
        { "no count", "[FILE1]\nLocalName=1\n", {} },
        { "negative count", "[LIST]\nNumItems=-1\n[FILE1]\nLocalName=1\n", {} },
        { "long values are cut at 254 characters",
            "[LIST]\nNumItems=1\n[FILE1]\nLocalName=" + long300 + "\n",
            { QStringLiteral("|%1||0").arg(QString(254, u'n')) } },
    };
    for (const auto& c : cases) {
        writeFile(listFile(), c.file);
        FileList list;
        list.load(listFile());
        EXPECT_EQ(summary(list), c.entries) << c.name;
        EXPECT_FALSE(list.changed()) << c.name;
    }
    FileList list;
    list.load(temp_.root() + QStringLiteral("/missing/flist.ini"));
    EXPECT_TRUE(list.isEmpty());
}

TEST_F(FileListTest, AWildcardEntryAddsThePlainFilesItMatches)
{
    const QByteArray folder = localFolder().toUtf8();
    writeFile(listFile(),
        "[LIST]\nNumItems=2\n[FILE1]\nLocalName=*.txt\nFolder=" + folder
            + "\nSize=99\n[FILE2]\nLocalName=a.txt\nFolder=" + folder + "\nSize=99\n");
    FileList list;
    list.load(listFile());
    // Matched ignoring case, folders left out, sizes from the disk; the stored a.txt is then held.
    EXPECT_EQ(summary(list),
        QStringList({ localFolder() + QStringLiteral("|B.TXT||4"),
            localFolder() + QStringLiteral("|a.txt||3") }));
    EXPECT_GT(list.entries().front().lastWrite, 0);
    EXPECT_FALSE(list.changed());
}

TEST_F(FileListTest, SaveWritesTheListAndLeavesOlderSectionsBehind)
{
    FileList list;
    EXPECT_TRUE(list.save(listFile()));
    EXPECT_FALSE(QFileInfo::exists(listFile())) << "an empty list writes nothing";

    ASSERT_TRUE(list.add({ QStringLiteral("/x"), QStringLiteral("a"), QString(), 5, 0, 0 }));
    ASSERT_TRUE(list.add(
        { QStringLiteral("/y"), QStringLiteral("b"), QStringLiteral("B"), 6442450944, 0, 0 }));
    EXPECT_FALSE(list.add({ QStringLiteral("/X"), QStringLiteral("A"), QString(), 1, 0, 0 }));
    EXPECT_TRUE(list.changed());
    ASSERT_TRUE(list.save(listFile()));
    EXPECT_FALSE(list.changed());
    EXPECT_EQ(readFile(listFile()),
        "[LIST]\nNumItems=2\n[FILE1]\nLocalName=a\nFolder=/x\nRemoteName=\nSize=5\n"
        "[FILE2]\nLocalName=b\nFolder=/y\nRemoteName=B\nSize=6442450944\n");

    FileList reread;
    reread.load(listFile());
    EXPECT_EQ(summary(reread), summary(list)) << "an empty remote name reads back empty";

    // A shorter list leaves the sections of the longer one; the count bounds what is read.
    test::ScriptedNotifier notifier({ Answer::Accepted });
    EXPECT_EQ(reread.remove({ 0 }, notifier), 1);
    ASSERT_TRUE(reread.save(listFile()));
    EXPECT_TRUE(readFile(listFile()).contains("[FILE2]\nLocalName=b"));
    FileList shorter;
    shorter.load(listFile());
    EXPECT_EQ(summary(shorter), QStringList { QStringLiteral("/y|b|B|6442450944") });
}

TEST_F(FileListTest, ServerFileLinesAreTakenAsTheyStand)
{
    makeLocal("a.txt\r", 7); // the name a CRLF line asks for
    const QByteArray folder = localFolder().toUtf8();
    const QString prefix = localFolder() + u'/';
    const struct {
        const char* name;
        QByteArray bytes;
        QStringList entries;
    } cases[] = {
        { "one path a line", "FTP_SERVER_FILE\n" + folder + "/a.txt\n" + folder + "/B.TXT\n",
            { prefix + QStringLiteral("|a.txt||3"), prefix + QStringLiteral("|B.TXT||4") } },
        { "a header ending in CRLF", "FTP_SERVER_FILE\r\n" + folder + "/c.log\n",
            { prefix + QStringLiteral("|c.log||5") } },
        { "missing paths are skipped",
            "FTP_SERVER_FILE\n" + folder + "/none\n\n" + folder + "/c.log\n",
            { prefix + QStringLiteral("|c.log||5") } },
        { "a carriage return stays in the path",
            "FTP_SERVER_FILE\r\n" + folder + "/a.txt\r\n" + folder + "/c.log\r\n",
            { prefix + QStringLiteral("|a.txt\r||7") } },
        { "a last line without a line feed is not read",
            "FTP_SERVER_FILE\n" + folder + "/a.txt\n" + folder + "/c.log",
            { prefix + QStringLiteral("|a.txt||3") } },
        { "a wildcard path gives its first match", "FTP_SERVER_FILE\n" + folder + "/*.log\n",
            { prefix + QStringLiteral("|c.log||5") } },
        { "a folder is found too", "FTP_SERVER_FILE\n" + folder + "/d.txt\n",
            { prefix + QStringLiteral("|d.txt||")
                + QString::number(QFileInfo(local("d.txt")).size()) } },
        { "the same path twice", "FTP_SERVER_FILE\n" + folder + "/a.txt\n" + folder + "/a.txt\n",
            { prefix + QStringLiteral("|a.txt||3") } },
    };
    for (const auto& c : cases) {
        FileList list;
        EXPECT_EQ(list.loadServerFile(fls(c.bytes), QString(), notifier_),
            FileList::ServerFileLoad::Replaced)
            << c.name;
        EXPECT_EQ(summary(list), c.entries) << c.name;
    }
    EXPECT_TRUE(notifier_.questions.empty()) << "an empty list is replaced without asking";
}

TEST_F(FileListTest, ServerFileAppendsReplacesOrCancels)
{
    const QByteArray folder = localFolder().toUtf8();
    const QByteArray paths = "FTP_SERVER_FILE\n" + folder + "/a.txt\n" + folder + "/c.log\n";
    using Load = FileList::ServerFileLoad;
    const struct {
        const char* name;
        QByteArray bytes;
        bool startEmpty;
        std::deque<Answer> answers;
        Load result;
        QStringList names;
        bool saved;
        int message; // 0: none
    } cases[] = {
        { "into an empty list", paths, true, {}, Load::Replaced, { "a.txt", "c.log" }, true, 0 },
        { "append", paths, false, { Answer::Accepted }, Load::Appended,
            { "B.TXT", "a.txt", "c.log" }, false, 0 },
        { "replace", paths, false, { Answer::Middle }, Load::Replaced, { "a.txt", "c.log" }, true,
            0 },
        { "cancel", paths, false, { Answer::Cancelled }, Load::Cancelled, { "B.TXT" }, false, 0 },
        { "no header", "FTP_SERVER\n" + folder + "/a.txt\n", false, {}, Load::Refused, { "B.TXT" },
            false, ids::kNotAnFtpServerFile },
    };
    for (const auto& c : cases) {
        QFile::remove(listFile());
        FileList list = c.startEmpty ? FileList() : listOf({ "B.TXT" });
        test::ScriptedNotifier notifier(c.answers);
        EXPECT_EQ(list.loadServerFile(fls(c.bytes), listFile(), notifier), c.result) << c.name;
        EXPECT_EQ(notifier.unused(), 0u) << c.name;
        QStringList names;
        for (const FileListEntry& e : list.entries())
            names.append(e.localName);
        EXPECT_EQ(names, c.names) << c.name;
        EXPECT_EQ(QFileInfo::exists(listFile()), c.saved) << c.name;
        EXPECT_EQ(notifier.messages,
            c.message ? QStringList { StringTable::text(c.message) } : QStringList())
            << c.name;
        if (c.result == Load::Appended) {
            EXPECT_TRUE(list.changed()) << "appended entries wait to be saved";
        }
        if (!c.startEmpty && !notifier.questions.empty()) {
            const Question& q = notifier.questions.front();
            EXPECT_EQ(q.caption, StringTable::text(ids::kAppendOrReplaceCaption));
            EXPECT_EQ(q.text, StringTable::text(ids::kAppendOrReplaceQuestion));
            EXPECT_EQ(q.acceptTextId, ids::kButtonAppend);
            EXPECT_EQ(q.middleTextId, ids::kButtonReplace);
            EXPECT_EQ(q.cancelTextId, ids::kButtonCancel);
        }
    }
}

TEST_F(FileListTest, RemoveAsksForEachRowAndTouchesNoFile)
{
    const struct {
        const char* name;
        std::vector<int> rows;
        std::deque<Answer> answers;
        QStringList left;
        const char* firstAsked;
        bool middleEnabled;
    } cases[] = {
        { "one row", { 1 }, { Answer::Accepted }, { "a.txt", "c.log" }, "B.TXT", false },
        { "yes, then cancel", { 0, 2 }, { Answer::Accepted, Answer::Cancelled },
            { "B.TXT", "c.log" }, "a.txt", true },
        { "all", { 0, 1, 2 }, { Answer::Middle }, {}, "a.txt", true },
        { "cancel at once", { 0, 1 }, { Answer::Cancelled }, { "a.txt", "B.TXT", "c.log" }, "a.txt",
            true },
    };
    for (const auto& c : cases) {
        FileList list = listOf({ "a.txt", "B.TXT", "c.log" });
        ASSERT_TRUE(list.save(listFile()));
        test::ScriptedNotifier notifier(c.answers);
        EXPECT_EQ(list.remove(c.rows, notifier), 3 - c.left.size()) << c.name;
        EXPECT_EQ(notifier.unused(), 0u) << c.name;
        QStringList names;
        for (const FileListEntry& e : list.entries())
            names.append(e.localName);
        EXPECT_EQ(names, c.left) << c.name;
        ASSERT_FALSE(notifier.questions.empty());
        const Question& q = notifier.questions.front();
        EXPECT_EQ(q.caption, StringTable::text(ids::kDeleteCaption));
        EXPECT_EQ(q.text,
            StringTable::text(ids::kConfirmRemoveFile)
                .replace(QStringLiteral("%s"), QString::fromUtf8(c.firstAsked)))
            << c.name;
        EXPECT_EQ(q.middleEnabled, c.middleEnabled) << c.name;
        EXPECT_EQ(list.changed(), c.left.size() != 3) << c.name;
    }
    EXPECT_TRUE(QFileInfo::exists(local("a.txt")));

    FileList list = listOf({ "a.txt" });
    EXPECT_EQ(list.remove({}, notifier_), 0);
    EXPECT_EQ(notifier_.messages, QStringList { StringTable::text(ids::kSelectFile) });
}

TEST_F(FileListTest, RemoteNameChangesOnlyAfterConfirmation)
{
    const struct {
        const char* name;
        QString answer;
        std::deque<Answer> answers;
        QString remote;
        bool asked;
    } cases[] = {
        { "a new name", QStringLiteral("new.txt"), { Answer::Accepted }, QStringLiteral("new.txt"),
            true },
        { "an empty name means the local one", QString(), { Answer::Accepted },
            QStringLiteral("a.txt"), true },
        { "not confirmed", QStringLiteral("new.txt"), { Answer::Cancelled }, QStringLiteral("old"),
            true },
        { "the local name itself", QStringLiteral("a.txt"), {}, QStringLiteral("old"), false },
        { "the local name in another case", QStringLiteral("A.TXT"), { Answer::Accepted },
            QStringLiteral("A.TXT"), true },
    };
    for (const auto& c : cases) {
        FileList list;
        list.add({ localFolder(), QStringLiteral("a.txt"), QStringLiteral("old"), 1, 0, 0 });
        ASSERT_TRUE(list.save(listFile()));
        test::ScriptedNotifier notifier(c.answers);
        const std::optional<int> row = list.rowToRename({ 0 }, notifier);
        ASSERT_EQ(row, 0);
        list.changeRemoteName(*row, c.answer, notifier);
        EXPECT_EQ(list.entries().front().remoteName, c.remote) << c.name;
        EXPECT_EQ(notifier.questions.size(), c.asked ? 1u : 0u) << c.name;
        EXPECT_TRUE(list.changed()) << c.name << ": the name dialog was confirmed";
        if (c.asked) {
            const Question& q = notifier.questions.front();
            EXPECT_EQ(q.caption, QStringLiteral("QUESTION"));
            EXPECT_EQ(q.text,
                StringTable::text(ids::kConfirmRename)
                    .replace(QStringLiteral("%s to %s"), QStringLiteral("a.txt to ") + c.answer))
                << c.name;
            EXPECT_FALSE(q.middleEnabled);
        }
    }

    FileList list = listOf({ "a.txt", "c.log" });
    const struct {
        std::vector<int> rows;
        int message;
    } refusals[] = { { { 0, 1 }, ids::kOnlyOneFileAtATime }, { {}, ids::kSelectFileToRename } };
    for (const auto& r : refusals) {
        test::ScriptedNotifier notifier;
        EXPECT_EQ(list.rowToRename(r.rows, notifier), std::nullopt);
        EXPECT_EQ(notifier.messages, QStringList { StringTable::text(r.message) });
    }
}

class FileListStoreTest : public test::ProfilesFixture {
protected:
    static QString list(const char* name)
    {
        return FileListStore::root() + u'/' + QString::fromUtf8(name);
    }
    static void makeList(const char* name)
    {
        writeFile(FileListStore::listFile(list(name)), "[LIST]\nNumItems=0\n");
    }
};

TEST_F(FileListStoreTest, ListFoldersAreRenamedAndDeletedButNeverTheRoot)
{
    makeList("daily");
    makeList("weekly");
    FileListStore store(notifier_, events_);
    EXPECT_EQ(store.renameList(list("daily"), QStringLiteral("weekly")), QString());
    EXPECT_EQ(notifier_.messages, QStringList { StringTable::text(ids::kFolderNotRenamed) });
    EXPECT_EQ(store.renameList(FileListStore::root(), QStringLiteral("x")), QString());
    EXPECT_EQ(store.renameList(list("daily"), QStringLiteral("day")), list("day"));
    EXPECT_EQ(FileListStore::listFolders(), QStringList({ list("day"), list("weekly") }));

    notifier_.script({ Answer::Cancelled, Answer::Accepted });
    EXPECT_FALSE(store.deleteList(list("day")));
    EXPECT_TRUE(store.deleteList(list("day")));
    EXPECT_EQ(FileListStore::listFolders(), QStringList { list("weekly") });
    const Question& q = notifier_.questions.back();
    EXPECT_EQ(q.caption, StringTable::text(ids::kDeleteProfileCaption));
    EXPECT_EQ(q.text, StringTable::text(ids::kDeleteListQuestion));
    EXPECT_EQ(q.acceptTextId, ids::kButtonYes);
    EXPECT_FALSE(store.deleteList(FileListStore::root()));
    EXPECT_TRUE(QFileInfo::exists(FileListStore::listFile(list("weekly"))));
}

TEST_F(FileListStoreTest, ANamedListGoesIntoAFolderOfThatName)
{
    writeFile(list("plain"), "x");
    makeList("kept");
    EXPECT_EQ(FileListStore::folderForName(QStringLiteral("plain")), std::nullopt);
    EXPECT_EQ(FileListStore::folderForName(QStringLiteral("kept")), list("kept"));
    EXPECT_EQ(FileListStore::folderForName(QStringLiteral("fresh")), list("fresh"));
    EXPECT_TRUE(QFileInfo(list("fresh")).isDir());
    EXPECT_TRUE(ownerOnly(list("fresh")));
}

} // namespace
} // namespace zelto
