#pragma once

#include <QString>
#include <QtGlobal>

#include <array>
#include <atomic>
#include <cstddef>

namespace zelto {

// What a running job publishes for a window or a headless reporter, which reads it on a timer.
// The writer is the transfer pump, thousands of times a second: it never blocks on a reader.
// Numbers are relaxed atomics (display only; a reader may see a job total and a done count of
// slightly different moments). Every method is safe from any thread.
class JobProgress final {
public:
    // The texts of a job, in the order a window lays them out.
    enum class Text : std::size_t {
        JobBytes,
        JobRate,
        JobTimeLeft,
        FileBytes,
        FileRate,
        FileTimeLeft,
        LocalPath,
        RemotePath,
        Status,
    };
    static constexpr std::size_t kTextCount = static_cast<std::size_t>(Text::Status) + 1;

    struct Snapshot {
        qint64 jobDone = 0;
        qint64 jobTotal = 0;
        qint64 fileDone = 0;
        qint64 fileTotal = 0;
        int jobBar = 0; // 0..100
        int fileBar = 0; // 0..100
        bool countsUp = true;
        std::array<QString, kTextCount> texts;

        [[nodiscard]] const QString& text(Text which) const
        {
            return texts[static_cast<std::size_t>(which)];
        }
    };

    JobProgress() = default;
    JobProgress(const JobProgress&) = delete;
    JobProgress& operator=(const JobProgress&) = delete;

    // Back to the state of a new job: counts and bars 0, bars counting up, every text empty.
    void reset();

    void setJobBytes(qint64 done, qint64 total);
    void setFileBytes(qint64 done, qint64 total);

    // Bars rise from 0 to 100 when counting up, otherwise fall from 100 to 0.
    void setCountsUp(bool countsUp);
    [[nodiscard]] bool countsUp() const;
    // The bar position for `done` of `total` in the current direction: done x 100 / total (whole
    // percent), or 100 less that when counting down. With done 0 it is the start position; a
    // total of 0 or less also gives the start position.
    [[nodiscard]] int barPosition(qint64 done, qint64 total) const;
    void setJobBar(int position);
    void setFileBar(int position);

    void setText(Text which, const QString& text);

    [[nodiscard]] Snapshot snapshot() const;

private:
    std::atomic<qint64> jobDone_ { 0 };
    std::atomic<qint64> jobTotal_ { 0 };
    std::atomic<qint64> fileDone_ { 0 };
    std::atomic<qint64> fileTotal_ { 0 };
    std::atomic<int> jobBar_ { 0 };
    std::atomic<int> fileBar_ { 0 };
    std::atomic<bool> countsUp_ { true };
    // One text, swapped in whole, so a reader gets the old or the new text and never a mix. A spin
    // lock guards only a QString swap (writer) or a QString copy (reader): each is a pointer move
    // and at most a reference-count step, with nothing allocated or freed while held, so the
    // writer can wait at most those few instructions of a reader. Chosen over a seqlock because
    // paths have no fixed length and a seqlock over plain bytes is a data race in C++; chosen over
    // std::atomic<std::shared_ptr> because the GCC 12 library's load() leaves its lock with a
    // relaxed store, so it has a real data race on its own pointer (found by ThreadSanitizer).
    class TextSlot final {
    public:
        void store(QString text);
        [[nodiscard]] QString load() const;

    private:
        void lock() const;
        void unlock() const;

        mutable std::atomic_flag busy_;
        QString text_;
    };

    std::array<TextSlot, kTextCount> texts_;
};

} // namespace zelto
