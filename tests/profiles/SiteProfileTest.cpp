#include "profiles/SiteProfile.h"

#include "ProfilesFixture.h"
#include "app/SettingsStore.h"
#include "platform/StringTable.h"
#include "profiles/LinkFile.h"
#include "profiles/ProfileForm.h"
#include "profiles/ProfileStore.h"
#include "profiles/StoredFormats.h"

namespace zelto {
namespace {

using test::ProfilesFixture;

QString text(int id)
{
    return StringTable::text(id);
}

TEST(ProfileNames, ProfilesAndLinksCutTypedNamesDifferently)
{
    const struct {
        const char* typed;
        const char* profileFile;
        const char* linkFile;
    } cases[] = {
        { "site.old", "site.ini", "site.ini" },
        { "site.old.ini", "site.ini", "site.ini" },
        { "weekly.ini", "weekly.ini", "weekly.ini" },
        { ".hidden", ".hidden.ini", ".ini" }, // a profile keeps a leading dot, a link cuts there
        { ".x", ".x.ini", ".ini" },
        { "a.", "a.ini", "a.ini" },
        { "plain", "plain.ini", "plain.ini" },
    };
    for (const auto& c : cases) {
        const QString typed = QString::fromUtf8(c.typed);
        EXPECT_EQ(SiteProfile::fileNameFor(typed), QString::fromUtf8(c.profileFile)) << c.typed;
        EXPECT_EQ(LinkFile::fileNameFor(typed), QString::fromUtf8(c.linkFile)) << c.typed;
    }
    EXPECT_EQ(SiteProfile::nameOf(QStringLiteral("/p/.hidden.ini")), QStringLiteral(".hidden"));
}

class SiteProfileTest : public ProfilesFixture {
protected:
    [[nodiscard]] QString folder() const { return ProfileStore::root(); }
    [[nodiscard]] QString file(const char* name) const
    {
        return folder() + u'/' + QString::fromUtf8(name);
    }

    // The form in new mode with every field filled.
    [[nodiscard]] static ProfileFormValues filled(const QString& name)
    {
        return { name, { "ftp.example.com", "bob", "secret", "/pub", "main mirror", "21" }, false };
    }
};

TEST_F(SiteProfileTest, ReadersCutValuesAtTheirOwnBuffers)
{
    const QByteArray longText(300, 'x');
    writeFile(file("long.ini"),
        "[Settings]\nHost=" + longText + "\nUser=" + longText + "\nPassword=" + longText
            + "\nRemote Path=" + longText + "\nDescription=" + longText + "\nPort=2121\n");
    const ProfileFields form = SiteProfile::readFields(file("long.ini"));
    for (const QString& value :
        { form.host, form.user, form.password, form.remotePath, form.description })
        EXPECT_EQ(value.size(), 255);
    EXPECT_EQ(form.port, QStringLiteral("2121")) << "the form shows the port as text";

    const struct {
        int buffer;
        qsizetype length;
    } readers[] = { { profilefile::kTargetListBuffer, 99 }, { linkfile::kValueBuffer, 126 } };
    for (const auto& reader : readers) {
        const SiteRecord site = SiteProfile::readSite(file("long.ini"), reader.buffer);
        for (const QString& value : { site.host, site.user, site.password, site.remotePath })
            EXPECT_EQ(value.size(), reader.length) << reader.buffer;
        EXPECT_EQ(site.port, 2121u);
    }

    // Target lists read the port as an integer, 21 when missing or empty.
    const struct {
        const char* line;
        unsigned port;
    } ports[] = { { "", 21 }, { "Port=\n", 21 }, { "port=990x\n", 990 }, { "Port=abc\n", 0 } };
    for (const auto& p : ports) {
        writeFile(file("p.ini"), QByteArray("[Settings]\n") + p.line);
        EXPECT_EQ(SiteProfile::readSite(file("p.ini"), profilefile::kTargetListBuffer).port, p.port)
            << p.line;
    }
}

TEST_F(SiteProfileTest, SaveRefusesAnEmptyRequiredField)
{
    const struct {
        const char* field;
        void (*clear)(ProfileFormValues&);
        bool saves;
    } cases[] = {
        { "name", [](ProfileFormValues& v) { v.name.clear(); }, false },
        { "host", [](ProfileFormValues& v) { v.profile.host.clear(); }, false },
        { "user", [](ProfileFormValues& v) { v.profile.user.clear(); }, false },
        { "password", [](ProfileFormValues& v) { v.profile.password.clear(); }, false },
        { "port", [](ProfileFormValues& v) { v.profile.port.clear(); }, false },
        { "remote path", [](ProfileFormValues& v) { v.profile.remotePath.clear(); }, true },
        { "description", [](ProfileFormValues& v) { v.profile.description.clear(); }, true },
    };
    for (const auto& c : cases) {
        QFile::remove(file("site.ini"));
        notifier_.messages.clear();
        ProfileForm form;
        form.newSite();
        ProfileFormValues values = filled(QStringLiteral("site"));
        c.clear(values);
        form.setValues(values);
        EXPECT_EQ(form.ok(folder(), notifier_, events_), c.saves) << c.field;
        EXPECT_EQ(QFileInfo::exists(file("site.ini")), c.saves) << c.field;
        if (c.saves) {
            EXPECT_TRUE(notifier_.messages.isEmpty()) << c.field;
            EXPECT_EQ(form.mode(), ProfileForm::Mode::None) << c.field;
        } else {
            EXPECT_EQ(notifier_.messages, QStringList { text(ids::kFillAllFields) }) << c.field;
            // The user can correct the fields and save again.
            EXPECT_EQ(form.mode(), ProfileForm::Mode::New) << c.field;
            EXPECT_EQ(form.values(), values) << c.field;
        }
    }
}

TEST_F(SiteProfileTest, SaveInNewAndEditModes)
{
    const QByteArray existing = "[Settings]\nHost=old\nUser=u\nPassword=p\nPort=21\n";
    enum class Setup { NewOverExisting, NewFresh, EditExisting, EditDeletedBehindTheForm };
    const struct {
        const char* name;
        Setup setup;
        int message; // 0: none
        ProfileForm::Mode modeAfter;
    } cases[] = {
        { "new over an existing file", Setup::NewOverExisting, ids::kProfileExists,
            ProfileForm::Mode::New },
        { "new", Setup::NewFresh, 0, ProfileForm::Mode::None },
        { "edit", Setup::EditExisting, 0, ProfileForm::Mode::None },
        { "edit after the file was deleted", Setup::EditDeletedBehindTheForm, ids::kProfileMissing,
            ProfileForm::Mode::Edit },
    };
    for (const auto& c : cases) {
        QFile::remove(file("site.ini"));
        notifier_.messages.clear();
        ProfileForm form;
        if (c.setup != Setup::NewFresh)
            writeFile(file("site.ini"), existing);
        if (c.setup == Setup::EditExisting || c.setup == Setup::EditDeletedBehindTheForm) {
            form.load(folder(), QStringLiteral("site.ini"));
            EXPECT_FALSE(form.nameEditable()) << c.name;
        } else {
            form.newSite();
        }
        if (c.setup == Setup::EditDeletedBehindTheForm)
            QFile::remove(file("site.ini"));
        // "site.old" is the name the user typed; it is saved as site.ini.
        form.setValues(filled(QStringLiteral("site.old")));
        const bool saved = form.ok(folder(), notifier_, events_);
        EXPECT_EQ(saved, c.message == 0) << c.name;
        EXPECT_EQ(notifier_.messages, c.message ? QStringList { text(c.message) } : QStringList())
            << c.name;
        EXPECT_EQ(form.mode(), c.modeAfter) << c.name;
        if (c.setup == Setup::NewOverExisting) {
            EXPECT_EQ(readFile(file("site.ini")), existing) << "left untouched";
        }
        if (saved) {
            EXPECT_EQ(SiteProfile::readFields(file("site.ini")), filled(QString()).profile)
                << c.name;
            EXPECT_TRUE(form.nameEditable()) << c.name;
            EXPECT_EQ(form.values().name, QString()) << "the form is cleared after OK";
        }
    }
}

TEST_F(SiteProfileTest, SavedFileHoldsTheSixKeysInOrderForItsOwnerOnly)
{
    ProfileForm form;
    form.newSite();
    form.setValues(filled(QStringLiteral(".hidden")));
    ASSERT_TRUE(form.ok(folder(), notifier_, events_));
    EXPECT_EQ(readFile(file(".hidden.ini")),
        "[Settings]\nHost=ftp.example.com\nUser=bob\nPassword=secret\nRemote Path=/pub\n"
        "Description=main mirror\nPort=21\n");
    EXPECT_TRUE(ownerOnly(file(".hidden.ini")));
    EXPECT_EQ(events_.profiles, 1);
    EXPECT_EQ(ProfileStore::profilesIn(folder()), QStringList { file(".hidden.ini") })
        << "a profile whose name begins with a dot is listed";

    // Editing replaces the six keys only.
    writeFile(
        file("kept.ini"), "; note\n[Settings]\nHost=old\nExtra=1\nPort=21\n[Other]\nKey=value\n");
    form.load(folder(), QStringLiteral("kept.ini"));
    ProfileFormValues values = filled(QStringLiteral("kept"));
    form.setValues(values);
    ASSERT_TRUE(form.ok(folder(), notifier_, events_));
    EXPECT_EQ(readFile(file("kept.ini")),
        "; note\n[Settings]\nHost=ftp.example.com\nExtra=1\nPort=21\nUser=bob\nPassword=secret\n"
        "Remote Path=/pub\nDescription=main mirror\n[Other]\nKey=value\n");
}

TEST_F(SiteProfileTest, AnonymousLoginIsRecognisedInAnyCase)
{
    const struct {
        const char* user;
        bool anonymous;
    } cases[] = {
        { "anonymous", true },
        { "ANONYMOUS", true },
        { "AnonYmous", true },
        { "anonymous2", false },
        { "", false },
    };
    for (const auto& c : cases) {
        writeFile(file("a.ini"), QByteArray("[Settings]\nHost=h\nUser=") + c.user + "\n");
        ProfileForm form;
        form.load(folder(), QStringLiteral("a.ini"));
        EXPECT_EQ(form.values().anonymous, c.anonymous) << c.user;
        EXPECT_EQ(form.values().name, QStringLiteral("a"));
    }
}

TEST_F(SiteProfileTest, ClearAndAnonymousTakeTheirValuesFromTheSettings)
{
    SettingsStore::set(settings::ftp::kPort, 2100);
    SettingsStore::set(settings::config::kEmail, QStringLiteral("me@example.com"));
    ProfileForm form;
    form.newSite();
    EXPECT_EQ(form.values().profile.port, QStringLiteral("2100"));
    form.setAnonymous(true);
    EXPECT_EQ(form.values().profile.user, QStringLiteral("anonymous"));
    EXPECT_EQ(form.values().profile.password, QStringLiteral("me@example.com"));
    form.setAnonymous(false);
    EXPECT_EQ(form.values().profile.user, QString());
    EXPECT_EQ(form.values().profile.password, QString());

    // "New Site" is ignored while a profile is being made.
    form.setValues(filled(QStringLiteral("typed")));
    form.newSite();
    EXPECT_EQ(form.values().name, QStringLiteral("typed"));
}

TEST_F(SiteProfileTest, ImportsAnOlderReleasesServerFile)
{
    struct Imported {
        const char* file;
        ProfileFields fields;
    };
    const struct {
        const char* name;
        QByteArray bytes;
        bool refused;
        std::vector<Imported> profiles;
    } cases[] = {
        { "CRLF line ends",
            "FTP_SERVER_FILE\r\nftp.a.com bob secret /pub\r\nb.org NONE NONE NONE\r\n", false,
            { { "b_org.ini", { "b.org", "", "", "", "", "21" } },
                { "ftp_a_com.ini", { "ftp.a.com", "bob", "secret", "/pub", "", "21" } } } },
        { "last line without a line feed", "FTP_SERVER_FILE\nh1 u p /r", false,
            { { "h1.ini", { "h1", "u", "p", "/r", "", "21" } } } },
        { "short line and blank lines", "FTP_SERVER_FILE\n\n \t\r\nhostonly\n", false,
            { { "hostonly.ini", { "hostonly", "", "", "", "", "21" } } } },
        { "the same host twice", "FTP_SERVER_FILE\nh u1 p r\nh u2 p r\n", false,
            { { "h.ini", { "h", "u1", "p", "r", "", "21" } },
                { "h_2.ini", { "h", "u2", "p", "r", "", "21" } } } },
        { "header word only", "FTP_SERVER_FILEXYZ", false, {} },
        { "text ends at a NUL", QByteArray("FTP_SERVER_FILE\nh1 u p r\n\0h2 u p r\n", 35), false,
            { { "h1.ini", { "h1", "u", "p", "r", "", "21" } } } },
        { "wrong header", "FTP_SERVER_FIL\nh u p r\n", true, {} },
        { "empty", "", true, {} },
    };
    for (const auto& c : cases) {
        const QString target = folder() + QStringLiteral("/import");
        QDir(target).removeRecursively();
        QDir().mkpath(target);
        notifier_.messages.clear();
        const QString sts = temp_.root() + QStringLiteral("/servers.sts");
        writeFile(sts, c.bytes);
        ProfileStore store(notifier_, events_);
        EXPECT_EQ(store.importServerFile(sts, target), int(c.profiles.size())) << c.name;
        EXPECT_EQ(notifier_.messages,
            c.refused ? QStringList { text(ids::kNotAnFtpServerFile) } : QStringList())
            << c.name;
        QStringList expectedFiles;
        for (const Imported& p : c.profiles)
            expectedFiles.append(target + u'/' + QString::fromUtf8(p.file));
        ASSERT_EQ(ProfileStore::profilesIn(target), expectedFiles) << c.name;
        for (const Imported& p : c.profiles) {
            const QString path = target + u'/' + QString::fromUtf8(p.file);
            EXPECT_EQ(SiteProfile::readFields(path), p.fields) << c.name << " " << p.file;
            EXPECT_TRUE(ownerOnly(path)) << p.file;
        }
    }
}

} // namespace
} // namespace zelto
