#pragma once

#include <QByteArray>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <stop_token>

namespace zelto {

// The bounded buffer of a remote-to-remote copy: the download of the source pushes, the upload to
// the target (on a thread of its own) pops. Each side waits for the other at most `wait` at a
// time, and a stop request ends every wait at once.
class CopyPipe final {
public:
    CopyPipe(qint64 capacity, std::chrono::milliseconds wait, std::stop_token stop);

    // Producer: false when the consumer gave up, on a stop, or when no room came in time.
    [[nodiscard]] bool push(const char* data, qint64 size);
    // Producer: no more bytes will come.
    void finish();
    // Producer: the bytes that came are not the whole file; the consumer aborts.
    void fail();

    // Consumer: up to `room` bytes; 0 at the end; -1 when the producer failed, on a stop, or
    // when no bytes came in time.
    [[nodiscard]] qint64 pop(char* out, qint64 room);
    // Consumer: it will take no more bytes; the producer aborts.
    void abandon();

    // Whether a wait ran out of time, rather than the other side failing.
    [[nodiscard]] bool timedOut() const;

private:
    mutable std::mutex mutex_;
    std::condition_variable_any changed_;
    std::deque<QByteArray> chunks_;
    qint64 headAt_ = 0; // bytes of the first chunk already taken
    qint64 stored_ = 0;
    const qint64 capacity_;
    const std::chrono::milliseconds wait_;
    std::stop_token stop_;
    bool finished_ = false;
    bool failed_ = false;
    bool abandoned_ = false;
    bool timedOut_ = false;
};

} // namespace zelto
