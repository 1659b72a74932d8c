#include "ParallelStarter.h"

#include "distribution/WorkerThreads.h"

namespace zelto {

ParallelStarter::ParallelStarter(WorkerThreads& threads, std::size_t count, StartOne startOne,
    std::chrono::milliseconds interval)
    : threads_(threads), count_(count), startOne_(std::move(startOne))
{
    timer_.setInterval(interval);
    QObject::connect(&timer_, &QTimer::timeout, [this] { startNext(); });
}

ParallelStarter::~ParallelStarter()
{
    threads_.dropStopHook(this);
}

void ParallelStarter::start()
{
    if (finished())
        return;
    threads_.setStopHook(this, [this] { startTheRest(); });
    startNext();
    if (!finished())
        timer_.start();
}

void ParallelStarter::cancel()
{
    cancelled_ = true;
    timer_.stop();
    threads_.dropStopHook(this);
}

void ParallelStarter::startTheRest()
{
    while (!finished())
        startNext();
}

void ParallelStarter::startNext()
{
    if (finished())
        return;
    // Counted first: a start may cancel the rest (the program ending from inside it).
    const std::size_t index = started_++;
    if (finished()) {
        timer_.stop();
        threads_.dropStopHook(this);
    }
    startOne_(index);
}

} // namespace zelto
