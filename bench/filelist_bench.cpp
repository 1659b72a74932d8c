// Measures a large file list: an ".fls" file of many paths loaded into an empty list, the list
// saved to "flist.ini" and read back, and every entry removed at once. Not a test.
//
//   zelto_bench_filelist [ENTRIES]      (default 20000; the files are made in a temporary folder)

#include "TempSettings.h"
#include "platform/Notifier.h"
#include "profiles/FileList.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <numeric>

namespace {

using namespace zelto;

// Says yes to every question (the removal's "All").
class AnsweringAll final : public Notifier {
public:
    void showMessage(const QString&, MessageIcon) override { }
    Answer ask(const Question&) override { return Answer::Middle; }
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20000;
    test::TempSettings settings;
    QTemporaryDir dir;
    // A hundred files per folder, as a web site's tree has them.
    QByteArray fls = "FTP_SERVER_FILE\n";
    for (int i = 0; i < count; ++i) {
        const QString folder = dir.filePath(QStringLiteral("folder%1").arg(i / 100));
        if (i % 100 == 0)
            QDir().mkpath(folder);
        const QString path = folder + QStringLiteral("/page%1.html").arg(i);
        QFile(path).open(QIODevice::WriteOnly);
        fls += QFile::encodeName(path) + '\n';
    }
    const QString flsFile = dir.filePath(QStringLiteral("site.fls"));
    QFile out(flsFile);
    if (!out.open(QIODevice::WriteOnly) || out.write(fls) != fls.size())
        return 1;
    out.close();

    AnsweringAll notifier;
    FileList list;
    QElapsedTimer timer;
    timer.start();
    list.loadServerFile(flsFile, {}, notifier);
    const qint64 loaded = timer.restart();
    const QString listFile = dir.filePath(QStringLiteral("flist.ini"));
    if (!list.save(listFile))
        return 1;
    const qint64 saved = timer.restart();
    FileList again;
    again.load(listFile);
    const qint64 read = timer.restart();
    std::vector<int> rows(again.entries().size());
    std::iota(rows.begin(), rows.end(), 0);
    again.remove(rows, notifier);
    const qint64 removed = timer.elapsed();
    std::printf("%d entries: .fls loaded in %lld ms, saved in %lld ms, read back in %lld ms "
                "(%zu entries), all removed in %lld ms\n",
        count, static_cast<long long>(loaded), static_cast<long long>(saved),
        static_cast<long long>(read), list.entries().size(), static_cast<long long>(removed));
    return list.entries().size() == std::size_t(count) ? 0 : 1;
}
