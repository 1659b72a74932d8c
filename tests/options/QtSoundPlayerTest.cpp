#include "options/ui/QtSoundPlayer.h"

#include "TestWait.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

namespace zelto {
namespace {

using namespace std::chrono_literals;

// Missing, empty and undecodable files, from the UI thread and from a worker, on a machine that
// may have no audio device at all: nothing crashes, nothing waits.
TEST(QtSoundPlayer, PlaysOrStaysSilentWithoutBlocking)
{
    int argc = 1;
    char name[] = "test_options_ui";
    char* argv[] = { name, nullptr };
    QCoreApplication app(argc, argv);
    QTemporaryDir dir;
    const QString bad = dir.filePath(QStringLiteral("bad.wav"));
    QFile file(bad);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("RIFF, but not a wave");
    file.close();

    {
        QtSoundPlayer player;
        for (const QString& path :
            { dir.filePath(QStringLiteral("missing.wav")), QString(), dir.path(), bad })
            player.playFile(path);
        std::jthread([&] { player.playFile(bad); }).join();
        // Queued behind the worker's request: once it runs, that request has run too.
        bool reached = false;
        QMetaObject::invokeMethod(
            &app, [&] { reached = true; }, Qt::QueuedConnection);
        EXPECT_TRUE(test::waitUntil([&] { return reached; }, 10s));
        player.playFile(bad); // and is destroyed while it may still be loading
    }
    QCoreApplication::processEvents();
}

} // namespace
} // namespace zelto
