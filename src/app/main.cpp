// Zelto: an FTP client for distributing files to many sites.

#include "app/AppIdentity.h"
#include "app/CommandLine.h"
#include "app/HeadlessRun.h"
#include "app/ProgramInfo.h"
#include "app/ui/WindowedRun.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>

namespace {

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY")
        || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

void print(const QString& text)
{
    std::fputs(text.toLocal8Bit().constData(), stdout);
}

} // namespace

int main(int argc, char* argv[])
{
    QStringList parameters;
    for (int i = 1; i < argc; ++i)
        parameters << QString::fromLocal8Bit(argv[i]);

    // Answered before the command line is parsed, so they never count as flags.
    if (parameters.contains(QLatin1StringView("--help"))) {
        print(zelto::ProgramInfo::usage());
        return EXIT_SUCCESS;
    }
    if (parameters.contains(QLatin1StringView("--version"))) {
        print(zelto::ProgramInfo::versionLine() + u'\n');
        return EXIT_SUCCESS;
    }
    const bool headless
        = parameters.removeAll(QLatin1StringView("--headless")) > 0 || !hasDisplay();

    zelto::applyApplicationIdentity();
    const zelto::StartRequest request = zelto::CommandLineParser::parse(parameters);
    if (headless) {
        QCoreApplication app(argc, argv);
        return zelto::HeadlessRun::run(request);
    }
    return zelto::WindowedRun::run(argc, argv, request);
}
