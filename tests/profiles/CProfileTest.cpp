// The site-profile screen driven as the user drives it: the form saved, folders made, renamed and
// deleted from the tree, and the form's "Test connection" against a server that refuses the login
// and one that takes it.

#include "profiles/ui/CProfile.h"

#include "FtpServer.h"
#include "ProfilesFixture.h"
#include "TestWait.h"
#include "distribution/WorkerThreads.h"
#include "profiles/ui/CProfDialog.h"
#include "profiles/ui/CProfTree.h"
#include "profiles/ui/CProfView.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

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
    void fillNew(const QString& name, const QString& port)
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

// The name and port rules are the form's own; here the OK button saves, and a refusal keeps what
// was typed so that the user can correct it.
TEST_F(ProfileScreenTest, OkSavesTheTypedProfileOrKeepsWhatWasTyped)
{
    for (const auto& [port, saved] : { std::pair { "", false }, std::pair { "2121", true } }) {
        SCOPED_TRACE(port);
        notifier_.reset({});
        fillNew(QStringLiteral("site.old"), QString::fromUtf8(port));
        QTest::mouseClick(form().findChild<QPushButton*>(QStringLiteral("ok")), Qt::LeftButton);
        EXPECT_EQ(notifier_.messages, texts(saved ? 0 : ids::kFillAllFields));
        EXPECT_EQ(form().mode(), saved ? ProfileForm::Mode::None : ProfileForm::Mode::New);
        if (saved) {
            EXPECT_EQ(SiteProfile::readFields(profile(QStringLiteral("site.ini"))),
                (ProfileFields { "ftp.example", "me", "secret", "", "", port }));
            EXPECT_EQ(
                screen().list().findItems(QStringLiteral("site"), Qt::MatchExactly).size(), 1);
        } else {
            EXPECT_EQ(form().nameField()->text(), QStringLiteral("site.old"));
            form().cancel();
        }
    }
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

// Which links follow a folder is the store's rule; here the tree's keys and in-place labels.
TEST_F(ProfileScreenTest, FoldersAreMadeRenamedAndDeletedFromTheTree)
{
    makeProfile(QStringLiteral("Europe/Paris.ini"));
    makeProfile(QStringLiteral("Asia/tokyo.ini"));
    CProfTree& tree = screen().tree();

    // Insert makes "New Profile" below the chosen folder and opens its label for a name.
    chooseFolder(QStringLiteral("Europe"));
    QTest::keyClick(&tree, Qt::Key_Insert);
    EXPECT_TRUE(QFileInfo(profile(QStringLiteral("Europe/New Profile"))).isDir());
    editLabel(tree, QStringLiteral("North"));
    EXPECT_TRUE(QFileInfo(profile(QStringLiteral("Europe/North"))).isDir());

    // A sibling's name is refused and the label stays; the folders below follow a rename.
    for (const auto& [to, message, left] :
        { std::tuple { "Asia", ids::kFolderNotRenamed, "Europe" },
            std::tuple { "Euro", 0, "Euro" } }) {
        notifier_.reset({});
        tree.setCurrentItem(itemLabelled(tree, QStringLiteral("Europe")));
        QTest::keyClick(&tree, Qt::Key_F2);
        editLabel(tree, QString::fromUtf8(to));
        EXPECT_EQ(notifier_.messages, texts(message));
        EXPECT_NE(itemLabelled(tree, QString::fromUtf8(left)), nullptr);
    }
    chooseFolder(QStringLiteral("North"));
    EXPECT_EQ(screen().list().folder(), profile(QStringLiteral("Euro/North")));

    // The root stays whatever the answer; "Yes To All" takes the folder.
    notifier_.reset({});
    tree.setCurrentItem(tree.topLevelItem(0));
    QTest::keyClick(&tree, Qt::Key_Delete);
    EXPECT_TRUE(notifier_.questions.empty());
    notifier_.reset({ Answer::Middle });
    chooseFolder(QStringLiteral("Asia"));
    QTest::keyClick(&tree, Qt::Key_Delete);
    EXPECT_FALSE(QFileInfo::exists(profile(QStringLiteral("Asia"))));
    EXPECT_EQ(itemLabelled(tree, QStringLiteral("Asia")), nullptr);
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
