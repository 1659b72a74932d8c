#include "profiles/ProfileStore.h"

#include "ProfilesFixture.h"
#include "app/DataFolders.h"
#include "platform/StringTable.h"
#include "profiles/FileListStore.h"

namespace zelto {
namespace {

class ProfileStoreTest : public test::ProfilesFixture {
protected:
    [[nodiscard]] static QString profile(const QString& relative)
    {
        return ProfileStore::root() + u'/' + relative;
    }

    static void makeProfile(const QString& relative)
    {
        writeFile(profile(relative), "[Settings]\nHost=" + relative.toUtf8() + "\nPort=21\n");
    }

    // A link naming `sites`; `name` may lie in a sub-folder of "Links".
    static void makeLink(const QString& name, const QStringList& sites)
    {
        QByteArray text = "[LinkItems]\nSites=" + QByteArray::number(sites.size()) + "\n";
        for (int i = 0; i < sites.size(); ++i)
            text += "[SITE" + QByteArray::number(i + 1) + "]\nSITE=" + sites[i].toUtf8() + "\n";
        writeFile(DataFolders::links() + u'/' + name + QStringLiteral(".ini"), text);
    }

    [[nodiscard]] static bool linkExists(const QString& name)
    {
        return QFileInfo::exists(DataFolders::links() + u'/' + name + QStringLiteral(".ini"));
    }
};

TEST_F(ProfileStoreTest, RenameProfileCutsTheLabelAndRefusesATakenName)
{
    makeProfile(QStringLiteral("paris.ini"));
    makeProfile(QStringLiteral("rome.ini"));
    ProfileStore store(notifier_, events_);
    EXPECT_EQ(store.renameProfile(profile(QStringLiteral("paris.ini")), QStringLiteral("rome.old")),
        QString());
    EXPECT_EQ(notifier_.messages, QStringList { StringTable::text(ids::kRenameTargetExists) });
    EXPECT_TRUE(QFileInfo::exists(profile(QStringLiteral("paris.ini"))));
    EXPECT_EQ(events_.profiles, 0);

    EXPECT_EQ(
        store.renameProfile(profile(QStringLiteral("paris.ini")), QStringLiteral("lutetia.v2")),
        profile(QStringLiteral("lutetia.ini")));
    EXPECT_EQ(ProfileStore::allProfiles(),
        QStringList(
            { profile(QStringLiteral("lutetia.ini")), profile(QStringLiteral("rome.ini")) }));
    EXPECT_EQ(events_.profiles, 1);
}

TEST_F(ProfileStoreTest, DeleteProfilesAsksForEachUntilAllOrCancel)
{
    const struct {
        const char* name;
        int selected;
        std::deque<Answer> answers;
        int deleted;
        bool middleEnabled;
    } cases[] = {
        { "one, yes", 1, { Answer::Accepted }, 1, false },
        { "one, cancel", 1, { Answer::Cancelled }, 0, false },
        { "three, yes then cancel", 3, { Answer::Accepted, Answer::Cancelled }, 1, true },
        { "three, yes each", 3, { Answer::Accepted, Answer::Accepted, Answer::Accepted }, 3, true },
        { "three, all at the second", 3, { Answer::Accepted, Answer::Middle }, 3, true },
    };
    for (const auto& c : cases) {
        QStringList files;
        for (int i = 0; i < c.selected; ++i) {
            const QString relative = QStringLiteral("site%1.ini").arg(i);
            makeProfile(relative);
            files.append(profile(relative));
        }
        test::ScriptedNotifier notifier(c.answers);
        ProfileStore store(notifier, events_);
        EXPECT_EQ(store.deleteProfiles(files), c.deleted) << c.name;
        EXPECT_EQ(notifier.unused(), 0u) << c.name;
        ASSERT_FALSE(notifier.questions.empty()) << c.name;
        const Question& first = notifier.questions.front();
        EXPECT_EQ(first.caption, StringTable::text(ids::kDeleteCaption));
        EXPECT_EQ(first.text,
            StringTable::text(ids::kConfirmRemoveFile)
                .replace(QStringLiteral("%s"), QStringLiteral("site0")));
        EXPECT_EQ(first.acceptTextId, ids::kButtonYes);
        EXPECT_EQ(first.middleTextId, ids::kButtonAll);
        EXPECT_EQ(first.cancelTextId, ids::kButtonCancel);
        EXPECT_EQ(first.middleEnabled, c.middleEnabled) << c.name;
        for (int i = 0; i < c.selected; ++i)
            EXPECT_EQ(QFileInfo::exists(files[i]), i >= c.deleted) << c.name << " " << i;
        for (const QString& file : files)
            QFile::remove(file);
    }

    ProfileStore store(notifier_, events_);
    EXPECT_EQ(store.deleteProfiles({}), 0);
    EXPECT_EQ(notifier_.messages, QStringList { StringTable::text(ids::kSelectFile) });
}

TEST_F(ProfileStoreTest, NewTreeItemsAreOwnerOnlyFolders)
{
    ProfileStore store(notifier_, events_);
    FileListStore lists(notifier_, events_);
    const QString made = store.newFolder(profile(QStringLiteral("eu")));
    EXPECT_EQ(made, QString()) << "its parent is missing";
    EXPECT_EQ(notifier_.messages, QStringList { StringTable::text(ids::kNoPathToCreateDirectory) });
    const QString item = store.newFolder(ProfileStore::root());
    EXPECT_EQ(item, profile(StringTable::text(ids::kNewProfileLabel)));
    EXPECT_TRUE(QFileInfo(item).isDir() && ownerOnly(item));
    EXPECT_EQ(
        lists.newFolder(), FileListStore::root() + u'/' + StringTable::text(ids::kNewFolderLabel));
}

TEST_F(ProfileStoreTest, RenameFolderReportsWhyItFailed)
{
    QDir().mkpath(profile(QStringLiteral("eu")));
    QDir().mkpath(profile(QStringLiteral("asia")));
    const struct {
        const char* name;
        QString folder;
        QString label;
        QString result;
        int message; // 0: none
    } cases[] = {
        { "existing sibling", profile(QStringLiteral("eu")), QStringLiteral("asia"), QString(),
            ids::kFolderNotRenamed },
        { "missing folder", profile(QStringLiteral("gone")), QStringLiteral("back"), QString(),
            ids::kNoPathToCreateDirectory },
        { "empty label", profile(QStringLiteral("eu")), QString(), QString(), 0 },
        { "the root", ProfileStore::root(), QStringLiteral("Sites"), QString(), 0 },
        { "renamed", profile(QStringLiteral("eu")), QStringLiteral("europe"),
            profile(QStringLiteral("europe")), 0 },
    };
    for (const auto& c : cases) {
        test::ScriptedNotifier notifier;
        ProfileStore store(notifier, events_);
        EXPECT_EQ(store.renameFolder(c.folder, c.label), c.result) << c.name;
        EXPECT_EQ(notifier.messages,
            c.message ? QStringList { StringTable::text(c.message) } : QStringList())
            << c.name;
    }
    EXPECT_TRUE(QFileInfo(profile(QStringLiteral("asia"))).isDir()) << "the sibling stays";
    EXPECT_TRUE(QFileInfo(profile(QStringLiteral("europe"))).isDir());
    EXPECT_TRUE(QFileInfo(ProfileStore::root()).isDir());
}

TEST_F(ProfileStoreTest, DeleteFolderTakesTheItemOrTheWholeTree)
{
    const struct {
        const char* name;
        QString folder;
        std::deque<Answer> answers;
        bool gone;
        int message; // 0: none
        std::vector<const char*> linksLeft;
    } cases[] = {
        { "the root is never deleted", ProfileStore::root(), {}, false, 0,
            { "inEu", "inSub", "inEu2" } },
        { "cancel", profile(QStringLiteral("eu")), { Answer::Cancelled }, false, 0,
            { "inEu", "inSub", "inEu2" } },
        { "profile only, with a sub-folder", profile(QStringLiteral("eu")), { Answer::Accepted },
            false, ids::kCannotRemoveFolder, { "inEu", "inSub", "inEu2" } },
        { "profile only, no sub-folder", profile(QStringLiteral("eu/sub")), { Answer::Accepted },
            true, 0, { "inEu", "inEu2" } },
        { "yes to all", profile(QStringLiteral("eu")), { Answer::Middle }, true, 0, { "inEu2" } },
    };
    for (const auto& c : cases) {
        QDir(ProfileStore::root()).removeRecursively();
        QDir(DataFolders::links()).removeRecursively();
        makeProfile(QStringLiteral("eu/paris.ini"));
        makeProfile(QStringLiteral("eu/sub/rome.ini"));
        makeProfile(QStringLiteral("eu2/oslo.ini"));
        makeLink(QStringLiteral("inEu"), { profile(QStringLiteral("eu/paris.ini")) });
        makeLink(QStringLiteral("inSub"), { profile(QStringLiteral("eu/sub/rome.ini")) });
        makeLink(QStringLiteral("inEu2"), { profile(QStringLiteral("eu2/oslo.ini")) });

        test::ScriptedNotifier notifier(c.answers);
        ProfileStore store(notifier, events_);
        EXPECT_EQ(store.deleteFolder(c.folder), c.gone) << c.name;
        EXPECT_EQ(notifier.unused(), 0u) << c.name;
        EXPECT_EQ(QFileInfo::exists(c.folder), !c.gone) << c.name;
        EXPECT_EQ(notifier.messages,
            c.message ? QStringList { StringTable::text(c.message) } : QStringList())
            << c.name;
        if (!notifier.questions.empty()) {
            const Question& q = notifier.questions.front();
            EXPECT_EQ(q.caption, StringTable::text(ids::kDeleteProfileCaption));
            EXPECT_EQ(q.text, StringTable::text(ids::kDeleteProfileAndSubProfiles));
            EXPECT_EQ(q.acceptTextId, ids::kButtonProfileOnly);
            EXPECT_EQ(q.middleTextId, ids::kButtonYesToAll);
            EXPECT_EQ(q.cancelTextId, ids::kButtonCancel);
        }
        QStringList left;
        for (const char* name : { "inEu", "inSub", "inEu2" }) {
            if (linkExists(QString::fromUtf8(name)))
                left.append(QString::fromUtf8(name));
        }
        QStringList expected;
        for (const char* name : c.linksLeft)
            expected.append(QString::fromUtf8(name));
        EXPECT_EQ(left, expected) << c.name;
    }
}

} // namespace
} // namespace zelto
