#include "ProfilesFixture.h"
#include "TestFiles.h"
#include "app/DataFolders.h"
#include "app/SettingsStore.h"
#include "platform/StringTable.h"
#include "profiles/FileList.h"
#include "profiles/FileListStore.h"
#include "profiles/LinkEditor.h"
#include "profiles/LinkFile.h"
#include "profiles/LinkRun.h"
#include "profiles/ProfileStore.h"
#include "profiles/StoredFormats.h"

#include <functional>

namespace zelto {
namespace {

class LinkTest : public test::ProfilesFixture {
protected:
    [[nodiscard]] static QString profile(const QString& relative)
    {
        return ProfileStore::root() + u'/' + relative;
    }
    static void makeProfile(const QString& relative, const QByteArray& host)
    {
        writeFile(profile(relative), "[Settings]\nHost=" + host + "\nUser=u\nPassword=p\n");
    }
    [[nodiscard]] static QString listFolder(const char* name)
    {
        return FileListStore::root() + u'/' + QString::fromUtf8(name);
    }
    // A list of `entries` given as "folder|local|remote".
    static void makeList(const char* name, const QStringList& entries)
    {
        QByteArray text = "[LIST]\nNumItems=" + QByteArray::number(entries.size()) + "\n";
        for (int i = 0; i < entries.size(); ++i) {
            const QStringList parts = entries[i].split(u'|');
            text += "[FILE" + QByteArray::number(i + 1) + "]\nLocalName=" + parts[1].toUtf8()
                + "\nFolder=" + parts[0].toUtf8() + "\nRemoteName=" + parts.value(2).toUtf8()
                + "\n";
        }
        writeFile(FileListStore::listFile(listFolder(name)), text);
    }
    [[nodiscard]] static QString linkPath(const QString& name)
    {
        return DataFolders::links() + u'/' + name + QStringLiteral(".ini");
    }
    static void makeLink(const QString& name, const QStringList& sites, const QString& files)
    {
        QByteArray text = "[LinkItems]\nSites=" + QByteArray::number(sites.size())
            + "\nFiles=" + files.toUtf8() + "\n";
        for (int i = 0; i < sites.size(); ++i)
            text += "[SITE" + QByteArray::number(i + 1) + "]\nSITE=" + sites[i].toUtf8() + "\n";
        writeFile(linkPath(name), text);
    }
    [[nodiscard]] static QStringList sitesOf(const QString& name)
    {
        QStringList sites;
        for (const LinkSite& site : LinkFile::read(linkPath(name)).sites)
            sites.append(site.profile);
        return sites;
    }
};

TEST_F(LinkTest, AddChecksTheNameAndTheFilesButAllowsNoSites)
{
    makeProfile(QStringLiteral("a.ini"), "alpha");
    makeList("daily", { localFolder() + QStringLiteral("|a.txt") });
    const struct {
        const char* name;
        QString typed;
        bool withSite;
        bool withFiles;
        int message; // 0: none
        const char* file; // the link file written, or nullptr
    } cases[] = {
        { "no name", QString(), true, true, ids::kEnterLinkName, nullptr },
        { "no files", QStringLiteral("x"), true, false, ids::kNoFilesInLink, nullptr },
        { "no sites", QStringLiteral("nosites"), false, true, 0, "nosites.ini" },
        { "typed with its extension", QStringLiteral("weekly.ini"), true, true, 0, "weekly.ini" },
        { "a leading dot leaves no name", QStringLiteral(".x"), true, true, 0, ".ini" },
    };
    for (const auto& c : cases) {
        test::ScriptedNotifier notifier;
        test::RecordingEvents events;
        LinkEditor editor(notifier, events);
        editor.setName(c.typed);
        if (c.withSite)
            editor.pickProfile(profile(QStringLiteral("a.ini")));
        if (c.withFiles)
            editor.pickList(listFolder("daily"));
        EXPECT_EQ(editor.add(), c.message == 0) << c.name;
        EXPECT_EQ(notifier.messages,
            c.message ? QStringList { StringTable::text(c.message) } : QStringList())
            << c.name;
        if (!c.file) {
            EXPECT_EQ(events.links, 0) << c.name;
            continue;
        }
        const QString file = DataFolders::links() + u'/' + QString::fromUtf8(c.file);
        const Link link = LinkFile::read(file);
        EXPECT_EQ(link.sites.size(), c.withSite ? 1u : 0u) << c.name;
        EXPECT_EQ(link.files, FileListStore::listFile(listFolder("daily"))) << c.name;
        EXPECT_TRUE(readFile(file).contains(c.withSite ? "Sites=1" : "Sites=0")) << c.name;
        EXPECT_EQ(events.links, 1) << c.name;
        EXPECT_TRUE(editor.sites().empty() && editor.fileRows().isEmpty()
            && editor.selectedList().isEmpty() && editor.name().isEmpty())
            << c.name;
    }
}

TEST_F(LinkTest, AddWritesOverAnOlderLinkAndKeepsItsListWhenNoneIsPicked)
{
    makeProfile(QStringLiteral("a.ini"), "alpha");
    makeList("daily", { localFolder() + QStringLiteral("|a.txt") });
    makeLink(QStringLiteral("old"),
        { QStringLiteral("/p/1.ini"), QStringLiteral("/p/2.ini"), QStringLiteral("/p/3.ini") },
        QStringLiteral("/lists/gone/flist.ini"));
    LinkEditor editor(notifier_, events_);
    editor.pickProfile(profile(QStringLiteral("a.ini")));
    editor.pickList(listFolder("daily"));
    editor.setName(QStringLiteral("old"));
    ASSERT_TRUE(editor.add());
    EXPECT_EQ(sitesOf(QStringLiteral("old")), QStringList { profile(QStringLiteral("a.ini")) });
    EXPECT_EQ(LinkFile::read(linkPath(QStringLiteral("old"))).files,
        FileListStore::listFile(listFolder("daily")));
    EXPECT_TRUE(readFile(linkPath(QStringLiteral("old"))).contains("[SITE3]\nSITE=/p/3.ini"))
        << "sections of a longer site list stay";

    // A link whose list lies outside the lists folder shows its files but selects no list:
    // saving it again keeps the list it names.
    const QString elsewhere = temp_.root() + QStringLiteral("/elsewhere/flist.ini");
    writeFile(elsewhere, "[LIST]\nNumItems=1\n[FILE1]\nLocalName=x\nFolder=/y\n");
    makeLink(QStringLiteral("other"), { profile(QStringLiteral("a.ini")) }, elsewhere);
    editor.pickLink(linkPath(QStringLiteral("other")));
    EXPECT_EQ(editor.selectedList(), QString());
    EXPECT_EQ(editor.fileRows(), QStringList { QStringLiteral("/y/x") });
    editor.removeSite(0);
    editor.setName(QStringLiteral("other"));
    ASSERT_TRUE(editor.add());
    const Link other = LinkFile::read(linkPath(QStringLiteral("other")));
    EXPECT_EQ(other.files, elsewhere);
    EXPECT_TRUE(readFile(linkPath(QStringLiteral("other"))).contains("Sites=0"));
}

TEST_F(LinkTest, PickingFillsTheDialogLikeItsListBoxes)
{
    makeProfile(QStringLiteral("a.ini"), "same.host");
    makeProfile(QStringLiteral("b.ini"), "same.host");
    makeProfile(QStringLiteral("c.ini"), "other.host");
    makeList("daily",
        { QStringLiteral("/x|a.txt"), QStringLiteral("/x/|b.txt"), QStringLiteral("/x|a.txt") });
    test::ScriptedNotifier notifier;
    LinkEditor editor(notifier, events_);
    EXPECT_TRUE(editor.pickProfile(profile(QStringLiteral("a.ini"))));
    EXPECT_FALSE(editor.pickProfile(profile(QStringLiteral("b.ini")))) << "same host";
    EXPECT_TRUE(editor.pickProfile(profile(QStringLiteral("c.ini"))));
    editor.pickList(listFolder("daily"));
    EXPECT_EQ(
        editor.fileRows(), QStringList({ QStringLiteral("/x/a.txt"), QStringLiteral("/x/b.txt") }));
    EXPECT_EQ(editor.selectedList(), listFolder("daily"));

    // A link names its list in any letter case.
    makeLink(QStringLiteral("l"),
        { profile(QStringLiteral("b.ini")), profile(QStringLiteral("c.ini")) },
        FileListStore::listFile(listFolder("daily"))
            .replace(QStringLiteral("flist.ini"), QStringLiteral("FLIST.INI")));
    editor.reset();
    editor.pickLink(linkPath(QStringLiteral("l")));
    EXPECT_EQ(editor.sites(),
        std::vector<LinkSiteRow>(
            { { QStringLiteral("same.host"), profile(QStringLiteral("b.ini")) },
                { QStringLiteral("other.host"), profile(QStringLiteral("c.ini")) } }));
    EXPECT_EQ(editor.selectedList(), listFolder("daily"));
    EXPECT_EQ(editor.selectedLink(), linkPath(QStringLiteral("l")));
    EXPECT_EQ(editor.fileRows().size(), 0)
        << "the stored path names no file on a case-sensitive disk";
    editor.pickProfile(profile(QStringLiteral("a.ini")));
    EXPECT_EQ(editor.selectedLink(), QString()) << "picking a profile clears the link";
}

TEST_F(LinkTest, RenameAndDeleteTheSelectedLink)
{
    makeLink(QStringLiteral("a"), {}, QString());
    makeLink(QStringLiteral("b"), {}, QString());
    const struct {
        const char* name;
        const char* selected; // nullptr: none
        QString typed;
        bool renamed;
        int message;
    } cases[] = {
        { "same name", "a", QStringLiteral("a"), false, ids::kLinkNamesIdentical },
        { "empty name", "a", QString(), false, ids::kEnterLinkName },
        { "a link of that name exists", "a", QStringLiteral("b.old"), false, 0 },
        { "no link selected", nullptr, QStringLiteral("c"), false, 0 },
        { "renamed", "a", QStringLiteral("c.ini"), true, 0 },
    };
    for (const auto& c : cases) {
        test::ScriptedNotifier notifier;
        LinkEditor editor(notifier, events_);
        if (c.selected)
            editor.pickLink(linkPath(QString::fromUtf8(c.selected)));
        editor.setName(c.typed);
        EXPECT_EQ(editor.rename(), c.renamed) << c.name;
        EXPECT_EQ(notifier.messages,
            c.message ? QStringList { StringTable::text(c.message) } : QStringList())
            << c.name;
        EXPECT_TRUE(QFileInfo::exists(linkPath(QStringLiteral("b")))) << c.name;
    }
    EXPECT_EQ(LinkFile::linkFiles(),
        QStringList({ linkPath(QStringLiteral("b")), linkPath(QStringLiteral("c")) }));

    LinkEditor editor(notifier_, events_);
    EXPECT_FALSE(editor.remove());
    EXPECT_EQ(notifier_.messages, QStringList { StringTable::text(ids::kNoLinkSelected) });
    editor.pickLink(linkPath(QStringLiteral("c")));
    EXPECT_TRUE(editor.remove());
    EXPECT_EQ(LinkFile::linkFiles(), QStringList { linkPath(QStringLiteral("b")) });
}

TEST_F(LinkTest, RunHandsOverEachFileOnceWithItsCasingAndEverySite)
{
    writeFile(localFolder() + QStringLiteral("/Index.HTML"), "12345");
    writeFile(localFolder() + QStringLiteral("/index.html"), "1");
    writeFile(localFolder() + QStringLiteral("/Data.Bin"), "123");
    QDir().mkpath(localFolder() + QStringLiteral("/folder"));
    makeList("daily",
        { localFolder() + QStringLiteral("|Index.HTML"), localFolder() + QStringLiteral("|missing"),
            localFolder() + QStringLiteral("|folder"),
            localFolder() + QStringLiteral("|Data.Bin|Remote.Txt"),
            localFolder() + QStringLiteral("/|Index.HTML"), // the same full path
            localFolder() + QStringLiteral("|index.html") });
    const QByteArray long300(300, 'h');
    writeFile(profile(QStringLiteral("long.ini")),
        "[Settings]\nHost=" + long300 + "\nUser=u\nPassword=p\nRemote Path=/in\nPort=2121\n");
    makeLink(QStringLiteral("nightly"),
        { profile(QStringLiteral("long.ini")), profile(QStringLiteral("missing.ini")) },
        FileListStore::listFile(listFolder("daily")));

    const struct {
        const char* casing; // nullptr: not stored
        QStringList remoteNames;
    } cases[] = {
        { nullptr, { "Index.HTML", "Remote.Txt", "index.html" } },
        { "PRESERVE", { "Index.HTML", "Remote.Txt", "index.html" } },
        { "UPPER_CASE", { "INDEX.HTML", "REMOTE.TXT", "INDEX.HTML" } },
        { "LOWER_CASE", { "index.html", "remote.txt", "index.html" } },
        { "lower_case", { "Index.HTML", "Remote.Txt", "index.html" } },
    };
    for (const auto& c : cases) {
        if (c.casing)
            SettingsStore::set(settings::config::kFileCasingPut, QString::fromUtf8(c.casing));
        const LinkPlan plan = LinkRun::prepare(QStringLiteral("nightly"));
        QStringList remoteNames;
        for (const FileListEntry& file : plan.files) {
            remoteNames.append(file.remoteName);
            EXPECT_EQ(file.status, -1);
            EXPECT_GT(file.lastWrite, 0);
        }
        EXPECT_EQ(remoteNames, c.remoteNames) << (c.casing ? c.casing : "default");
        EXPECT_EQ(plan.totalBytes, 9);
        ASSERT_EQ(plan.sites.size(), 2u);
        EXPECT_EQ(plan.sites[0],
            (SiteRecord { QString(126, u'h'), QStringLiteral("u"), QStringLiteral("p"),
                QStringLiteral("/in"), 2121 }));
        EXPECT_EQ(plan.sites[1], SiteRecord {}) << "a missing profile: empty texts, port 21";
    }

    const LinkPlan none = LinkRun::prepare(QStringLiteral("no such link"));
    EXPECT_TRUE(none.files.empty() && none.sites.empty() && none.totalBytes == 0);
}

TEST_F(LinkTest, RunCountsFilesBeyondFourGigabytesWhole)
{
    const QString big = localFolder() + QStringLiteral("/big.iso");
    QDir().mkpath(localFolder());
    QFile file(big);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    constexpr qint64 kSize = 5LL * 1024 * 1024 * 1024 + 7;
    ASSERT_TRUE(file.resize(kSize)); // sparse: costs no disk
    file.close();
    makeList("big", { localFolder() + QStringLiteral("|big.iso") });
    makeLink(QStringLiteral("big"), {}, FileListStore::listFile(listFolder("big")));
    const LinkPlan plan = LinkRun::prepare(QStringLiteral("big"));
    ASSERT_EQ(plan.files.size(), 1u);
    EXPECT_EQ(plan.files[0].size, kSize);
    EXPECT_EQ(plan.totalBytes, kSize);
}

TEST_F(LinkTest, LinksFollowRenamedAndDeletedProfilesAndLists)
{
    using Act = std::function<void(ProfileStore&, FileListStore&, test::ScriptedNotifier&)>;
    const struct {
        const char* name;
        Act act;
        // Links l1, l2, sub/l3 and l4 afterwards: their site paths and list path, "<P>" for the
        // profile root, "<F>" for the list root; "-" when deleted.
        std::vector<const char*> links;
    } cases[] = {
        { "profile folder renamed", // the rest after the old folder is written upper-cased
            [](ProfileStore& s, FileListStore&, test::ScriptedNotifier&) {
                EXPECT_NE(s.renameFolder(profile(QStringLiteral("eu")), QStringLiteral("euro")),
                    QString());
            },
            { "<P>/euro/PARIS.INI <P>/eu2/oslo.ini <F>/daily/flist.ini",
                "<P>/euro/SUB/ROME.INI <F>/weekly/flist.ini",
                "<P>/EU/PARIS.INI <F>/DAILY/flist.ini", // only links directly in "Links"
                "<P>/eu2/oslo.ini <F>/weekly/flist.ini" } },
        { "profile renamed",
            [](ProfileStore& s, FileListStore&, test::ScriptedNotifier&) {
                EXPECT_NE(s.renameProfile(
                              profile(QStringLiteral("eu/paris.ini")), QStringLiteral("lutetia")),
                    QString());
            },
            { "<P>/eu/lutetia.ini <P>/eu2/oslo.ini <F>/daily/flist.ini",
                "<P>/eu/sub/rome.ini <F>/weekly/flist.ini",
                "<P>/eu/lutetia.ini <F>/DAILY/flist.ini",
                "<P>/eu2/oslo.ini <F>/weekly/flist.ini" } },
        { "profile deleted",
            [](ProfileStore& s, FileListStore&, test::ScriptedNotifier& n) {
                n.script({ Answer::Accepted });
                EXPECT_EQ(s.deleteProfiles({ profile(QStringLiteral("eu/paris.ini")) }), 1);
            },
            { "-", "<P>/eu/sub/rome.ini <F>/weekly/flist.ini", "-",
                "<P>/eu2/oslo.ini <F>/weekly/flist.ini" } },
        { "profile folder deleted", // "eu" is not "eu2"
            [](ProfileStore& s, FileListStore&, test::ScriptedNotifier& n) {
                n.script({ Answer::Middle });
                EXPECT_TRUE(s.deleteFolder(profile(QStringLiteral("eu"))));
            },
            { "-", "-", "<P>/EU/PARIS.INI <F>/DAILY/flist.ini",
                "<P>/eu2/oslo.ini <F>/weekly/flist.ini" } },
        { "list renamed",
            [](ProfileStore&, FileListStore& s, test::ScriptedNotifier&) {
                EXPECT_NE(s.renameList(listFolder("daily"), QStringLiteral("day")), QString());
            },
            { "<P>/eu/paris.ini <P>/eu2/oslo.ini <F>/day/flist.ini",
                "<P>/eu/sub/rome.ini <F>/weekly/flist.ini", "<P>/EU/PARIS.INI <F>/day/flist.ini",
                "<P>/eu2/oslo.ini <F>/weekly/flist.ini" } },
        { "list deleted",
            [](ProfileStore&, FileListStore& s, test::ScriptedNotifier& n) {
                n.script({ Answer::Accepted });
                EXPECT_TRUE(s.deleteList(listFolder("daily")));
            },
            { "-", "<P>/eu/sub/rome.ini <F>/weekly/flist.ini", "-",
                "<P>/eu2/oslo.ini <F>/weekly/flist.ini" } },
    };
    const auto expand = [](const char* text) {
        return QString::fromUtf8(text)
            .replace(QStringLiteral("<P>"), ProfileStore::root())
            .replace(QStringLiteral("<F>"), FileListStore::root());
    };
    const QStringList names { "l1", "l2", "sub/l3", "l4" };
    const char* const before[] = { "<P>/eu/paris.ini <P>/eu2/oslo.ini <F>/daily/flist.ini",
        "<P>/eu/sub/rome.ini <F>/weekly/flist.ini",
        // Other letter cases: the operations on one profile or list ignore case.
        "<P>/EU/PARIS.INI <F>/DAILY/flist.ini", "<P>/eu2/oslo.ini <F>/weekly/flist.ini" };
    for (const auto& c : cases) {
        for (const QString& root :
            { ProfileStore::root(), FileListStore::root(), DataFolders::links() })
            QDir(root).removeRecursively();
        for (const char* p : { "eu/paris.ini", "eu/sub/rome.ini", "eu2/oslo.ini" })
            makeProfile(QString::fromUtf8(p), "h");
        makeList("daily", {});
        makeList("weekly", {});
        for (int i = 0; i < names.size(); ++i) {
            QStringList paths = expand(before[i]).split(u' ');
            const QString files = paths.takeLast();
            makeLink(names[i], paths, files);
        }

        test::ScriptedNotifier notifier;
        test::RecordingEvents events;
        ProfileStore profiles(notifier, events);
        FileListStore lists(notifier, events);
        c.act(profiles, lists, notifier);
        EXPECT_EQ(notifier.unused(), 0u) << c.name;
        EXPECT_EQ(events.links, 1) << c.name << ": the main frame reloads its links once";
        for (int i = 0; i < names.size(); ++i) {
            QString now = QStringLiteral("-");
            if (QFileInfo::exists(linkPath(names[i]))) {
                const Link link = LinkFile::read(linkPath(names[i]));
                QStringList paths;
                for (const LinkSite& site : link.sites)
                    paths.append(site.profile);
                now = (paths << link.files).join(u' ');
            }
            EXPECT_EQ(now, expand(c.links[i])) << c.name << ", link " << names[i].toStdString();
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
    ProfileStore store(notifier_, events_);
    EXPECT_EQ(store.importServerFile(junk, ProfileStore::root()), 0);

    const QString cut = temp_.root() + QStringLiteral("/cut.ini");
    writeFile(cut, "[Settings]\nHost=ex");
    EXPECT_EQ(
        SiteProfile::readSite(cut, linkfile::kValueBuffer), (SiteRecord { "ex", "", "", "", 21 }));
    writeFile(cut, "[LinkItems]\nSites=3\nFiles=/l/flist.ini\n[SITE1]\nSITE=/p/a.ini\n[SITE2");
    const Link link = LinkFile::read(cut);
    EXPECT_EQ(link.files, QStringLiteral("/l/flist.ini"));
    EXPECT_EQ(link.sites, std::vector<LinkSite>({ { 1, QStringLiteral("/p/a.ini") } }));
    writeFile(cut, "[LIST]\nNumItems=2\n[FILE1]\nLocalName=a\nFold");
    ASSERT_EQ(FileList::readStored(cut).size(), 1u);
    EXPECT_EQ(FileList::readStored(cut)[0].localName, QStringLiteral("a"));

    const QString folder = temp_.root() + QStringLiteral("/folder.ini");
    QDir().mkpath(folder);
    EXPECT_EQ(SiteProfile::readSite(folder, linkfile::kValueBuffer), SiteRecord {});
    EXPECT_TRUE(FileList::readStored(folder).empty());
}

} // namespace
} // namespace zelto
