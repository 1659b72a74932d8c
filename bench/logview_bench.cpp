// Measures the log view with many records: 100,000 records written by four worker threads until
// all are shown, then refills of the view under each filter. Not a test.
//
//   zelto_bench_logview [records]
//       prints the wall time of each step; runs on the offscreen platform unless another one is
//       chosen, with its settings in a fresh temporary folder

#include "TempSettings.h"
#include "log/LogWriter.h"
#include "log/ui/CLogView.h"
#include "platform/ConsoleNotifier.h"
#include "platform/StringIds.h"
#include "settings/SettingsStore.h"

#include <QApplication>
#include <QElapsedTimer>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

using namespace zelto;

constexpr int kWriters = 4;
constexpr int kRefills = 5;

LogEvent eventOf(int writer, int i)
{
    LogEvent event;
    // Two successes for each failure, as a run with some refused transfers logs them.
    event.messageId = i % 3 == 2 ? ids::kLogFtpTransferFailed : ids::kLogFtpTransferComplete;
    event.field1 = QStringLiteral("ftp%1.example.org").arg(writer);
    event.field2 = QStringLiteral("/srv/www/file%1.html").arg(i);
    event.field3 = QStringLiteral("/home/me/site/file%1.html").arg(i);
    event.detail = i % 3 == 2 ? QStringLiteral("550 Permission denied.") : QString();
    return event;
}

double milliseconds(const QElapsedTimer& timer)
{
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const int records = argc > 1 ? std::max(kWriters, std::atoi(argv[1])) : 100'000;

    test::TempSettings settings;
    SettingsStore::set(settings::log::kToFile, QString::fromLatin1(settings::kNo));
    ConsoleNotifier notifier;
    LogWriter writer(notifier);
    CLogView view(writer, notifier);
    view.resize(1000, 600);
    view.show();
    int batches = 0;
    QObject::connect(view.model(), &QAbstractItemModel::rowsInserted, [&] { ++batches; });

    QElapsedTimer timer;
    timer.start();
    std::atomic<qint64> written { 0 };
    std::atomic<int> writing { kWriters };
    {
        std::vector<std::jthread> threads;
        for (int w = 0; w < kWriters; ++w) {
            threads.emplace_back([&, w] {
                for (int i = 0; i < records / kWriters; ++i)
                    writer.write(eventOf(w, i));
                if (--writing == 0)
                    written = timer.nsecsElapsed();
            });
        }
        while (view.model()->rowCount() < records / kWriters * kWriters)
            QCoreApplication::processEvents();
    }
    std::printf("%d records from %d threads: written in %.1f ms, all shown after %.1f ms, "
                "in %d batches\n",
        view.model()->rowCount(), kWriters, double(written) / 1e6, milliseconds(timer), batches);

    for (const LogFilter filter :
        { LogFilter::Successful, LogFilter::Unsuccessful, LogFilter::All }) {
        std::vector<double> times;
        for (int i = 0; i < kRefills; ++i) {
            view.setFilter(LogFilter::All == filter ? LogFilter::Successful : LogFilter::All);
            QCoreApplication::processEvents();
            timer.restart();
            view.setFilter(filter);
            // The refill counts only once the view has laid out and painted its new rows.
            QCoreApplication::processEvents();
            times.push_back(milliseconds(timer));
        }
        std::sort(times.begin(), times.end());
        std::printf("refill to %6d rows: median %.1f ms, min %.1f ms, max %.1f ms\n",
            view.model()->rowCount(), times[times.size() / 2], times.front(), times.back());
    }
    return 0;
}
