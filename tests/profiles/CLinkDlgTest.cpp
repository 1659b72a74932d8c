// The link dialog: a link put together from the trees of profiles and lists by keyboard, added,
// shown again, renamed and deleted, with the files on disk checked, and the trees following the
// stores. What a link may hold is LinkEditor's rule.

#include "profiles/ui/CLinkDlg.h"

#include "ProfilesFixture.h"
#include "profiles/LinkFile.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMap>
#include <QTest>

#include <algorithm>

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
    // The items shown as `label` anywhere in `tree`.
    static QList<QTreeWidgetItem*> shows(const CPickTree* tree, const QString& label)
    {
        return tree->findItems(label, Qt::MatchExactly | Qt::MatchRecursive);
    }
    // Selects the items shown as `labels` in `tree` (folders or leaves), the last one current.
    static void select(CPickTree* tree, const QStringList& labels)
    {
        tree->clearSelection();
        for (const QString& label : labels) {
            const QList<QTreeWidgetItem*> found = shows(tree, label);
            ASSERT_EQ(found.size(), 1) << label.toStdString();
            tree->setCurrentItem(found.front(), 0, QItemSelectionModel::Select);
        }
    }
    // Adds the profiles shown as `labels` with Return, as the keyboard does.
    void addSites(const QStringList& labels)
    {
        select(dialog_.profiles(), labels);
        QTest::keyClick(dialog_.profiles(), Qt::Key_Return);
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
    // A second profile of the same host is no second site; sites come in the tree's order.
    addSites({ "alpha", "twin", "gamma" });
    EXPECT_EQ(
        shown(*dialog_.sites()), QStringList({ "g.example (eu/gamma)", "a.example (alpha)" }));
    EXPECT_TRUE(dialog_.findChild<QLabel*>(QStringLiteral("note"))->text().contains("twin"));
    select(dialog_.fileLists(), { "daily" });
    EXPECT_EQ(shown(*dialog_.files()),
        QStringList({ QDir::toNativeSeparators(localFolder() + "/a.txt"),
            QDir::toNativeSeparators(localFolder() + "/b.txt") }));
    name(QStringLiteral("weekly.ini"));
    dialog_.addLink();
    EXPECT_TRUE(notifier_.messages.isEmpty());
    EXPECT_TRUE(dialog_.findChild<QLabel*>(QStringLiteral("note"))->text().contains("weekly"));
    const Link saved = LinkFile::read(linkPath(QStringLiteral("weekly")));
    ASSERT_EQ(saved.sites.size(), 2u);
    EXPECT_EQ(saved.sites[0].profile, profile(QStringLiteral("eu/gamma.ini")));
    EXPECT_EQ(saved.files, FileListStore::listFile(listFolder("daily")));
    EXPECT_GE(dialog_.links()->findText(QStringLiteral("weekly")), 0);
    EXPECT_EQ(dialog_.sites()->count(), 0);

    // Shown again with its list chosen; Delete on a site row takes it off.
    pick(dialog_.links(), QStringLiteral("weekly"));
    EXPECT_EQ(
        shown(*dialog_.sites()), QStringList({ "g.example (eu/gamma)", "a.example (alpha)" }));
    EXPECT_EQ(dialog_.fileLists()->currentLeaf(), QDir::cleanPath(listFolder("daily")));
    dialog_.sites()->setCurrentRow(0);
    QTest::keyClick(dialog_.sites(), Qt::Key_Delete);
    EXPECT_EQ(shown(*dialog_.sites()), QStringList({ "a.example (alpha)" }));

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
    EXPECT_TRUE(shows(dialog_.profiles(), QStringLiteral("alpha")).isEmpty());
    EXPECT_FALSE(shows(dialog_.profiles(), QStringLiteral("omega")).isEmpty());

    FileListStore lists(notifier_, events_);
    ASSERT_FALSE(lists.renameList(listFolder("daily"), QStringLiteral("nightly")).isEmpty());
    EXPECT_EQ(shows(dialog_.fileLists(), QStringLiteral("nightly")).size(), 1);
    EXPECT_TRUE(shows(dialog_.fileLists(), QStringLiteral("daily")).isEmpty());
}

// Sites in two folders, one chosen as a folder (every profile below it) and one by name, and the
// second of two lists: the link on disk names exactly those.
TEST_F(LinkDlgTest, SitesAndTheListAreChosenFromTheTrees)
{
    makeProfile(QStringLiteral("us/ny.ini"), "n.example");
    makeProfile(QStringLiteral("us/east/bos.ini"), "b.example");
    makeList("weekly", { localFolder() + "|c.txt" });
    Q_EMIT events_.profilesChanged();

    addSites({ "us" });
    // Current but not selected, as Home leaves the first item: Return adds it all the same.
    dialog_.profiles()->clearSelection();
    dialog_.profiles()->setCurrentItem(
        dialog_.profiles()->findItems("gamma", Qt::MatchExactly | Qt::MatchRecursive).front(), 0,
        QItemSelectionModel::NoUpdate);
    QTest::keyClick(dialog_.profiles(), Qt::Key_Return);
    EXPECT_EQ(shown(*dialog_.sites()),
        QStringList({ "b.example (us/east/bos)", "n.example (us/ny)", "g.example (eu/gamma)" }));
    dialog_.sites()->setCurrentRow(1);
    QTest::keyClick(dialog_.sites(), Qt::Key_Delete);

    // Moving from one list to the next shows the files of the last alone; Return in the name
    // field adds the link.
    dialog_.show();
    select(dialog_.fileLists(), { "daily" });
    select(dialog_.fileLists(), { "weekly" });
    EXPECT_EQ(shown(*dialog_.files()),
        QStringList({ QDir::toNativeSeparators(localFolder() + "/c.txt") }));
    QTest::keyClicks(dialog_.nameField(), QStringLiteral("both"));
    QTest::keyClick(dialog_.nameField(), Qt::Key_Return);
    EXPECT_TRUE(notifier_.messages.isEmpty());

    const Link saved = LinkFile::read(linkPath(QStringLiteral("both")));
    ASSERT_EQ(saved.sites.size(), 2u);
    EXPECT_EQ(saved.sites[0].profile, profile(QStringLiteral("us/east/bos.ini")));
    EXPECT_EQ(saved.sites[1].profile, profile(QStringLiteral("eu/gamma.ini")));
    EXPECT_EQ(saved.files, FileListStore::listFile(listFolder("weekly")));
}

// Every pane has a label whose access key reaches it, no access key serves twice, and Tab walks
// the panes in reading order.
TEST_F(LinkDlgTest, EveryPaneIsReachedByItsLabelAndByTab)
{
    QWidget* const panes[] = { dialog_.links(), dialog_.nameField(), dialog_.profiles(),
        dialog_.sites(), dialog_.fileLists(), dialog_.files() };
    QStringList keyed;
    for (const QLabel* label : dialog_.findChildren<QLabel*>()) {
        if (label->buddy())
            keyed.append(label->text());
        EXPECT_TRUE(!label->buddy()
            || std::find(std::begin(panes), std::end(panes), label->buddy()) != std::end(panes))
            << label->text().toStdString();
    }
    for (const QAbstractButton* button : dialog_.findChildren<QAbstractButton*>())
        keyed.append(button->text());
    QMap<QChar, QString> keys;
    for (const QString& text : keyed) {
        const qsizetype amp = text.indexOf(u'&');
        if (amp < 0 || amp + 1 >= text.size())
            continue;
        const QChar key = text.at(amp + 1).toLower();
        EXPECT_FALSE(keys.contains(key))
            << text.toStdString() << " and " << keys[key].toStdString();
        keys.insert(key, text);
    }
    for (QWidget* pane : panes) {
        const auto labels = dialog_.findChildren<QLabel*>();
        EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
            return label->buddy() == pane;
        })) << pane->metaObject()->className();
    }

    std::vector<QWidget*> reached;
    QWidget* at = dialog_.links();
    for (int step = 0; step < 500 && reached.size() < std::size(panes); ++step) {
        if (std::find(std::begin(panes), std::end(panes), at) != std::end(panes))
            reached.push_back(at);
        at = at->nextInFocusChain();
    }
    EXPECT_TRUE(std::equal(reached.begin(), reached.end(), std::begin(panes), std::end(panes)));
}

// The first opening is centred on the frame; once moved, the dialog comes back where it was left.
TEST_F(LinkDlgTest, OpensCentredOnTheFrameThenWhereItWasLeft)
{
    QWidget frame;
    frame.setGeometry(10, 10, 780, 580);
    frame.show();
    CLinkDlg first(notifier_, events_, &frame);
    EXPECT_LE(
        (first.frameGeometry().center() - frame.frameGeometry().center()).manhattanLength(), 2);
    first.show();
    first.move(140, 90);
    const CLinkDlg again(notifier_, events_, &frame);
    EXPECT_EQ(again.pos(), QPoint(140, 90));
    EXPECT_EQ(again.size(), first.size());
}

} // namespace
} // namespace zelto::test
