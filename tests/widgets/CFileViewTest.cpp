// The list base: the order each header click gives with folders kept first, sizes past 4 GiB, and
// the rows the owner gets back from a selection or an activation.

#include "widgets/CFileView.h"

#include <QHeaderView>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <tuple>

namespace zelto::test {
namespace {

constexpr qint64 kGiB = qint64(1) << 30;

QDateTime day(int d)
{
    return QDateTime(QDate(2024, 3, d), QTime(12, 0));
}

class FileViewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        // Types by extension ("Zip archive", "Plain text document", the unknown "QQQ File") do not
        // sort as the names do.
        view_.setRows({
            { "b.txt", 5 * kGiB, false, day(3) },
            { "Zeta", 0, true, day(1) },
            { "A.zip", 10, false, day(9) },
            { "c.qqq", 4 * kGiB - 1, false, day(2) },
            { "alpha", 0, true, day(5) },
        });
    }

    [[nodiscard]] QStringList shownNames() const
    {
        QStringList names;
        for (int row = 0; row < view_.model()->rowCount(); ++row)
            names.append(view_.model()->index(row, 0).data().toString());
        return names;
    }
    void select(std::initializer_list<int> rows)
    {
        view_.selectionModel()->clearSelection();
        for (const int row : rows)
            view_.selectionModel()->select(view_.model()->index(row, 0),
                QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    CFileView view_;
};

TEST_F(FileViewTest, EachColumnSortsBothWaysWithFoldersFirstAndSizesShowWhole)
{
    // Folders among themselves follow the column too, then the name (sizes and types tie).
    const std::vector<std::tuple<int, Qt::SortOrder, QStringList>> cases {
        { CFileView::Column::File, Qt::AscendingOrder,
            { "alpha", "Zeta", "A.zip", "b.txt", "c.qqq" } },
        { CFileView::Column::File, Qt::DescendingOrder,
            { "Zeta", "alpha", "c.qqq", "b.txt", "A.zip" } },
        // 64-bit sizes: 5 GiB above 4 GiB - 1, which a 32-bit compare would put below 10.
        { CFileView::Column::Size, Qt::AscendingOrder,
            { "alpha", "Zeta", "A.zip", "c.qqq", "b.txt" } },
        { CFileView::Column::Size, Qt::DescendingOrder,
            { "Zeta", "alpha", "b.txt", "c.qqq", "A.zip" } },
        { CFileView::Column::Modified, Qt::AscendingOrder,
            { "Zeta", "alpha", "c.qqq", "b.txt", "A.zip" } },
        { CFileView::Column::Modified, Qt::DescendingOrder,
            { "alpha", "Zeta", "A.zip", "b.txt", "c.qqq" } },
    };
    for (const auto& [column, order, expected] : cases) {
        view_.sortByColumn(column, order);
        EXPECT_EQ(shownNames(), expected) << "column " << column << " order " << int(order);
    }
    // Sorted last by date, descending: b.txt is the fourth row, the folder alpha the first.
    EXPECT_EQ(view_.model()->index(3, CFileView::Column::Size).data().toString(),
        QLocale().toString(5 * kGiB));
    EXPECT_EQ(view_.model()->index(0, CFileView::Column::Size).data().toString(), QString())
        << "a folder shows no size";
}

TEST_F(FileViewTest, TypeColumnSortsByTheTypeText)
{
    view_.sortByColumn(CFileView::Column::FileType, Qt::AscendingOrder);
    QStringList types;
    for (int row = 2; row < view_.model()->rowCount(); ++row)
        types.append(view_.model()->index(row, CFileView::Column::FileType).data().toString());
    ASSERT_EQ(types.size(), 3);
    EXPECT_TRUE(types.contains("QQQ File")) << "no desktop type for an unknown extension";
    for (qsizetype at = 1; at < types.size(); ++at)
        EXPECT_LE(types[at - 1].compare(types[at], Qt::CaseInsensitive), 0)
            << types.join(", ").toStdString();
    EXPECT_EQ(shownNames().mid(0, 2), QStringList({ "alpha", "Zeta" }));
}

// TimeType orders the Modified column's date; an unknown word keeps the month first.
TEST(FileRowModelTest, DatesFollowTheTimeTypeWord)
{
    const QDateTime modified(QDate(2026, 3, 7), QTime(14, 5));
    const std::pair<const char*, const char*> cases[]
        = { { "MM/DD", "03/07/2026" }, { "DD/MM", "07/03/2026" }, { "MON/DD", "Mar/07/2026" },
              { "DD/MON", "07/Mar/2026" }, { "", "03/07/2026" }, { "dd/mm", "03/07/2026" } };
    for (const auto& [word, date] : cases) {
        FileRowModel::setDateOrder(QLatin1StringView(word));
        EXPECT_TRUE(FileRowModel::dateText(modified).startsWith(QLatin1StringView(date))) << word;
    }
    EXPECT_EQ(FileRowModel::dateText({}), QString());
    FileRowModel::setDateOrder({});
}

TEST_F(FileViewTest, SelectionAndActivationGiveTheRowsShown)
{
    view_.sortByColumn(CFileView::Column::File, Qt::DescendingOrder);
    select({ 4, 1 });
    std::vector<QString> names;
    for (const FileRow& row : view_.selectedRows())
        names.push_back(row.name);
    EXPECT_EQ(names, std::vector<QString>({ "alpha", "A.zip" }));

    QSignalSpy activated(&view_, &CFileView::rowActivated);
    view_.setCurrentIndex(view_.model()->index(2, 0));
    QTest::keyClick(&view_, Qt::Key_Return);
    ASSERT_EQ(activated.size(), 1);
    const auto row = activated.front().front().value<FileRow>();
    EXPECT_EQ(row, FileRow({ "c.qqq", 4 * kGiB - 1, false, day(2) }));
}

TEST_F(FileViewTest, RenamedAndRemovedRowsKeepTheOrder)
{
    view_.sortByColumn(CFileView::Column::File, Qt::AscendingOrder);
    ASSERT_TRUE(view_.replaceRow("b.txt", { "0.txt", 5 * kGiB, false, day(3) }));
    EXPECT_EQ(shownNames(), QStringList({ "alpha", "Zeta", "0.txt", "A.zip", "c.qqq" }));
    ASSERT_TRUE(view_.removeRow("alpha"));
    EXPECT_FALSE(view_.removeRow("ALPHA")) << "names are matched exactly";
    view_.addRow({ "beta", 0, true, day(1) });
    EXPECT_EQ(shownNames(), QStringList({ "beta", "Zeta", "0.txt", "A.zip", "c.qqq" }));
}

} // namespace
} // namespace zelto::test
