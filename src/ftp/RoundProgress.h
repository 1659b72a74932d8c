#pragma once

#include "ftp/RunningTime.h"

#include <QtGlobal>

#include <chrono>
#include <optional>

namespace zelto {

class SessionReporter;

// What one round of a transfer pump publishes: the job's and the file's bytes and bars every
// round, the bytes texts with them and the rates and times left every fifth round, and the
// running-time total.
//
// The texts are formatted at most once per kTextInterval: a window reads them about ten times a
// second, and formatting two texts per 4 KiB round cost more CPU than the whole transfer (0.9 s
// per GiB, measured), so a refresh in between could never be seen. The numbers and bars, which
// are plain atomics, follow every round, and finish() leaves the texts of the last round.
class RoundProgress final {
public:
    using Clock = RunningTime::Clock;
    static constexpr std::chrono::milliseconds kTextInterval { 40 };

    // Which running-time total the rounds add to.
    enum class Total { Transfer, Copy };

    // Without a job start there is no job rate, no job time left and no running time.
    RoundProgress(SessionReporter& reporter, qint64 fileSize,
        std::optional<Clock::time_point> jobStart, Total total,
        Clock::time_point fileStart = Clock::now());

    // The file's bar at its start position, its bytes at 0 and its rate and time left empty: the
    // figures of the file before must not stand under this one until its first texts are due.
    void start();
    // One round that moved `bytes`, ending at `now`.
    void round(qint64 bytes, Clock::time_point now = Clock::now());
    // The texts of the last round, whenever it was.
    void finish(Clock::time_point now = Clock::now());

    [[nodiscard]] qint64 moved() const { return moved_; }

private:
    void showBytes();
    void showRates(Clock::time_point now);

    SessionReporter& reporter_;
    qint64 fileSize_;
    std::optional<Clock::time_point> jobStart_;
    Clock::time_point fileStart_;
    RunningTime* runningTime_ = nullptr; // the job's, kept by the reporter
    Total total_;
    qint64 moved_ = 0;
    qint64 rounds_ = 0;
    std::optional<Clock::time_point> bytesShown_; // when the bytes texts were last formatted
    std::optional<Clock::time_point> ratesShown_;
    bool bytesPending_ = false; // rounds not yet in the texts
};

} // namespace zelto
