#include "FtpErrors.h"

#include <cerrno>

namespace zelto {

using namespace inet;

namespace {

int codeFor(const CurlFailure& failure)
{
    switch (failure.code) {
    case CURLE_OK:
        return 0;

    // The address or the set-up of the request.
    case CURLE_UNSUPPORTED_PROTOCOL:
        return kUnknownScheme;
    case CURLE_URL_MALFORMAT:
        return kInvalidUrl;
    case CURLE_NOT_BUILT_IN:
    case CURLE_LDAP_CANNOT_BIND:
    case CURLE_LDAP_SEARCH_FAILED:
    case CURLE_RTSP_CSEQ_ERROR:
    case CURLE_RTSP_SESSION_ERROR:
        return kProtocolNotFound;
    case CURLE_BAD_FUNCTION_ARGUMENT:
    case CURLE_UNKNOWN_OPTION:
    case CURLE_SETOPT_OPTION_SYNTAX:
        return kInvalidOption;
    case CURLE_BAD_DOWNLOAD_RESUME:
    case CURLE_FILESIZE_EXCEEDED:
        return kInvalidOperation;
    case CURLE_RECURSIVE_API_CALL:
        return kOperationInProgress;
    case CURLE_OUT_OF_MEMORY:
    case CURLE_NO_CONNECTION_AVAILABLE:
        return kOutOfHandles;

    // Finding and reaching the server.
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_FTP_CANT_GET_HOST: // the host of the data connection
        return kNameNotResolved;
    case CURLE_COULDNT_CONNECT:
    case CURLE_INTERFACE_FAILED:
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_USE_SSL_FAILED:
    case CURLE_SSL_CIPHER:
    case CURLE_QUIC_CONNECT_ERROR:
        return kCannotConnect;
    case CURLE_PROXY:
        return kInvalidProxyRequest;
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_FTP_ACCEPT_TIMEOUT: // the server never connected back in active mode
        return kTimeout;

    // Logging in.
    case CURLE_LOGIN_DENIED:
    case CURLE_TFTP_NOSUCHUSER:
        return failure.userNameRefused ? kUserNameRefused : kLoginFailed;
    case CURLE_FTP_WEIRD_PASS_REPLY:
    case CURLE_AUTH_ERROR:
        return kLoginFailed;

    // The server said no: its own reply is the detail.
    case CURLE_REMOTE_ACCESS_DENIED:
    case CURLE_FTP_ACCEPT_FAILED: // in active mode: an error reply came instead of the server
    case CURLE_FTP_COULDNT_SET_TYPE:
    case CURLE_FTP_COULDNT_RETR_FILE:
    case CURLE_QUOTE_ERROR:
    case CURLE_HTTP_RETURNED_ERROR:
    case CURLE_UPLOAD_FAILED:
    case CURLE_FTP_PORT_FAILED:
    case CURLE_FTP_COULDNT_USE_REST:
    case CURLE_RANGE_ERROR:
    case CURLE_REMOTE_DISK_FULL:
    case CURLE_REMOTE_FILE_EXISTS:
    case CURLE_REMOTE_FILE_NOT_FOUND:
    case CURLE_TFTP_NOTFOUND:
    case CURLE_TFTP_PERM:
    case CURLE_TFTP_ILLEGAL:
    case CURLE_FTP_PRET_FAILED:
        return kServerError;

    // The server said something we cannot read.
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_FTP_WEIRD_PASV_REPLY:
    case CURLE_FTP_WEIRD_227_FORMAT:
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_FTP_BAD_FILE_LIST:
        return kReplyNotParsed;

    // The connection broke.
    case CURLE_PARTIAL_FILE: // the data connection ended before the whole file
    case CURLE_GOT_NOTHING:
    case CURLE_SSL_SHUTDOWN_FAILED:
        return kConnectionTerminated;
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
        return failure.osErrno == ECONNRESET ? kConnectionReset : kConnectionTerminated;
    case CURLE_AGAIN:
        return kTryAgain;

    // Stopped on our side; the callers that stop on purpose put their own code in its place.
    case CURLE_ABORTED_BY_CALLBACK:
        return kCancelled;

    case CURLE_TOO_MANY_REDIRECTS:
        return kRedirectFailed;

    // Faults inside libcurl or of options we never use (TLS engines, HTTP/2 and /3, SSH, ...).
    default:
        return kInternalError;
    }
}

} // namespace

int libraryErrorFor(const CurlFailure& failure)
{
    const int code = codeFor(failure);
    // 421 closes the control connection, 426 the data connection: whatever libcurl made of the
    // reply, the connection ended.
    if (code == kServerError && (failure.errorReply == 421 || failure.errorReply == 426))
        return kConnectionTerminated;
    return code;
}

bool isServerRefusal(int libraryCode)
{
    return libraryCode == kServerError || libraryCode == kLoginFailed
        || libraryCode == kUserNameRefused;
}

} // namespace zelto
