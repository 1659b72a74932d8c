// The site-profile screen and the link dialog driven as the user drives them: folders, profiles
// and links made, renamed and deleted, the files on disk and the links' upkeep checked, and the
// form's "Test connection" against a server that refuses the login and one that takes it.

#include "profiles/ui/CProfile.h"

#include "FtpServer.h"
#include "ProfilesFixture.h"
#include "TestWait.h"
#include "distribution/WorkerThreads.h"
#include "profiles/LinkFile.h"
#include "profiles/ui/CLinkDlg.h"
#include "profiles/ui/CProfDialog.h"
#include "profiles/ui/CProfTree.h"
#include "profiles/ui/CProfView.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <cstdlib>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

QStringList rows(const QTreeWidget& view)
{
    QStringList texts;
    for (int row = 0; row < view.topLevelItemCount(); ++row)
        texts.append(view.topLevelItem(row)->text(0));
    return texts;
}

QTreeWidgetItem* itemLabelled(QTreeWidget& tree, const QString& label)
{
    const QList<QTreeWidgetItem*> found
        = tree.findItems(label, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : found.front();
}

// Types `label` into the open label editor and commits it with Return.
void editLabel(QAbstractItemView& view, const QString& label)
{
    const QPersistentModelIndex edited = view.currentIndex();
    auto* editor = qobject_cast<QLineEdit*>(view.indexWidget(edited));
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    QTest::keyClicks(editor, label);
    QTest::keyClick(editor, Qt::Key_Return);
    // The view takes the label from its event loop.
    ASSERT_TRUE(waitUntil([&] { return !view.indexWidget(edited); }, std::chrono::seconds(5)));
}

// Renames the current item as the user does: F2, the new label, Return.
void renameInPlace(QAbstractItemView& view, const QString& label)
{
    QTest::keyClick(&view, Qt::Key_F2);
    editLabel(view, label);
}

class ProfileScreenTest : public ProfilesFixture {
protected:
    void SetUp() override { QDir().mkpath(ProfileStore::root()); }

    CProfile& screen()
    {
        if (!screen_)
            screen_ = std::make_unique<CProfile>(notifier_, events_, threads_);
        return *screen_;
    }
    CProfDialog& form() { return screen().form(); }
    void chooseFolder(const QString& label)
    {
        screen().tree().setCurrentItem(itemLabelled(screen().tree(), label));
    }
    void chooseProfile(const QString& name)
    {
        CProfView& list = screen().list();
        list.clearSelection();
        list.setCurrentItem(list.findItems(name, Qt::MatchExactly).front());
    }
    void type(QLineEdit* field, const QString& text)
    {
        field->clear();
        QTest::keyClicks(field, text);
    }
    void fillNew(const QString& name, const QString& port = QStringLiteral("21"))
    {
        form().newSite();
        type(form().nameField(), name);
        type(form().hostField(), QStringLiteral("ftp.example"));
        type(form().userField(), QStringLiteral("me"));
        type(form().passwordField(), QStringLiteral("secret"));
        type(form().portField(), port);
    }

    WorkerThreads threads_ { 0 };
    std::unique_ptr<CProfile> screen_;
};

TEST_F(ProfileScreenTest, TheFormSavesWhatTheNameAndModeAllow)
{
    makeProfile(QStringLiteral("taken.ini"), "old.example");
    const QByteArray takenBefore = contents(profile(QStringLiteral("taken.ini")));
    const struct {
        const char* typed;
        const char* port;
        const char* file; // written, or nullptr
        int message; // shown, or 0
    } cases[] = {
        { "site.old", "21", "site.ini", 0 },
        { ".hidden", "2121", ".hidden.ini", 0 },
        { "taken", "21", nullptr, ids::kProfileExists },
        { "noport", "", nullptr, ids::kFillAllFields },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        notifier_.reset({});
        fillNew(QString::fromUtf8(c.typed), QString::fromUtf8(c.port));
        QTest::mouseClick(form().findChild<QPushButton*>(QStringLiteral("ok")), Qt::LeftButton);
        EXPECT_EQ(notifier_.messages, texts(c.message));
        if (c.file) {
            const QString file = profile(QString::fromUtf8(c.file));
            EXPECT_EQ(SiteProfile::readFields(file),
                (ProfileFields { "ftp.example", "me", "secret", "", "", c.port }));
            EXPECT_TRUE(ownerOnly(file));
            EXPECT_TRUE(rows(screen().list()).contains(SiteProfile::nameOf(file)));
            EXPECT_EQ(form().mode(), ProfileForm::Mode::None);
        } else {
            // A refused save keeps what was typed, so the user can correct it.
            EXPECT_EQ(form().mode(), ProfileForm::Mode::New);
            EXPECT_EQ(form().nameField()->text(), QString::fromUtf8(c.typed));
            form().cancel();
        }
    }
    EXPECT_EQ(contents(profile(QStringLiteral("taken.ini"))), takenBefore);
    EXPECT_EQ(events_.profiles, 2);

    // Edited after the file went behind the program's back.
    chooseProfile(QStringLiteral("site"));
    ASSERT_EQ(form().mode(), ProfileForm::Mode::Edit);
    EXPECT_FALSE(form().nameField()->isEnabled());
    QFile::remove(profile(QStringLiteral("site.ini")));
    notifier_.reset({});
    QTest::keyClick(form().hostField(), Qt::Key_Return);
    EXPECT_EQ(notifier_.messages, texts(ids::kProfileMissing));
}

TEST_F(ProfileScreenTest, AnonymousLoginIsShownAndFilledFromTheSettings)
{
    writeFile(profile(QStringLiteral("anon.ini")),
        "[Settings]\nHost=h\nUser=ANONYMOUS\nPassword=x\nPort=21\n");
    SettingsStore::set(settings::config::kEmail, QStringLiteral("me@example.org"));
    chooseProfile(QStringLiteral("anon"));
    EXPECT_TRUE(form().anonymousBox()->isChecked());

    form().cancel();
    form().newSite();
    QTest::mouseClick(form().anonymousBox(), Qt::LeftButton);
    EXPECT_EQ(form().userField()->text(), QStringLiteral("anonymous"));
    EXPECT_EQ(form().passwordField()->text(), QStringLiteral("me@example.org"));
    QTest::mouseClick(form().anonymousBox(), Qt::LeftButton);
    EXPECT_TRUE(form().userField()->text().isEmpty());
    EXPECT_TRUE(form().passwordField()->text().isEmpty());
}

TEST_F(ProfileScreenTest, ADamagedProfileOpensEmptyAndIsSavedOver)
{
    QByteArray garbage("\x00\xff[Settings\nHost", 16);
    garbage.append(QByteArray(4096, '\x01'));
    writeFile(profile(QStringLiteral("bad.ini")), garbage);
    chooseProfile(QStringLiteral("bad"));
    ASSERT_EQ(form().mode(), ProfileForm::Mode::Edit);
    EXPECT_TRUE(form().hostField()->text().isEmpty());
    type(form().hostField(), QStringLiteral("mended.example"));
    type(form().userField(), QStringLiteral("u"));
    type(form().passwordField(), QStringLiteral("p"));
    type(form().portField(), QStringLiteral("21"));
    QTest::keyClick(form().hostField(), Qt::Key_Return);
    EXPECT_TRUE(notifier_.messages.isEmpty());
    EXPECT_EQ(SiteProfile::readFields(profile(QStringLiteral("bad.ini"))).host,
        QStringLiteral("mended.example"));
}

TEST_F(ProfileScreenTest, FoldersAreMadeRenamedAndDeletedWithTheirLinks)
{
    makeProfile(QStringLiteral("Europe/Paris.ini"));
    makeProfile(QStringLiteral("Asia/tokyo.ini"));
    makeLink(QStringLiteral("west"), { profile(QStringLiteral("Europe/Paris.ini")) });
    makeLink(QStringLiteral("east"), { profile(QStringLiteral("Asia/tokyo.ini")) });
    CProfTree& tree = screen().tree();

    // Insert makes "New Profile" below the chosen folder and opens its label for a name.
    chooseFolder(QStringLiteral("Europe"));
    QTest::keyClick(&tree, Qt::Key_Insert);
    EXPECT_TRUE(QFileInfo(profile(QStringLiteral("Europe/New Profile"))).isDir());
    editLabel(tree, QStringLiteral("North"));
    EXPECT_TRUE(QFileInfo(profile(QStringLiteral("Europe/North"))).isDir());

    // A sibling's name is refused and the label stays; another is taken on disk and in links,
    // whose rest keeps its case, and the folders below follow.
    const struct {
        const char* to;
        int message;
        const char* left; // the label afterwards
    } renames[] = {
        { "Asia", ids::kFolderNotRenamed, "Europe" },
        { "Euro", 0, "Euro" },
    };
    for (const auto& r : renames) {
        notifier_.reset({});
        tree.setCurrentItem(itemLabelled(tree, QStringLiteral("Europe")));
        renameInPlace(tree, QString::fromUtf8(r.to));
        EXPECT_EQ(notifier_.messages, texts(r.message));
        EXPECT_NE(itemLabelled(tree, QString::fromUtf8(r.left)), nullptr);
    }
    chooseFolder(QStringLiteral("North"));
    EXPECT_EQ(screen().list().folder(), profile(QStringLiteral("Euro/North")));
    chooseFolder(QStringLiteral("Euro"));
    EXPECT_EQ(LinkFile::read(linkPath(QStringLiteral("west"))).sites.front().profile,
        profile(QStringLiteral("Euro/Paris.ini")));
    EXPECT_EQ(rows(screen().list()), QStringList({ "Paris" }));

    // The root stays whatever the answer; "Yes To All" takes the folder and its links.
    notifier_.reset({});
    tree.setCurrentItem(tree.topLevelItem(0));
    QTest::keyClick(&tree, Qt::Key_Delete);
    EXPECT_TRUE(notifier_.questions.empty());
    notifier_.reset({ Answer::Middle });
    chooseFolder(QStringLiteral("Asia"));
    QTest::keyClick(&tree, Qt::Key_Delete);
    EXPECT_FALSE(QFileInfo::exists(profile(QStringLiteral("Asia"))));
    EXPECT_FALSE(QFileInfo::exists(linkPath(QStringLiteral("east"))));
    EXPECT_TRUE(QFileInfo::exists(linkPath(QStringLiteral("west"))));
    EXPECT_EQ(itemLabelled(tree, QStringLiteral("Asia")), nullptr);
}

TEST_F(ProfileScreenTest, ProfilesAreRenamedAndDeletedFromTheList)
{
    makeProfile(QStringLiteral("alpha.ini"));
    makeProfile(QStringLiteral("beta.ini"));
    makeLink(QStringLiteral("both"),
        { profile(QStringLiteral("alpha.ini")), profile(QStringLiteral("beta.ini")) });
    CProfView& list = screen().list();

    // A taken name is refused and the label stays; a typed dot cuts the name as a save does.
    chooseProfile(QStringLiteral("alpha"));
    renameInPlace(list, QStringLiteral("beta"));
    EXPECT_EQ(notifier_.messages, texts(ids::kRenameTargetExists));
    EXPECT_EQ(rows(list), QStringList({ "alpha", "beta" }));
    chooseProfile(QStringLiteral("alpha"));
    renameInPlace(list, QStringLiteral("gamma.old"));
    EXPECT_EQ(rows(list), QStringList({ "beta", "gamma" }));
    EXPECT_TRUE(QFileInfo::exists(profile(QStringLiteral("gamma.ini"))));
    EXPECT_EQ(LinkFile::read(linkPath(QStringLiteral("both"))).sites.front().profile,
        profile(QStringLiteral("gamma.ini")));

    notifier_.reset({ Answer::Accepted });
    chooseProfile(QStringLiteral("beta"));
    QTest::keyClick(&list, Qt::Key_Delete);
    EXPECT_EQ(rows(list), QStringList({ "gamma" }));
    EXPECT_FALSE(QFileInfo::exists(profile(QStringLiteral("beta.ini"))));
    EXPECT_FALSE(QFileInfo::exists(linkPath(QStringLiteral("both"))));
}

TEST_F(ProfileScreenTest, ImportWritesTheOldServerFileIntoTheChosenFolder)
{
    QDir().mkpath(profile(QStringLiteral("old")));
    const QString sts = temp_.root() + QStringLiteral("/servers.sts");
    writeFile(sts, "FTP_SERVER_FILE\r\nftp.a.org anna pw NONE\r\nftp.b.org bob pw2 /in\r\n");
    screen().setImportChooser([&] { return sts; });
    chooseFolder(QStringLiteral("old"));
    screen().importProfiles();
    EXPECT_EQ(rows(screen().list()), QStringList({ "ftp_a_org", "ftp_b_org" }));
    EXPECT_EQ(SiteProfile::readFields(profile(QStringLiteral("old/ftp_b_org.ini"))),
        (ProfileFields { "ftp.b.org", "bob", "pw2", "/in", "", "21" }));
}

TEST_F(ProfileScreenTest, FirstOpeningIsCentredAndAMovedScreenComesBackThere)
{
    QWidget frame;
    frame.setGeometry(100, 50, 600, 500);
    frame.show();
    {
        CProfile first(notifier_, events_, threads_, &frame);
        EXPECT_GT(first.width(), 400);
        EXPECT_GT(first.height(), 400);
        EXPECT_LE(
            std::abs(first.frameGeometry().center().x() - frame.frameGeometry().center().x()), 2);
        first.show();
        first.move(130, 140);
        first.resize(820, 480);
        first.close();
    }
    CProfile again(notifier_, events_, threads_, &frame);
    EXPECT_EQ(again.size(), QSize(820, 480));
    EXPECT_EQ(again.pos(), QPoint(130, 140));
}

TEST_F(ProfileScreenTest, TestConnectionSaysWhetherTheLoginAndFolderWork)
{
    if (const auto reason = FtpServer::unavailableReason())
        GTEST_SKIP() << reason->toStdString();
    FtpServer server;
    QDir(server.home()).mkdir(QStringLiteral("in"));
    const FtpUser& user = server.users().front();
    const struct {
        bool refuse;
        const char* folder;
        QString said;
    } cases[] = {
        { true, "", StringTable::errorMessage(12014) },
        { false, "/missing", QStringLiteral("remote directory could not be entered") },
        { false, "/in", QStringLiteral("The login and the remote directory worked (/in).") },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.folder);
        FtpFaults faults;
        if (c.refuse)
            faults.refuseLogin = QStringList { QStringLiteral("*") };
        server.setFaults(faults);
        form().cancel();
        form().newSite();
        type(form().hostField(), FtpServer::host());
        type(form().userField(), user.name);
        type(form().passwordField(), user.password);
        type(form().portField(), QString::number(server.port()));
        type(form().remotePathField(), QString::fromUtf8(c.folder));
        QTest::mouseClick(form().findChild<QPushButton*>(QStringLiteral("test")), Qt::LeftButton);
        EXPECT_TRUE(form().testing());
        ASSERT_TRUE(waitUntil([&] { return !form().testing(); }, 30s));
        EXPECT_TRUE(form().testResult().contains(c.said)) << form().testResult().toStdString();
        // Said in the form, not in a box that stops the user.
        EXPECT_TRUE(notifier_.messages.isEmpty());
    }
}

} // namespace
} // namespace zelto::test
