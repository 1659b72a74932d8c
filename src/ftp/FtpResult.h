#pragma once

#include <QString>

class QFileDevice;

namespace zelto {

// Failures of a local file. The numbers are the file-error causes that the transfer routines have
// always returned for the local side; they lie below every resource id and library error code, so
// a code alone tells which kind of failure it is.
enum class LocalFileError {
    Generic = 1,
    FileNotFound = 2,
    BadPath = 3,
    TooManyOpenFiles = 4,
    AccessDenied = 5,
    HardIo = 10,
    DiskFull = 13,
    EndOfFile = 14,
};

// The outcome of one FTP operation: 0, or a library error code (12001-12156), a local file error
// (LocalFileError) or a resource id used as a code (ids::kPutCanceled "FTP Put Canceled",
// ids::kGetCanceled "FTP Get Canceled"). The detail keeps what the code alone cannot say: the
// server's own reply, libcurl's words, or the local file and the system's words.
struct [[nodiscard]] FtpResult {
    int code = 0;
    QString detail;

    [[nodiscard]] bool ok() const { return code == 0; }

    // What happened, in the words of the string table; for a local file error our own words with
    // the file, since the system has no text for them. Empty for success and for a library code
    // without a text.
    [[nodiscard]] QString message() const;
    // The message and the detail on one line, for the log and for a file's failure text.
    [[nodiscard]] QString text() const;

    [[nodiscard]] static FtpResult success() { return {}; }
    [[nodiscard]] static FtpResult failure(int code, const QString& detail = {})
    {
        return { code, detail };
    }
    // `systemText` is the system's own description ("No space left on device").
    [[nodiscard]] static FtpResult localFailure(
        LocalFileError error, const QString& path, const QString& systemText);
    // The failure of the last operation on `file`, with `errorNumber` (errno) taken right after it.
    [[nodiscard]] static FtpResult fileFailure(const QFileDevice& file, int errorNumber);
    // The kind of failure for the system error number `errorNumber` of a local file operation.
    [[nodiscard]] static LocalFileError localErrorFor(int errorNumber);
};

// The outcome of an operation that finds something out: its result, and the value when the
// result is a success.
template <typename T> struct [[nodiscard]] FtpValue {
    FtpResult result;
    T value {};

    [[nodiscard]] bool ok() const { return result.ok(); }
};

} // namespace zelto
