#pragma once

#include <curl/curl.h>

namespace zelto {

// The library error codes that the engine produces, named for the message each one has in the
// string table (StringTable::errorMessage). A code is chosen for its message: what the user reads
// must say what happened.
namespace inet {
inline constexpr int kFirstCode = 12001;
inline constexpr int kLastCode = 12156;

inline constexpr int kOutOfHandles = 12001; // "No more handles could be generated at this time."
inline constexpr int kTimeout = 12002; // "The request has timed out."
inline constexpr int kServerError = 12003; // "An extended error was returned from the server."
inline constexpr int kInternalError = 12004; // "An internal error has occurred."
inline constexpr int kInvalidUrl = 12005; // "The URL is invalid."
inline constexpr int kUnknownScheme = 12006; // "The URL scheme could not be recognized ..."
inline constexpr int kNameNotResolved = 12007; // "The server name could not be resolved."
inline constexpr int kProtocolNotFound = 12008; // "The requested protocol could not be located."
inline constexpr int kInvalidOption = 12009; // "... specified an invalid option value."
inline constexpr int kUserNameRefused = 12013; // "... the supplied user name is incorrect."
inline constexpr int kLoginFailed = 12014; // "The request to connect to and log on ... failed."
inline constexpr int kInvalidOperation = 12015; // "The requested operation is invalid."
inline constexpr int kCancelled = 12016; // "The operation was canceled, ..."
inline constexpr int kCannotConnect = 12028; // "The attempt to connect to the server failed."
inline constexpr int kConnectionTerminated = 12029; // "... has been terminated."
inline constexpr int kConnectionReset = 12030; // "... has been reset."
inline constexpr int kTryAgain = 12031; // "Calls for the Win32 Internet function to redo ..."
inline constexpr int kInvalidProxyRequest = 12032; // "The request to the proxy was invalid."
inline constexpr int kOperationInProgress = 12098; // "... an operation is already in progress."
inline constexpr int kReplyNotParsed = 12129; // "The server response could not be parsed."
inline constexpr int kRedirectFailed = 12144; // "The redirection failed ..."
} // namespace inet

// What is known about a failed libcurl call besides its code.
struct CurlFailure {
    CURLcode code = CURLE_OK;
    // The system's error number of the last socket or file call (CURLINFO_OS_ERRNO), or 0.
    long osErrno = 0;
    // The server turned the user name down before it asked for a password.
    bool userNameRefused = false;
    // The code of the server's last error reply (4xx, 5xx), or 0.
    int errorReply = 0;
};

// The one library error code whose message says what happened in `failure`.
[[nodiscard]] int libraryErrorFor(const CurlFailure& failure);

// Whether the code stands for a refusal by the server, whose own reply is then the detail worth
// keeping (rather than libcurl's words).
[[nodiscard]] bool isServerRefusal(int libraryCode);

} // namespace zelto
