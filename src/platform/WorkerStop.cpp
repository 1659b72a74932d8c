#include "WorkerStop.h"

#include <utility>

namespace zelto {
namespace {

thread_local std::stop_token thisWorkerStop;

} // namespace

std::stop_token workerStop()
{
    return thisWorkerStop;
}

void setWorkerStop(std::stop_token stop)
{
    thisWorkerStop = std::move(stop);
}

} // namespace zelto
