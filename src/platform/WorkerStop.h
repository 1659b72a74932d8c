#pragma once

#include <stop_token>

namespace zelto {

// The stop request of the worker on the calling thread, for the waits deep in the engine that are
// handed no stop token (a question the notifier puts to the user). The worker threads set it as
// each worker starts; on any other thread it never stops.
[[nodiscard]] std::stop_token workerStop();
void setWorkerStop(std::stop_token stop);

} // namespace zelto
