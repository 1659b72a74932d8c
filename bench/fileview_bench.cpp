// Measures the file list base with many rows: 10,000 rows of thirty extensions and some folders
// fed to a shown CFileView, then a sort by each column both ways. Not a test.
//
//   zelto_bench_fileview [rows]
//       prints the wall time of each step; runs on the offscreen platform unless another one is
//       chosen

#include "widgets/CFileView.h"

#include <QApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <vector>

namespace {

using namespace zelto;

constexpr int kExtensions = 30;
constexpr int kFolderEvery = 20;

std::vector<FileRow> makeRows(int count)
{
    const QDateTime start(QDate(2020, 1, 1), QTime(0, 0));
    std::vector<FileRow> rows;
    rows.reserve(std::size_t(count));
    for (int i = 0; i < count; ++i) {
        const bool folder = i % kFolderEvery == 0;
        const QString name = folder ? QStringLiteral("Folder %1").arg(i)
                                    : QStringLiteral("file%1.x%2").arg(i).arg(i % kExtensions);
        // Sizes reach past 4 GiB; names, sizes and times each give a different order.
        rows.push_back({ name, folder ? 0 : (qint64(i) * 7919 % 10007) << 20, folder,
            start.addSecs(qint64(i) * 7907 % 100003) });
    }
    return rows;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 10'000;

    CFileView view;
    view.resize(1000, 600);
    view.show();
    QApplication::processEvents();

    std::vector<FileRow> rows = makeRows(count);
    QElapsedTimer timer;
    const auto ms = [&timer] { return double(timer.nsecsElapsed()) / 1e6; };
    timer.start();
    view.setRows(std::move(rows));
    QApplication::processEvents();
    std::printf("%d rows shown, sorted by name: %.1f ms\n", count, ms());

    for (int column = 0; column < CFileView::Column::ColumnCount; ++column) {
        for (const Qt::SortOrder order : { Qt::AscendingOrder, Qt::DescendingOrder }) {
            timer.restart();
            view.sortByColumn(column, order);
            QApplication::processEvents();
            std::printf("sort by column %d %s: %.1f ms\n", column,
                order == Qt::AscendingOrder ? "ascending" : "descending", ms());
        }
    }
    timer.restart();
    view.selectAll();
    const std::size_t selected = view.selectedRows().size();
    std::printf("all %zu rows selected and read back: %.1f ms\n", selected, ms());
    return 0;
}
