#pragma once

#include <QString>

#include <chrono>

namespace zelto {

// An advisory lock that other processes honour: flock() on a hidden lock file beside the data
// file (".<name>.lock"). A data file is replaced by a rename on every write, so the lock cannot
// live on the data file itself. The lock file is never removed: removing it would let two
// processes lock two different files of the same name.
class FileLock final {
public:
    // Long enough for any honest writer of a data file; a holder that takes longer is stuck.
    static constexpr std::chrono::milliseconds kWait { 10'000 };

    // Waits up to `wait` for the lock of `dataFile`.
    explicit FileLock(const QString& dataFile, std::chrono::milliseconds wait = kWait);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    [[nodiscard]] bool held() const { return descriptor_ >= 0; }
    // Why the lock is not held, for the user.
    [[nodiscard]] const QString& failure() const { return failure_; }

    [[nodiscard]] static QString lockFileOf(const QString& dataFile);

private:
    int descriptor_ = -1;
    QString failure_;
};

} // namespace zelto
