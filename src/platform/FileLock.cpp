#include "platform/FileLock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace zelto {

FileLock::FileLock(const QString& dataFile, std::chrono::milliseconds wait)
{
    const QString path = lockFileOf(dataFile);
    const int descriptor = ::open(
        QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0) {
        failure_ = QStringLiteral("Could not open the lock file %1: %2")
                       .arg(path, QString::fromLocal8Bit(std::strerror(errno)));
        return;
    }
    // Polled rather than blocking, so that the wait has an end; the pause grows from 1 ms so that
    // a short update of another process costs little, up to 50 ms so that a long wait costs no CPU.
    const auto deadline = std::chrono::steady_clock::now() + wait;
    std::chrono::milliseconds pause { 1 };
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        const int error = errno;
        if ((error != EWOULDBLOCK && error != EINTR)
            || std::chrono::steady_clock::now() >= deadline) {
            failure_ = error == EWOULDBLOCK
                ? QStringLiteral("Another program held %1 for more than %2 seconds")
                      .arg(path)
                      .arg(wait.count() / 1000.0)
                : QStringLiteral("Could not lock %1: %2")
                      .arg(path, QString::fromLocal8Bit(std::strerror(error)));
            ::close(descriptor);
            return;
        }
        std::this_thread::sleep_for(pause);
        pause = std::min(pause * 2, std::chrono::milliseconds(50));
    }
    descriptor_ = descriptor;
}

FileLock::~FileLock()
{
    // Closing the descriptor releases the lock.
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

QString FileLock::lockFileOf(const QString& dataFile)
{
    const QFileInfo info(dataFile);
    return info.dir().filePath(u'.' + info.fileName() + QStringLiteral(".lock"));
}

} // namespace zelto
