// The sites list of the multiple-put screen: rows read from site profiles, kept up to date, and
// the chooser that adds them.

#include "distribution/ui/CFtpView.h"

#include "TempSettings.h"
#include "TestFiles.h"
#include "distribution/ui/CSiteChooser.h"
#include "profiles/ProfileStore.h"
#include "profiles/SiteProfile.h"

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <gtest/gtest.h>

namespace zelto::test {
namespace {

class FtpViewTest : public ::testing::Test {
protected:
    [[nodiscard]] static QString profile(const QString& name)
    {
        return ProfileStore::root() + u'/' + name + QStringLiteral(".ini");
    }
    static void writeProfile(const QString& name, const QByteArray& settings)
    {
        writeFile(profile(name), "[Settings]\n" + settings);
    }
    [[nodiscard]] QStringList row(int row) const
    {
        QStringList texts;
        for (int column = 0; column < SiteListModel::ColumnCount; ++column)
            texts.append(view_.model()->index(row, column).data().toString());
        return texts;
    }

    TempSettings settings_;
    CFtpView view_;
};

TEST_F(FtpViewTest, RowsShowProfilesWithTheirPasswordHidden)
{
    const QByteArray longHost(150, 'h');
    struct Case {
        const char* name;
        QByteArray settings;
        QStringList shown;
        QString password; // what the job gets
    };
    const Case cases[] = {
        { "full", "Host=ftp.example.org\nUser=web\nPassword=s3cret\nRemote Path=/pub\nPort=2121\n",
            { "ftp.example.org", "web", "****", "/pub", "2121" }, "s3cret" },
        { "no port", "Host=h\nUser=u\nPassword=p\n", { "h", "u", "****", "", "21" }, "p" },
        { "no password", "Host=h\nUser=anonymous\n", { "h", "anonymous", "****", "", "21" }, "" },
        // The multiple-put list reads 99 characters of each value.
        { "long host", "Host=" + longHost + "\n", { QString(99, u'h'), "", "****", "", "21" }, "" },
    };
    QStringList files;
    for (const Case& c : cases) {
        writeProfile(QLatin1String(c.name), c.settings);
        files.append(profile(QLatin1String(c.name)));
    }
    view_.addProfiles(files);

    ASSERT_EQ(view_.model()->rowCount(), int(std::size(cases)));
    const std::vector<JobSite> sites = view_.sites();
    for (int i = 0; i < int(std::size(cases)); ++i) {
        SCOPED_TRACE(cases[i].name);
        EXPECT_EQ(row(i), cases[i].shown);
        EXPECT_EQ(sites[std::size_t(i)].password, cases[i].password);
        EXPECT_EQ(QString::number(sites[std::size_t(i)].port), cases[i].shown[4]);
    }
}

TEST_F(FtpViewTest, RowsFollowTheirProfiles)
{
    writeProfile("a", "Host=a1\n");
    writeProfile("b", "Host=b1\n");
    writeProfile("c", "Host=c1\n");
    view_.setProfileChooser([] { return QStringList { profile("a"), profile("b") }; });
    view_.addSites();
    ASSERT_EQ(view_.model()->rowCount(), 2);

    // Adding a listed profile again updates its row.
    writeProfile("a", "Host=a2\n");
    view_.addProfiles({ profile("c"), profile("a") });
    EXPECT_EQ(view_.model()->rowCount(), 3);
    EXPECT_EQ(row(0).at(0), "a2");

    // Read again: the edited one changes, the deleted one goes.
    writeProfile("c", "Host=c2\n");
    ASSERT_TRUE(QFile::remove(profile("b")));
    view_.refresh();
    ASSERT_EQ(view_.model()->rowCount(), 2);
    EXPECT_EQ(row(0).at(0), "a2");
    EXPECT_EQ(row(1).at(0), "c2");

    // Delete removes the selected sites.
    view_.show();
    view_.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view_));
    view_.setFocus();
    view_.selectionModel()->select(
        view_.model()->index(0, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    QTest::keyClick(&view_, Qt::Key_Delete);
    ASSERT_EQ(view_.model()->rowCount(), 1);
    EXPECT_EQ(row(0).at(0), "c2");

    // A cancelled chooser adds nothing.
    view_.setProfileChooser([] { return QStringList(); });
    view_.addSites();
    EXPECT_EQ(view_.model()->rowCount(), 1);
}

TEST_F(FtpViewTest, AChooserWithoutProfilesLeadsToMakingOne)
{
    // The chooser ends and the place where profiles are made opens.
    int opened = 0;
    view_.setNewSiteOpener([&] { ++opened; });
    QTimer::singleShot(0, [] {
        QWidget* modal = QApplication::activeModalWidget();
        if (auto* button
            = modal ? modal->findChild<QPushButton*>(QStringLiteral("newSite")) : nullptr)
            button->click();
        else if (modal)
            modal->close();
    });
    view_.addSites();
    EXPECT_EQ(opened, 1);
    EXPECT_EQ(view_.model()->rowCount(), 0);
}

// The filter matches a profile's name or its server in any case. From it, Return takes the only
// profile left (and nothing while several are), Down moves into the list; the list reads by
// folder, then name, with the folder in a column.
TEST_F(FtpViewTest, ChooserFilterKeysAndOrder)
{
    writeProfile("shop/zeta", "Host=files.zeta.test\n");
    writeProfile("shop/acme", "Host=ftp.acme.test\n");
    writeProfile("mirror", "Host=acme-mirror.test\n");
    {
        CSiteChooser chooser(ProfileStore::allProfiles(), ProfileStore::root());
        auto* list = chooser.findChild<QTreeView*>();
        QStringList rows;
        for (int row = 0; row < list->model()->rowCount(); ++row)
            rows << list->model()->index(row, 0).data().toString() + u'|'
                    + list->model()->index(row, 1).data().toString();
        EXPECT_EQ(rows, QStringList({ "mirror|", "acme|shop", "zeta|shop" }));
        list->selectAll(); // several sites are added at once
        EXPECT_EQ(chooser.chosen(),
            QStringList({ profile("mirror"), profile("shop/acme"), profile("shop/zeta") }));
    }
    const struct {
        const char* filter;
        Qt::Key key;
        int result;
        QStringList chosen;
        bool listFocused;
        int rowsLeft;
    } cases[] = {
        { "zeta", Qt::Key_Return, QDialog::Accepted, { profile("shop/zeta") }, false, 1 },
        { "ZETA", Qt::Key_Enter, QDialog::Accepted, { profile("shop/zeta") }, false, 1 },
        // One by its name, one by its server.
        { "ACME", Qt::Key_Return, QDialog::Rejected, {}, false, 2 },
        { "acme", Qt::Key_Down, QDialog::Rejected, { profile("mirror") }, true, 2 },
        { "nothing", Qt::Key_Down, QDialog::Rejected, {}, false, 0 },
    };
    for (const auto& c : cases) {
        CSiteChooser chooser(ProfileStore::allProfiles(), ProfileStore::root());
        chooser.show();
        chooser.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&chooser));
        auto* filter = chooser.findChild<QLineEdit*>();
        filter->setFocus();
        filter->setText(QLatin1String(c.filter));
        QTest::keyClick(filter, c.key);
        EXPECT_EQ(chooser.result(), c.result) << c.filter;
        EXPECT_EQ(chooser.chosen(), c.chosen) << c.filter;
        EXPECT_EQ(chooser.findChild<QTreeView*>()->hasFocus(), c.listFocused) << c.filter;
        EXPECT_EQ(chooser.findChild<QTreeView*>()->model()->rowCount(), c.rowsLeft) << c.filter;
    }
}

} // namespace
} // namespace zelto::test
