// The link dialog: a link put together from the pickers, added, shown again, renamed and deleted,
// with the files on disk checked, and the pickers following the stores. What a link may hold is
// LinkEditor's rule.

#include "profiles/ui/CLinkDlg.h"

#include "ProfilesFixture.h"
#include "profiles/LinkFile.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

namespace zelto::test {
namespace {

QStringList shown(const QListWidget& list)
{
    QStringList texts;
    for (int row = 0; row < list.count(); ++row)
        texts.append(list.item(row)->text());
    return texts;
}

class LinkDlgTest : public ProfilesFixture {
protected:
    void SetUp() override
    {
        makeProfile(QStringLiteral("alpha.ini"), "a.example");
        makeProfile(QStringLiteral("twin.ini"), "a.example");
        makeProfile(QStringLiteral("eu/gamma.ini"), "g.example");
        makeList("daily", { localFolder() + "|a.txt", localFolder() + "|b.txt" });
        Q_EMIT events_.profilesChanged();
    }
    // Chooses the item shown as `text` in `picker`, as a click in its list does.
    static void pick(QComboBox* picker, const QString& text)
    {
        const int index = picker->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        picker->setCurrentIndex(index);
        Q_EMIT picker->activated(index);
    }
    void name(const QString& text)
    {
        dialog_.nameField()->clear();
        QTest::keyClicks(dialog_.nameField(), text);
    }

    CLinkDlg dialog_ { notifier_, events_ };
};

TEST_F(LinkDlgTest, ALinkIsAddedShownRenamedAndDeleted)
{
    // A second profile of the same host is no second site.
    for (const char* site : { "alpha", "twin", "eu/gamma" })
        pick(dialog_.profiles(), QString::fromUtf8(site));
    EXPECT_EQ(shown(*dialog_.sites()), QStringList({ "a.example", "g.example" }));
    pick(dialog_.fileLists(), QStringLiteral("daily"));
    EXPECT_EQ(shown(*dialog_.files()),
        QStringList({ QDir::toNativeSeparators(localFolder() + "/a.txt"),
            QDir::toNativeSeparators(localFolder() + "/b.txt") }));
    name(QStringLiteral("weekly.ini"));
    dialog_.addLink();
    EXPECT_TRUE(notifier_.messages.isEmpty());
    const Link saved = LinkFile::read(linkPath(QStringLiteral("weekly")));
    ASSERT_EQ(saved.sites.size(), 2u);
    EXPECT_EQ(saved.sites[1].profile, profile(QStringLiteral("eu/gamma.ini")));
    EXPECT_EQ(saved.files, FileListStore::listFile(listFolder("daily")));
    EXPECT_GE(dialog_.links()->findText(QStringLiteral("weekly")), 0);
    EXPECT_EQ(dialog_.sites()->count(), 0);

    // Shown again with its list chosen; Delete on a site row takes it off.
    pick(dialog_.links(), QStringLiteral("weekly"));
    EXPECT_EQ(shown(*dialog_.sites()), QStringList({ "a.example", "g.example" }));
    EXPECT_EQ(dialog_.fileLists()->currentText(), QStringLiteral("daily"));
    dialog_.sites()->setCurrentRow(0);
    QTest::keyClick(dialog_.sites(), Qt::Key_Delete);
    EXPECT_EQ(shown(*dialog_.sites()), QStringList({ "g.example" }));

    const std::pair<const char*, int> renames[]
        = { { "weekly", ids::kLinkNamesIdentical }, { "monthly", 0 } };
    for (const auto& [typed, message] : renames) {
        notifier_.reset({});
        name(QString::fromUtf8(typed));
        dialog_.renameLink();
        EXPECT_EQ(notifier_.messages, texts(message));
    }
    EXPECT_FALSE(QFileInfo::exists(linkPath(QStringLiteral("weekly"))));
    EXPECT_TRUE(QFileInfo::exists(linkPath(QStringLiteral("monthly"))));
    EXPECT_GE(dialog_.links()->findText(QStringLiteral("monthly")), 0);

    dialog_.deleteLink();
    EXPECT_FALSE(QFileInfo::exists(linkPath(QStringLiteral("monthly"))));
    EXPECT_EQ(dialog_.links()->count(), 0);
    notifier_.reset({});
    dialog_.deleteLink();
    EXPECT_EQ(notifier_.messages, texts(ids::kNoLinkSelected));
}

TEST_F(LinkDlgTest, ThePickersFollowChangesMadeElsewhere)
{
    ProfileStore profiles(notifier_, events_);
    ASSERT_FALSE(profiles.renameProfile(profile(QStringLiteral("alpha.ini")), "omega").isEmpty());
    EXPECT_LT(dialog_.profiles()->findText(QStringLiteral("alpha")), 0);
    EXPECT_GE(dialog_.profiles()->findText(QStringLiteral("omega")), 0);

    FileListStore lists(notifier_, events_);
    ASSERT_FALSE(lists.renameList(listFolder("daily"), QStringLiteral("nightly")).isEmpty());
    EXPECT_EQ(dialog_.fileLists()->itemText(0), QStringLiteral("nightly"));
}

} // namespace
} // namespace zelto::test
