#include "ParallelStarter.h"

namespace zelto {

ParallelStarter::ParallelStarter(
    std::size_t count, StartOne startOne, std::chrono::milliseconds interval)
    : count_(count), startOne_(std::move(startOne))
{
    timer_.setInterval(interval);
    QObject::connect(&timer_, &QTimer::timeout, [this] { startNext(); });
}

void ParallelStarter::start()
{
    if (finished())
        return;
    startNext();
    if (!finished())
        timer_.start();
}

void ParallelStarter::cancel()
{
    cancelled_ = true;
    timer_.stop();
}

void ParallelStarter::startNext()
{
    if (finished())
        return;
    // Counted first: a start may cancel the rest (the program ending from inside it).
    const std::size_t index = started_++;
    if (finished())
        timer_.stop();
    startOne_(index);
}

} // namespace zelto
