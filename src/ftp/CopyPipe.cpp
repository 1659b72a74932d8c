#include "CopyPipe.h"

#include <algorithm>
#include <cstring>

namespace zelto {

CopyPipe::CopyPipe(qint64 capacity, std::chrono::milliseconds wait, std::stop_token stop)
    : capacity_(capacity), wait_(wait), stop_(std::move(stop))
{
}

bool CopyPipe::push(const char* data, qint64 size)
{
    std::unique_lock lock(mutex_);
    // A chunk larger than the whole buffer still goes in, alone.
    const bool ready = changed_.wait_for(lock, stop_, wait_,
        [&] { return abandoned_ || stored_ == 0 || stored_ + size <= capacity_; });
    if (stop_.stop_requested() || abandoned_)
        return false;
    if (!ready) {
        timedOut_ = true;
        return false;
    }
    chunks_.emplace_back(data, size);
    stored_ += size;
    changed_.notify_all();
    return true;
}

void CopyPipe::finish()
{
    std::lock_guard lock(mutex_);
    finished_ = true;
    changed_.notify_all();
}

void CopyPipe::fail()
{
    std::lock_guard lock(mutex_);
    failed_ = true;
    changed_.notify_all();
}

qint64 CopyPipe::pop(char* out, qint64 room)
{
    std::unique_lock lock(mutex_);
    const bool ready = changed_.wait_for(
        lock, stop_, wait_, [&] { return failed_ || stored_ > 0 || finished_; });
    if (stop_.stop_requested() || failed_)
        return -1;
    if (!ready) {
        timedOut_ = true;
        return -1;
    }
    qint64 taken = 0;
    while (taken < room && !chunks_.empty()) {
        const auto& chunk = chunks_.front();
        const qint64 count = std::min(room - taken, qint64(chunk.size()) - headAt_);
        std::memcpy(out + taken, chunk.constData() + headAt_, size_t(count));
        taken += count;
        headAt_ += count;
        if (headAt_ == chunk.size()) {
            chunks_.pop_front();
            headAt_ = 0;
        }
    }
    stored_ -= taken;
    changed_.notify_all();
    return taken; // 0 only once everything was taken and the producer finished
}

void CopyPipe::abandon()
{
    std::lock_guard lock(mutex_);
    abandoned_ = true;
    changed_.notify_all();
}

bool CopyPipe::timedOut() const
{
    std::lock_guard lock(mutex_);
    return timedOut_;
}

} // namespace zelto
