#include "FtpResult.h"

#include "ftp/FtpErrors.h"
#include "platform/StringTable.h"

#include <QDir>
#include <QFileDevice>

#include <cerrno>

namespace zelto {
namespace {

// Local file errors have no resource id, so their words live here.
QString localErrorText(LocalFileError error)
{
    switch (error) {
    case LocalFileError::FileNotFound:
        return QStringLiteral("The local file was not found");
    case LocalFileError::BadPath:
        return QStringLiteral("The local path is not valid");
    case LocalFileError::TooManyOpenFiles:
        return QStringLiteral("Too many files are open to open the local file");
    case LocalFileError::AccessDenied:
        return QStringLiteral("Access to the local file was denied");
    case LocalFileError::HardIo:
        return QStringLiteral("The local disk failed to read or write the file");
    case LocalFileError::DiskFull:
        return QStringLiteral("The local disk is full; the partial file is left as it is");
    case LocalFileError::EndOfFile:
        return QStringLiteral(
            "The local file ended before all its bytes were sent (it shrank after the job "
            "was built)");
    case LocalFileError::Generic:
        break;
    }
    return QStringLiteral("The local file could not be read or written");
}

bool isLocalError(int code)
{
    switch (LocalFileError(code)) {
    case LocalFileError::Generic:
    case LocalFileError::FileNotFound:
    case LocalFileError::BadPath:
    case LocalFileError::TooManyOpenFiles:
    case LocalFileError::AccessDenied:
    case LocalFileError::HardIo:
    case LocalFileError::DiskFull:
    case LocalFileError::EndOfFile:
        return true;
    }
    return false;
}

} // namespace

QString FtpResult::message() const
{
    if (ok())
        return {};
    if (isLocalError(code))
        return localErrorText(LocalFileError(code)) + QStringLiteral(": ") + detail;
    if (code >= inet::kFirstCode && code <= inet::kLastCode)
        return StringTable::errorMessage(code);
    return StringTable::text(code);
}

QString FtpResult::text() const
{
    const auto words = message().trimmed();
    if (isLocalError(code) || detail.isEmpty())
        return words;
    if (words.isEmpty())
        return detail;
    return words + u' ' + detail;
}

FtpResult FtpResult::localFailure(
    LocalFileError error, const QString& path, const QString& systemText)
{
    return { int(error),
        systemText.isEmpty() ? path : path + QStringLiteral(" (") + systemText + u')' };
}

FtpResult FtpResult::fileFailure(const QFileDevice& file, int errorNumber)
{
    // Qt reports a full disk as a resource error; the system's number tells the other cases.
    const auto kind = file.error() == QFileDevice::ResourceError ? LocalFileError::DiskFull
                                                                 : localErrorFor(errorNumber);
    // A write cut short by a full disk leaves no error on the file, only in errno.
    const auto words
        = file.error() != QFileDevice::NoError ? file.errorString() : qt_error_string(errorNumber);
    return localFailure(kind, QDir::toNativeSeparators(file.fileName()), words);
}

LocalFileError FtpResult::localErrorFor(int errorNumber)
{
    switch (errorNumber) {
    case ENOENT:
        return LocalFileError::FileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG:
    case EISDIR:
    case ELOOP:
        return LocalFileError::BadPath;
    case EMFILE:
    case ENFILE:
        return LocalFileError::TooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
        return LocalFileError::AccessDenied;
    case EIO:
        return LocalFileError::HardIo;
    case ENOSPC:
    case EDQUOT:
    case EFBIG: // a file-size limit: no more room for this file
        return LocalFileError::DiskFull;
    default:
        return LocalFileError::Generic;
    }
}

} // namespace zelto
