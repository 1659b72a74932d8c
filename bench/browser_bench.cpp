// Measures the remote half of the browser on a folder of many files on loopback: the listing
// alone (MLSD and its parse, on the engine's connection), and the whole step a user waits for,
// from choosing the folder to its rows on the list. Not a test.
//
//   zelto_bench_browser [ENTRIES]      (default 10000; run with QT_QPA_PLATFORM=offscreen)

#include "FtpServer.h"
#include "FtpTestKit.h"
#include "TempSettings.h"
#include "TestNotifier.h"
#include "TestWait.h"
#include "distribution/WorkerThreads.h"
#include "distribution/ui/CRemFilesView.h"
#include "distribution/ui/RemoteHalf.h"
#include "ftp/BrowserSession.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cstdio>

int main(int argc, char** argv)
{
    using namespace zelto;
    using namespace std::chrono_literals;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 10000;
    test::TempSettings settings;
    test::useDirectAccess();
    test::FtpServer server;
    const QString folder = server.home() + QStringLiteral("/many");
    QDir().mkpath(folder);
    for (int i = 0; i < count; ++i)
        QFile(folder + QStringLiteral("/file%1.html").arg(i)).open(QIODevice::WriteOnly);

    test::Recorder recorder;
    BrowserSession session(recorder.services, {});
    if (!session.connect(test::siteOf(server)).ok())
        return 1;
    QElapsedTimer timer;
    timer.start();
    const auto listed = session.list(QStringLiteral("/many"));
    const qint64 engine = timer.elapsed();
    if (!listed.ok() || listed.value.size() != count)
        return 1;

    WorkerThreads threads(0);
    test::TestNotifier notifier;
    RemoteHalf half(recorder.services, notifier, threads);
    half.resize(800, 600);
    half.show();
    half.connectTo(test::siteOf(server));
    if (!test::waitUntil([&] { return half.isConnected() && !half.isBusy(); }, 30s))
        return 1;
    timer.restart();
    half.openFolder(QStringLiteral("/many"));
    const bool shown = test::waitUntil(
        [&] { return !half.isBusy() && half.files()->rows().size() == std::size_t(count); }, 60s);
    const qint64 window = timer.elapsed();
    if (!shown)
        return 1;
    std::printf("%d entries: listed and parsed in %lld ms; on the list in %lld ms\n", count,
        static_cast<long long>(engine), static_cast<long long>(window));
    return 0;
}
