#include "ProfilesFixture.h"
#include "TestFiles.h"
#include "profiles/FileList.h"
#include "profiles/LinkEditor.h"
#include "profiles/LinkFile.h"
#include "profiles/LinkRun.h"
#include "profiles/SiteProfile.h"
#include "profiles/StoredFormats.h"
#include "settings/SettingsStore.h"

#include <functional>

namespace zelto {
namespace {

using test::contents;
using test::writeFile;

using LinkTest = test::ProfilesFixture;

// "site paths... list path" of a link, "-" when it is gone.
QString linkText(const QString& path)
{
    if (!QFileInfo::exists(path))
        return QStringLiteral("-");
    const Link link = LinkFile::read(path);
    QStringList paths;
    for (const LinkSite& site : link.sites)
        paths.append(site.profile);
    return (paths << link.files).join(u' ');
}

TEST_F(LinkTest, AddChecksTheNameAndTheFilesButAllowsNoSites)
{
    makeProfile("a.ini");
    makeList("daily", { localFolder() + QStringLiteral("|a.txt") });
    makeLink(
        QStringLiteral("old"), { "/p/1.ini", "/p/2.ini", "/p/3.ini" }, "/lists/gone/flist.ini");
    const QString list = FileListStore::listFile(listFolder("daily"));
    const struct {
        QString typed;
        bool withSite;
        bool withFiles;
        int message;
        const char* link; // what the link file holds afterwards
    } cases[] = {
        { QString(), true, true, ids::kEnterLinkName, nullptr },
        { QStringLiteral("x"), true, false, ids::kNoFilesInLink, nullptr },
        { QStringLiteral("nosites"), false, true, 0, "nosites" },
        { QStringLiteral("old.ini"), true, true, 0, "old" }, // written over
    };
    for (const auto& c : cases) {
        test::TestNotifier notifier;
        test::RecordingEvents events;
        LinkEditor editor(notifier, events);
        editor.setName(c.typed);
        if (c.withSite)
            editor.pickProfile(profile("a.ini"));
        if (c.withFiles)
            editor.pickList(listFolder("daily"));
        EXPECT_EQ(editor.add(), c.message == 0);
        EXPECT_EQ(notifier.messages, test::texts(c.message));
        EXPECT_EQ(events.links, c.link ? 1 : 0);
        if (c.link) {
            EXPECT_EQ(linkText(linkPath(QString::fromUtf8(c.link))),
                (c.withSite ? profile("a.ini") + u' ' : QString()) + list);
        }
    }
    EXPECT_TRUE(contents(linkPath("old")).contains("[SITE3]\nSITE=/p/3.ini"))
        << "sections of a longer site list stay";
}

TEST_F(LinkTest, RunHandsOverEachFileOnceWithItsCasingAndEverySite)
{
    const QString f = localFolder();
    writeFile(f + QStringLiteral("/Index.HTML"), "12345");
    writeFile(f + QStringLiteral("/index.html"), "1");
    QFile big(f + QStringLiteral("/big.iso"));
    ASSERT_TRUE(big.open(QIODevice::WriteOnly) && big.resize(5LL << 30)); // sparse: costs no disk
    QDir().mkpath(f + QStringLiteral("/folder"));
    makeList("daily",
        { f + "|Index.HTML", f + "|missing", f + "|folder", f + "|big.iso|Remote.Iso",
            f + "/|Index.HTML", f + "|index.html" }); // the same full path twice
    writeFile(profile("long.ini"),
        "[Settings]\nHost=" + QByteArray(300, 'h')
            + "\nUser=u\nPassword=p\nRemote Path=/in\nPort=2121\n");
    makeLink(QStringLiteral("nightly"), { profile("long.ini"), profile("missing.ini") },
        FileListStore::listFile(listFolder("daily")));
    for (auto [casing, names] : {
             std::pair { "PRESERVE", "Index.HTML Remote.Iso index.html" },
             std::pair { "UPPER_CASE", "INDEX.HTML REMOTE.ISO INDEX.HTML" },
             std::pair { "LOWER_CASE", "index.html remote.iso index.html" },
             std::pair { "lower_case", "Index.HTML Remote.Iso index.html" }, // exact words only
         }) {
        SettingsStore::set(settings::config::kFileCasingPut, QString::fromUtf8(casing));
        const LinkPlan plan = LinkRun::prepare(QStringLiteral("nightly"));
        QStringList remoteNames;
        for (const FileListEntry& file : plan.files) {
            remoteNames.append(file.remoteName);
            EXPECT_TRUE(file.status == -1 && file.lastWrite > 0);
        }
        EXPECT_EQ(remoteNames.join(u' '), names);
        EXPECT_EQ(plan.totalBytes, (5LL << 30) + 6); // counted whole
        EXPECT_EQ(plan.sites,
            std::vector<SiteRecord>({ { QString(126, u'h'), "u", "p", "/in", 2121 }, {} }))
            << "a missing profile: empty texts, port 21";
    }
    EXPECT_TRUE(LinkRun::prepare(QStringLiteral("no such link")).files.empty());
}

// A link written by hand with relative paths means the same from cron, whatever the current
// folder of the process: the paths are below the data folder.
TEST_F(LinkTest, RelativePathsOfALinkAreBelowTheDataFolder)
{
    writeFile(localFolder() + QStringLiteral("/a.txt"), "a");
    makeList("daily", { localFolder() + "|a.txt" });
    makeProfile(QStringLiteral("site.ini"), "relhost");
    const QDir base(DataFolders::base());
    makeLink(QStringLiteral("rel"), { base.relativeFilePath(profile("site.ini")) },
        base.relativeFilePath(FileListStore::listFile(listFolder("daily"))));
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QDir::rootPath()));
    const LinkPlan plan = LinkRun::prepare(QStringLiteral("rel"));
    QDir::setCurrent(before);
    ASSERT_EQ(plan.files.size(), 1U);
    EXPECT_EQ(plan.files.front().localName, QStringLiteral("a.txt"));
    ASSERT_EQ(plan.sites.size(), 1U);
    EXPECT_EQ(plan.sites.front().host, QStringLiteral("relhost"));
}

TEST_F(LinkTest, LinksFollowRenamedAndDeletedProfilesAndLists)
{
    using Act = std::function<void(ProfileStore&, FileListStore&)>;
    const struct {
        std::deque<Answer> answers;
        Act act;
        // Links l1, l2 and sub/l3 afterwards (nullptr: unchanged), "<P>" for the profile root,
        // "<F>" for the list root.
        std::vector<const char*> links;
    } cases[] = {
        // The rest after the old folder keeps its case, or the link would name no file on a
        // case-sensitive file system; only links directly in "Links".
        { {}, [](auto& s, auto&) { (void)s.renameFolder(profile("eu"), QStringLiteral("euro")); },
            { "<P>/euro/paris.ini <P>/eu2/oslo.ini <F>/daily/flist.ini",
                "<P>/euro/sub/rome.ini <F>/weekly/flist.ini" } },
        { {},
            [](auto& s, auto&) {
                (void)s.renameProfile(profile("eu/paris.ini"), QStringLiteral("lu"));
            },
            { "<P>/eu/lu.ini <P>/eu2/oslo.ini <F>/daily/flist.ini", nullptr,
                "<P>/eu/lu.ini <F>/DAILY/flist.ini" } },
        { { Answer::Accepted },
            [](auto& s, auto&) { s.deleteProfiles({ profile("eu/paris.ini") }); },
            { "-", nullptr, "-" } },
        { { Answer::Middle }, [](auto& s, auto&) { s.deleteFolder(profile("eu")); }, { "-", "-" } },
        { {},
            [](auto&, auto& s) { (void)s.renameList(listFolder("daily"), QStringLiteral("day")); },
            { "<P>/eu/paris.ini <P>/eu2/oslo.ini <F>/day/flist.ini", nullptr,
                "<P>/EU/PARIS.INI <F>/day/flist.ini" } },
        { { Answer::Accepted }, [](auto&, auto& s) { s.deleteList(listFolder("daily")); },
            { "-", nullptr, "-" } },
    };
    const auto expand = [](const char* text) {
        return QString::fromUtf8(text)
            .replace(QStringLiteral("<P>"), ProfileStore::root())
            .replace(QStringLiteral("<F>"), FileListStore::root());
    };
    const QStringList names { "l1", "l2", "sub/l3" };
    // sub/l3 names its profile and list in other letter cases: operations on one ignore case.
    const char* const before[] = { "<P>/eu/paris.ini <P>/eu2/oslo.ini <F>/daily/flist.ini",
        "<P>/eu/sub/rome.ini <F>/weekly/flist.ini", "<P>/EU/PARIS.INI <F>/DAILY/flist.ini" };
    for (const auto& c : cases) {
        for (const QString& root :
            { ProfileStore::root(), FileListStore::root(), DataFolders::links() })
            QDir(root).removeRecursively();
        for (const char* p : { "eu/paris.ini", "eu/sub/rome.ini", "eu2/oslo.ini" })
            makeProfile(p);
        makeList("daily", {});
        makeList("weekly", {});
        for (int i = 0; i < names.size(); ++i) {
            QStringList paths = expand(before[i]).split(u' ');
            const QString files = paths.takeLast();
            makeLink(names[i], paths, files);
        }
        test::TestNotifier notifier(c.answers);
        test::RecordingEvents events;
        ProfileStore profiles(notifier, events);
        FileListStore lists(notifier, events);
        c.act(profiles, lists);
        EXPECT_TRUE(notifier.answers.empty());
        EXPECT_EQ(events.links, 1) << "the main frame reloads its links once";
        for (int i = 0; i < names.size(); ++i) {
            const char* after = i < int(c.links.size()) && c.links[i] ? c.links[i] : before[i];
            EXPECT_EQ(linkText(linkPath(names[i])), expand(after)) << names[i].toStdString();
        }
    }
}

TEST_F(LinkTest, DamagedFilesReadAsWhatCanBeRead)
{
    const QString junk = temp_.root() + QStringLiteral("/junk");
    writeFile(junk, test::makeBytes(4096, 7));
    EXPECT_EQ(SiteProfile::readSite(junk, profilefile::kTargetListBuffer).port, 21u);
    EXPECT_TRUE(LinkFile::read(junk).sites.empty());
    EXPECT_TRUE(FileList::readStored(junk).empty());
    FileList list;
    EXPECT_EQ(list.loadServerFile(junk, QString(), notifier_), FileList::ServerFileLoad::Refused);
    EXPECT_EQ(ProfileStore(notifier_, events_).importServerFile(junk, ProfileStore::root()), 0);

    const QString cut = temp_.root() + QStringLiteral("/cut.ini");
    writeFile(cut, "[Settings]\nHost=ex");
    EXPECT_EQ(
        SiteProfile::readSite(cut, linkfile::kValueBuffer), (SiteRecord { "ex", "", "", "", 21 }));
    writeFile(cut, "[LinkItems]\nSites=3\nFiles=/l/flist.ini\n[SITE1]\nSITE=/p/a.ini\n[SITE2");
    EXPECT_EQ(linkText(cut), QStringLiteral("/p/a.ini /l/flist.ini"));
    writeFile(cut, "[LIST]\nNumItems=2\n[FILE1]\nLocalName=a\nFold");
    EXPECT_EQ(FileList::readStored(cut).size(), 1u);
    EXPECT_EQ(SiteProfile::readSite(temp_.root(), linkfile::kValueBuffer), SiteRecord {});
    EXPECT_TRUE(FileList::readStored(temp_.root()).empty());
}

class FileListTest : public test::ProfilesFixture {
protected:
    void SetUp() override
    {
        for (auto [name, size] : { std::pair { "a.txt", 3 }, { "B.TXT", 4 }, { "c.log", 5 } })
            writeFile(local(name), QByteArray(size, 'x'));
        QDir().mkpath(local("d.txt")); // a folder that a pattern matches
    }
    [[nodiscard]] QString local(const char* name) const
    {
        return localFolder() + u'/' + QString::fromUtf8(name);
    }
    [[nodiscard]] QString fls(const QByteArray& body) const
    {
        writeFile(temp_.root() + QStringLiteral("/paths.fls"), body);
        return temp_.root() + QStringLiteral("/paths.fls");
    }
    const QString listFile = localFolder() + QStringLiteral("/flist.ini");
};

TEST_F(FileListTest, LoadTakesTheCountedEntriesOnceEach)
{
    const QByteArray folder = localFolder().toUtf8();
    const QString wild = localFolder() + u'|';
    const std::pair<QByteArray, QStringList> cases[] = {
        { "[LIST]\nNumItems=2\n[FILE1]\nLocalName=1\n[FILE2]\nLocalName=2\n[FILE3]\nLocalName=3\n",
            { "|1||0", "|2||0" } }, // the count bounds the entries
        { "[LIST]\nNumItems=3\n[FILE1]\nLocalName=a.txt\nFolder=/x/y\nRemoteName=r\n"
          "[FILE2]\nLocalName=A.TXT\nFolder=/X/Y\n[FILE3]\nLocalName=a.txt\nFolder=/x/z\n",
            { "/x/y|a.txt|r|0", "/x/z|a.txt||0" } }, // differing in case only: one
        { "[LIST]\nNumItems=3\n[FILE1]\nLocalName=1\nSize=12abc\n[FILE2]\nLocalName=2\nSize=-5\n"
          "[FILE3]\nLocalName=3\nSize=6442450944\n",
            { "|1||12", "|2||-5", "|3||6442450944" } }, // sizes read as a C library's long
        { "[LIST]\nNumItems=3\n[FILE1]\nLocalName=1\n[FILE03]\nLocalName=3\n", { "|1||0" } },
        { "[LIST]\nNumItems=2147483647\n[FILE1]\nLocalName=1\n", { "|1||0" } },
        { "[LIST]\nNumItems=-1\n[FILE1]\nLocalName=1\n", {} },
        { "[LIST]\nNumItems=1\n[FILE1]\nLocalName=" + QByteArray(300, 'n') + "\n",
            { QStringLiteral("|%1||0").arg(QString(254, u'n')) } },
        // A pattern adds the plain files it matches, ignoring case, with their sizes on disk;
        // the stored a.txt is then held already.
        { "[LIST]\nNumItems=2\n[FILE1]\nLocalName=*.txt\nFolder=" + folder
                + "\nSize=99\n[FILE2]\nLocalName=a.txt\nFolder=" + folder + "\nSize=99\n",
            { wild + "B.TXT||4", wild + "a.txt||3" } },
    };
    for (const auto& [file, entries] : cases) {
        writeFile(listFile, file);
        FileList list;
        list.load(listFile);
        EXPECT_EQ(test::summary(list.entries()), entries) << file.constData();
        EXPECT_FALSE(list.changed());
    }
}

TEST_F(FileListTest, SaveWritesTheListOnlyWhenItHoldsEntries)
{
    FileList list;
    EXPECT_TRUE(list.save(listFile));
    EXPECT_FALSE(QFileInfo::exists(listFile)) << "an empty list writes nothing";
    ASSERT_TRUE(list.add({ QStringLiteral("/x"), QStringLiteral("a"), QString(), 5, 0, 0 }));
    ASSERT_TRUE(
        list.add({ QStringLiteral("/y"), QStringLiteral("b"), QStringLiteral("B"), 6, 0, 0 }));
    EXPECT_FALSE(list.add({ QStringLiteral("/X"), QStringLiteral("A"), QString(), 1, 0, 0 }));
    ASSERT_TRUE(list.save(listFile));
    EXPECT_EQ(contents(listFile),
        "[LIST]\nNumItems=2\n[FILE1]\nLocalName=a\nFolder=/x\nRemoteName=\nSize=5\n"
        "[FILE2]\nLocalName=b\nFolder=/y\nRemoteName=B\nSize=6\n");
}

TEST_F(FileListTest, ServerFileLinesAreTakenAsTheyStand)
{
    writeFile(local("a.txt\r"), "1234567"); // the name a CRLF line asks for
    const QByteArray f = "FTP_SERVER_FILE\n" + localFolder().toUtf8();
    const QString p = localFolder() + u'/';
    const std::pair<QByteArray, QStringList> cases[] = {
        { f + "/a.txt\n" + f.mid(16) + "/B.TXT\n", { p + "|a.txt||3", p + "|B.TXT||4" } },
        { f + "/none\n\n" + f.mid(16) + "/c.log\n", { p + "|c.log||5" } }, // missing: skipped
        { "FTP_SERVER_FILE\r\n" + f.mid(16) + "/a.txt\r\n" + f.mid(16) + "/c.log\r\n",
            { p + "|a.txt\r||7" } }, // a carriage return stays in the path
        { f + "/a.txt\n" + f.mid(16) + "/c.log", { p + "|a.txt||3" } }, // unfinished last line
        { f + "/*.log\n", { p + "|c.log||5" } }, // a pattern gives its first match
        { f + "/a.txt\n" + f.mid(16) + "/a.txt\n", { p + "|a.txt||3" } },
    };
    for (const auto& [bytes, entries] : cases) {
        FileList list;
        EXPECT_EQ(list.loadServerFile(fls(bytes), QString(), notifier_),
            FileList::ServerFileLoad::Replaced);
        EXPECT_EQ(test::summary(list.entries()), entries) << bytes.constData();
    }
    EXPECT_TRUE(notifier_.questions.empty()) << "an empty list is replaced without asking";
}

TEST_F(FileListTest, ServerFileAppendsReplacesOrCancels)
{
    const QByteArray f = localFolder().toUtf8();
    const QByteArray paths = "FTP_SERVER_FILE\n" + f + "/a.txt\n" + f + "/c.log\n";
    using Load = FileList::ServerFileLoad;
    const struct {
        QByteArray bytes;
        std::deque<Answer> answers;
        Load result;
        QStringList names;
        bool saved;
    } cases[] = {
        { paths, { Answer::Accepted }, Load::Appended, { "B.TXT", "a.txt", "c.log" }, false },
        { paths, { Answer::Middle }, Load::Replaced, { "a.txt", "c.log" }, true },
        { paths, { Answer::Cancelled }, Load::Cancelled, { "B.TXT" }, false },
        { "FTP_SERVER\n" + f + "/a.txt\n", {}, Load::Refused, { "B.TXT" }, false },
    };
    for (const auto& c : cases) {
        QFile::remove(listFile);
        FileList list;
        ASSERT_TRUE(list.add({ localFolder(), QStringLiteral("B.TXT"), QString(), 1, 0, 0 }));
        test::TestNotifier notifier(c.answers);
        EXPECT_EQ(list.loadServerFile(fls(c.bytes), listFile, notifier), c.result);
        EXPECT_TRUE(notifier.answers.empty());
        EXPECT_EQ(test::localNames(list.entries()), c.names);
        EXPECT_EQ(QFileInfo::exists(listFile), c.saved) << "appended entries wait to be saved";
        EXPECT_EQ(notifier.messages,
            test::texts(c.result == Load::Refused ? ids::kNotAnFtpServerFile : 0));
    }
}

TEST_F(FileListTest, ListFoldersStayOneLevelBelowTheRoot)
{
    FileListStore store(notifier_, events_);
    EXPECT_EQ(store.renameList(FileListStore::root(), QStringLiteral("x")), QString());
    EXPECT_FALSE(store.deleteList(FileListStore::root()));

    makeList("daily", { localFolder() + QStringLiteral("|a.txt|") });
    QDir().mkpath(listFolder("sub"));
    // Each would move or make the list somewhere else than one folder below the root.
    for (const char* name : { "../out", "sub/inner", "..", "back\\slash" }) {
        SCOPED_TRACE(name);
        notifier_.reset({});
        EXPECT_EQ(store.renameList(listFolder("daily"), QString::fromUtf8(name)), QString());
        EXPECT_EQ(notifier_.messages, test::texts(ids::kNoPathToCreateDirectory));
        EXPECT_FALSE(FileListStore::folderForName(QString::fromUtf8(name)));
    }
    EXPECT_TRUE(QFileInfo::exists(FileListStore::listFile(listFolder("daily"))));
    EXPECT_FALSE(
        QFileInfo::exists(QFileInfo(FileListStore::root()).path() + QStringLiteral("/out")));
    EXPECT_EQ(FileListStore::folderForName(QStringLiteral("weekly")), listFolder("weekly"));
}

} // namespace
} // namespace zelto
