#include "JobProgress.h"

#include <algorithm>
#include <thread>

namespace zelto {
namespace {

constexpr auto kRelaxed = std::memory_order_relaxed;

} // namespace

void JobProgress::reset()
{
    setJobBytes(0, 0);
    setFileBytes(0, 0);
    setCountsUp(true);
    setJobBar(0);
    setFileBar(0);
    for (auto& text : texts_)
        text.store(QString());
}

void JobProgress::setJobBytes(qint64 done, qint64 total)
{
    jobDone_.store(done, kRelaxed);
    jobTotal_.store(total, kRelaxed);
}

void JobProgress::setFileBytes(qint64 done, qint64 total)
{
    fileDone_.store(done, kRelaxed);
    fileTotal_.store(total, kRelaxed);
}

void JobProgress::setCountsUp(bool countsUp)
{
    countsUp_.store(countsUp, kRelaxed);
}

bool JobProgress::countsUp() const
{
    return countsUp_.load(kRelaxed);
}

int JobProgress::barPosition(qint64 done, qint64 total) const
{
    const auto percent
        = total > 0 ? static_cast<int>(std::clamp<qint64>(done * 100 / total, 0, 100)) : 0;
    return countsUp() ? percent : 100 - percent;
}

void JobProgress::setJobBar(int position)
{
    jobBar_.store(position, kRelaxed);
}

void JobProgress::setFileBar(int position)
{
    fileBar_.store(position, kRelaxed);
}

void JobProgress::setText(Text which, const QString& text)
{
    texts_[static_cast<std::size_t>(which)].store(text);
}

JobProgress::Snapshot JobProgress::snapshot() const
{
    Snapshot snapshot;
    snapshot.jobDone = jobDone_.load(kRelaxed);
    snapshot.jobTotal = jobTotal_.load(kRelaxed);
    snapshot.fileDone = fileDone_.load(kRelaxed);
    snapshot.fileTotal = fileTotal_.load(kRelaxed);
    snapshot.jobBar = jobBar_.load(kRelaxed);
    snapshot.fileBar = fileBar_.load(kRelaxed);
    snapshot.countsUp = countsUp_.load(kRelaxed);
    for (std::size_t i = 0; i < kTextCount; ++i)
        snapshot.texts[i] = texts_[i].load();
    return snapshot;
}

void JobProgress::TextSlot::store(QString text)
{
    lock();
    text_.swap(text);
    unlock();
    // The previous text is released here, outside the lock.
}

QString JobProgress::TextSlot::load() const
{
    lock();
    QString copy = text_;
    unlock();
    return copy;
}

void JobProgress::TextSlot::lock() const
{
    while (busy_.test_and_set(std::memory_order_acquire)) {
        // The holder may have been descheduled: give it the processor instead of burning ours.
        while (busy_.test(std::memory_order_relaxed))
            std::this_thread::yield();
    }
}

void JobProgress::TextSlot::unlock() const
{
    busy_.clear(std::memory_order_release);
}

} // namespace zelto
