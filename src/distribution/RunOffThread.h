#pragma once

#include "distribution/WorkerThreads.h"

#include <QCoreApplication>
#include <QPointer>

#include <memory>
#include <type_traits>
#include <utility>

namespace zelto {

// Calls `call` on the thread of the application object, from its event loop, unless `context`
// has gone by then. `context` lives on that thread; the call may be posted from any thread.
template <typename Call> void postWhileAlive(QPointer<QObject> context, Call call)
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [context = std::move(context), call = std::move(call)]() mutable {
            if (context)
                call();
        },
        Qt::QueuedConnection);
}

// Runs `work` on a worker of `threads` and hands what it returns to `deliver` as postWhileAlive
// does: the window or run that starts slow work never blocks on it, and never hears of it once
// it has gone. Called on the thread of `context`.
template <typename Work, typename Deliver>
void runOffThread(WorkerThreads& threads, QObject* context, Work work, Deliver deliver)
{
    using Result = std::invoke_result_t<Work&>;
    threads.launch([guard = QPointer<QObject>(context), work = std::move(work),
                       deliver = std::move(deliver)](std::stop_token) mutable {
        auto result = std::make_shared<Result>(work());
        // The guard is moved on, not copied: the worker then never holds a count of the
        // context's weak reference, whose last release would race with the context's end.
        postWhileAlive(std::move(guard),
            [deliver = std::move(deliver), result]() mutable { deliver(std::move(*result)); });
    });
}

} // namespace zelto
