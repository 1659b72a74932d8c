// Puts and gets one file through a transfer session and prints the wall time and the peak
// memory of the process. Not a test: run_transfer_bench.sh runs it beside curl and lftp.
//
//   zelto_bench_transfer --serve
//       starts a local vsftpd (root only), prints "PORT <port> ROOT <folder>" and serves until
//       standard input ends
//   zelto_bench_transfer --port N [--host H] [--user U] [--password P] [--active]
//                        [--read-buffer N] [--write-buffer N] (--put LOCAL | --get LOCAL) REMOTE

#include "TempSettings.h"
#include "Vsftpd.h"
#include "ftp/CTransferSession.h"
#include "ftp/JobProgress.h"
#include "ftp/JobServices.h"
#include "ftp/TransferRoutines.h"
#include "log/LogSink.h"
#include "options/SoundSink.h"
#include "platform/Notifier.h"
#include "platform/TrayIndicator.h"
#include "settings/SettingsStore.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <string>
#include <sys/resource.h>

namespace {

using namespace zelto;

// The job reports to nobody: only the transfer is measured.
class Quiet final : public LogSink, public SoundSink, public TrayIndicator, public Notifier {
public:
    void write(const LogEvent&) override { }
    void play(SoundEvent) override { }
    void setState(TrayState) override { }
    void showMessage(const QString& text, MessageIcon) override
    {
        std::cerr << text.toStdString() << '\n';
    }
    Answer ask(const Question&) override { return Answer::Cancelled; }
};

int serve()
{
    if (const auto reason = test::Vsftpd::unavailableReason()) {
        std::cerr << reason->toStdString() << '\n';
        return 2;
    }
    test::Vsftpd server;
    std::cout << "PORT " << server.port() << " ROOT " << server.root().toStdString() << std::endl;
    for (std::string line; std::getline(std::cin, line);) { }
    return 0;
}

long peakRssKiB()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

int usage()
{
    std::cerr << "usage: zelto_bench_transfer --serve\n"
                 "       zelto_bench_transfer --port N [--host H] [--user U] [--password P] "
                 "[--active] [--read-buffer N] [--write-buffer N] (--put LOCAL | --get LOCAL) "
                 "REMOTE\n";
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    auto args = app.arguments().mid(1);
    if (args == QStringList { "--serve" })
        return serve();

    JobSite site { QStringLiteral("127.0.0.1"), QStringLiteral("anonymous"),
        QStringLiteral("bench@example.com"), 0, {}, 0, {} };
    int readBuffer = 4096;
    int writeBuffer = 4096;
    bool passive = true;
    bool put = true;
    QString local;
    QString remote;
    while (!args.isEmpty()) {
        const auto option = args.takeFirst();
        const auto value = [&] { return args.isEmpty() ? QString() : args.takeFirst(); };
        if (option == "--host")
            site.server = value();
        else if (option == "--port")
            site.port = value().toUShort();
        else if (option == "--user")
            site.user = value();
        else if (option == "--password")
            site.password = value();
        else if (option == "--read-buffer")
            readBuffer = value().toInt();
        else if (option == "--write-buffer")
            writeBuffer = value().toInt();
        else if (option == "--active")
            passive = false;
        else if (option == "--put" || option == "--get") {
            put = option == "--put";
            local = value();
            remote = value();
        } else
            return usage();
    }
    if (site.port == 0 || local.isEmpty() || remote.isEmpty())
        return usage();

    // The bench's settings live in a temporary folder, never in the user's own.
    test::TempSettings settings;
    SettingsStore::set(settings::ftp::kAccessType, QStringLiteral("DirectAccess"));
    SettingsStore::set(settings::ftp::kPassive, passive ? "YES" : "NO");
    SettingsStore::set(settings::ftp::kReadBuffer, readBuffer);
    SettingsStore::set(settings::ftp::kWriteBuffer, writeBuffer);

    Quiet quiet;
    JobServices services { quiet, quiet, quiet, quiet };
    JobProgress progress;
    const qint64 size = put ? QFileInfo(local).size() : 0;
    site.totalBytes = size;
    CTransferSession session(services, &progress);
    const auto started = std::chrono::steady_clock::now();
    auto result = session.connectJob(site);
    if (result.ok()) {
        const auto jobStart = RunningTime::Clock::now();
        result = put
            ? putFile(session,
                { .from = local,
                    .to = remote,
                    .size = size,
                    .jobStart = jobStart,
                    .honourTransferType = false })
            : getFile(session,
                { .from = remote, .to = local, .jobStart = jobStart, .honourTransferType = false });
    }
    session.disconnectJob();
    const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - started;
    if (!result.ok()) {
        std::cerr << "failed: " << result.text().toStdString() << '\n';
        return 1;
    }
    std::printf("%s %lld bytes, buffers %d/%d: %.3f s, peak RSS %ld KiB\n", put ? "put" : "get",
        static_cast<long long>(put ? size : QFileInfo(local).size()), readBuffer, writeBuffer,
        wall.count(), peakRssKiB());
    return 0;
}
