#include "profiles/SiteProfile.h"

#include "ProfilesFixture.h"
#include "profiles/LinkFile.h"
#include "profiles/ProfileForm.h"
#include "profiles/StoredFormats.h"

namespace zelto {
namespace {

using test::contents;
using test::writeFile;

TEST(ProfileNames, ProfilesAndLinksCutTypedNamesDifferently)
{
    // Typed, the profile's file, the link's file.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        { "site.old", "site.ini", "site.ini" },
        { "site.old.ini", "site.ini", "site.ini" },
        { ".hidden", ".hidden.ini", ".ini" }, // a profile keeps a leading dot, a link cuts there
        { "a.", "a.ini", "a.ini" },
        { "plain", "plain.ini", "plain.ini" },
    };
    for (const auto& [typed, profileFile, linkFile] : cases) {
        EXPECT_EQ(SiteProfile::fileNameFor(QString::fromUtf8(typed)), profileFile);
        EXPECT_EQ(LinkFile::fileNameFor(QString::fromUtf8(typed)), linkFile);
    }
    EXPECT_EQ(SiteProfile::nameOf(QStringLiteral("/p/.hidden.ini")), QStringLiteral(".hidden"));
}

class SiteProfileTest : public test::ProfilesFixture {
protected:
    // The form in new mode with every field filled.
    [[nodiscard]] static ProfileFormValues filled(const QString& name)
    {
        return { name, { "ftp.example.com", "bob", "secret", "/pub", "main mirror", "21" }, false };
    }
    const QString site = profile("site.ini");
};

TEST_F(SiteProfileTest, ReadersCutValuesAtTheirOwnBuffers)
{
    const QByteArray x300(300, 'x');
    writeFile(site,
        "[Settings]\nHost=" + x300 + "\nUser=" + x300 + "\nPassword=" + x300
            + "\nRemote Path=" + x300 + "\nDescription=" + x300 + "\nPort=2121\n");
    const ProfileFields form = SiteProfile::readFields(site);
    for (const QString& value :
        { form.host, form.user, form.password, form.remotePath, form.description })
        EXPECT_EQ(value.size(), 255);
    for (auto [buffer, length] : { std::pair { profilefile::kTargetListBuffer, 99 },
             std::pair { linkfile::kValueBuffer, 126 } }) {
        const SiteRecord record = SiteProfile::readSite(site, buffer);
        for (const QString& value :
            { record.host, record.user, record.password, record.remotePath })
            EXPECT_EQ(value.size(), length) << buffer;
        EXPECT_EQ(record.port, 2121u);
    }
}

TEST_F(SiteProfileTest, SaveInNewAndEditModes)
{
    const QByteArray existing = "[Settings]\nHost=old\nUser=u\nPassword=p\nPort=21\n";
    enum Setup { NewOverExisting, NewFresh, Edit, EditDeletedBehindTheForm, EmptyPort };
    const struct {
        Setup setup;
        int message;
        ProfileForm::Mode modeAfter;
    } cases[] = {
        { NewOverExisting, ids::kProfileExists, ProfileForm::Mode::New },
        { NewFresh, 0, ProfileForm::Mode::None }, { Edit, 0, ProfileForm::Mode::None },
        { EditDeletedBehindTheForm, ids::kProfileMissing, ProfileForm::Mode::Edit },
        { EmptyPort, ids::kFillAllFields, ProfileForm::Mode::New }, // required
    };
    for (const auto& c : cases) {
        QFile::remove(site);
        notifier_.messages.clear();
        ProfileForm form;
        if (c.setup == NewOverExisting || c.setup == Edit || c.setup == EditDeletedBehindTheForm)
            writeFile(site, existing);
        if (c.setup == Edit || c.setup == EditDeletedBehindTheForm)
            form.load(ProfileStore::root(), QStringLiteral("site.ini"));
        else
            form.newSite();
        if (c.setup == EditDeletedBehindTheForm)
            QFile::remove(site);
        ProfileFormValues values = filled(QStringLiteral("site.old")); // saved as site.ini
        if (c.setup == EmptyPort)
            values.profile.port.clear();
        form.setValues(values);
        const bool saved = form.ok(ProfileStore::root(), notifier_, events_);
        EXPECT_EQ(saved, c.message == 0) << c.setup;
        EXPECT_EQ(notifier_.messages, test::texts(c.message)) << c.setup;
        EXPECT_EQ(form.mode(), c.modeAfter) << c.setup;
        EXPECT_TRUE(c.setup != NewOverExisting || contents(site) == existing) << "left untouched";
        // Saved, or kept in the form for the user to correct.
        EXPECT_EQ(saved ? SiteProfile::readFields(site) : form.values().profile, values.profile);
    }
}

TEST_F(SiteProfileTest, SavedFileHoldsTheSixKeysInOrderForItsOwnerOnly)
{
    ProfileForm form;
    form.newSite();
    form.setValues(filled(QStringLiteral(".hidden")));
    ASSERT_TRUE(form.ok(ProfileStore::root(), notifier_, events_));
    const QString hidden = profile(".hidden.ini");
    EXPECT_EQ(contents(hidden),
        "[Settings]\nHost=ftp.example.com\nUser=bob\nPassword=secret\nRemote Path=/pub\n"
        "Description=main mirror\nPort=21\n");
    EXPECT_TRUE(ownerOnly(hidden));
    EXPECT_EQ(ProfileStore::profilesIn(ProfileStore::root()), QStringList { hidden });

    // Editing replaces the six keys only.
    writeFile(site, "; note\n[Settings]\nHost=old\nExtra=1\nPort=21\n[Other]\nKey=value\n");
    form.load(ProfileStore::root(), QStringLiteral("site.ini"));
    form.setValues(filled(QStringLiteral("site")));
    ASSERT_TRUE(form.ok(ProfileStore::root(), notifier_, events_));
    EXPECT_EQ(contents(site),
        "; note\n[Settings]\nHost=ftp.example.com\nExtra=1\nPort=21\nUser=bob\nPassword=secret\n"
        "Remote Path=/pub\nDescription=main mirror\n[Other]\nKey=value\n");
}

TEST_F(SiteProfileTest, ImportsAnOlderReleasesServerFile)
{
    // The file, whether it is refused, and the profiles made ("file: host user password path").
    const std::tuple<QByteArray, bool, QStringList> cases[] = {
        { "FTP_SERVER_FILE\r\nftp.a.com bob secret /pub\r\nb.org NONE NONE NONE\r\n", false,
            { "b_org.ini: b.org   ", "ftp_a_com.ini: ftp.a.com bob secret /pub" } },
        { "FTP_SERVER_FILE\n\n \t\r\nhostonly\nh u p /r", false, // the last line lacks its LF
            { "h.ini: h u p /r", "hostonly.ini: hostonly   " } },
        { "FTP_SERVER_FILE\nh u1 p r\nh u2 p r\n", false,
            { "h.ini: h u1 p r", "h_2.ini: h u2 p r" } },
        { QByteArray("FTP_SERVER_FILE\nh1 u p r\n\0h2 u p r\n", 35), false,
            { "h1.ini: h1 u p r" } },
        { "FTP_SERVER_FILEXYZ", false, {} },
        { "FTP_SERVER_FIL\nh u p r\n", true, {} },
        { "", true, {} },
    };
    const QString target = profile("import");
    const QString sts = temp_.root() + QStringLiteral("/servers.sts");
    for (const auto& [bytes, refused, profiles] : cases) {
        QDir(target).removeRecursively();
        QDir().mkpath(target);
        notifier_.messages.clear();
        writeFile(sts, bytes);
        EXPECT_EQ(ProfileStore(notifier_, events_).importServerFile(sts, target), profiles.size());
        EXPECT_EQ(notifier_.messages, test::texts(refused ? ids::kNotAnFtpServerFile : 0));
        QStringList imported;
        for (const QString& path : ProfileStore::profilesIn(target)) {
            const ProfileFields f = SiteProfile::readFields(path);
            EXPECT_TRUE(ownerOnly(path) && f.port == u"21" && f.description.isEmpty());
            imported.append(QFileInfo(path).fileName() + QStringLiteral(": ")
                + QStringList { f.host, f.user, f.password, f.remotePath }.join(u' '));
        }
        EXPECT_EQ(imported, profiles) << bytes.constData();
    }
}

using ProfileStoreTest = test::ProfilesFixture;

TEST_F(ProfileStoreTest, RenameProfileCutsTheLabelAndRefusesATakenName)
{
    makeProfile("paris.ini");
    makeProfile("rome.ini");
    ProfileStore store(notifier_, events_);
    EXPECT_EQ(store.renameProfile(profile("paris.ini"), QStringLiteral("rome.old")), QString());
    EXPECT_EQ(notifier_.messages, test::texts(ids::kRenameTargetExists));
    EXPECT_EQ(
        store.renameProfile(profile("paris.ini"), QStringLiteral("lu.v2")), profile("lu.ini"));
    EXPECT_EQ(ProfileStore::allProfiles(), QStringList({ profile("lu.ini"), profile("rome.ini") }));
    EXPECT_EQ(events_.profiles, 1) << "told once, for the rename that happened";
}

TEST_F(ProfileStoreTest, NewFoldersAreOwnerOnly)
{
    ProfileStore store(notifier_, events_);
    EXPECT_EQ(store.newFolder(profile("eu")), QString()) << "its parent is missing";
    const QString item = store.newFolder(ProfileStore::root());
    EXPECT_EQ(item, profile(StringTable::text(ids::kNewProfileLabel)));
    EXPECT_TRUE(QFileInfo(item).isDir() && ownerOnly(item));
}

TEST_F(ProfileStoreTest, DeleteFolderTakesTheItemOrTheWholeTree)
{
    const struct {
        QString folder;
        std::deque<Answer> answers;
        bool gone;
        int message;
    } cases[] = {
        { ProfileStore::root(), {}, false, 0 }, // never the root
        { profile("eu"), { Answer::Accepted }, false,
            ids::kCannotRemoveFolder }, // profile only, but it holds a sub-folder
        { profile("eu/sub"), { Answer::Accepted }, true, 0 },
        { profile("eu"), { Answer::Middle }, true, 0 }, // yes to all
    };
    for (const auto& c : cases) {
        QDir(ProfileStore::root()).removeRecursively();
        for (const char* p : { "eu/paris.ini", "eu/sub/rome.ini", "eu2/oslo.ini" })
            makeProfile(p);

        test::TestNotifier notifier(c.answers);
        EXPECT_EQ(ProfileStore(notifier, events_).deleteFolder(c.folder), c.gone);
        EXPECT_TRUE(notifier.answers.empty());
        EXPECT_EQ(QFileInfo::exists(c.folder), !c.gone);
        EXPECT_EQ(notifier.messages, test::texts(c.message)) << c.folder.toStdString();
        EXPECT_TRUE(QFileInfo::exists(profile("eu2/oslo.ini"))) << "eu is not eu2";
    }
}

} // namespace
} // namespace zelto
