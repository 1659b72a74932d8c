#pragma once

#include "ftp/ConnectionOptions.h"
#include "ftp/FtpResult.h"
#include "ftp/RemoteListing.h"
#include "ftp/TransferType.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <curl/curl.h>

#include <functional>
#include <optional>
#include <stop_token>
#include <vector>

namespace zelto {

// One reply of the server: its code and its lines (without their line ends).
struct FtpReply {
    int code = 0;
    QString text;
};

// One FTP control connection and one login, on one libcurl easy handle that every operation of a
// job reuses. Not thread-safe: one thread uses it at a time.
//
// Folders: the connection keeps the current remote folder itself and addresses every file by its
// full path (CURLFTPMETHOD_NOCWD, so libcurl sends "RETR /pub/a.txt" and never changes folder on
// its own). A change of folder is checked on the server with CWD and PWD, and the folder the
// server confirms becomes the current one. Relative names are resolved against it here.
//
// Names go to the server in UTF-8; "OPTS UTF8 ON" is sent after the login when FEAT offers UTF8.
//
// Folders are listed with MLSD where the server's FEAT offers it (exact sizes and UTC times),
// otherwise with LIST, whose Unix and DOS lines are read as well as they can be.
//
// Text transfers are TYPE A with the bytes moved as they are: line ends are the caller's to
// convert (libcurl's own conversion is kept off, see perform()).
//
// A stop request (the worker's std::stop_token) ends any operation at the next libcurl callback.
//
// One login per connection: once the control connection has timed out or the server has dropped
// it, every later operation fails at once with the reason of that failure. libcurl would log in
// again silently for the next operation, and a stalled server would then cost every file of a job
// a login and a time-out of its own.
class FtpConnection final {
public:
    // Bytes for libcurl to send: fills `buffer` with up to `room` bytes and returns how many;
    // 0 ends the file, a negative count aborts the upload.
    using ReadFunction = std::function<qint64(char* buffer, qint64 room)>;
    // Bytes received: returns false to abort the download.
    using WriteFunction = std::function<bool(const char* data, qint64 size)>;
    // Asked between libcurl's steps: true aborts the operation under way.
    using AbortCheck = std::function<bool()>;

    // What libcurl moves per call of a read or write callback (measured against 256 KiB and
    // 64 KiB: fewer, larger calls were faster both ways); the configured read and write buffers
    // only shape the rounds of the pump.
    static constexpr long kCurlBufferSize = 1024 * 1024;

    explicit FtpConnection(ConnectionOptions options, std::stop_token stop = {});
    ~FtpConnection();
    FtpConnection(const FtpConnection&) = delete;
    FtpConnection& operator=(const FtpConnection&) = delete;

    // Makes the libcurl handle for `login` and checks the server's address and the proxy. Sends
    // nothing. Fails with 12001 (no handle), 12005 (address) or 12032 (proxy).
    [[nodiscard]] FtpResult prepare(const ServerLogin& login);
    // Connects and logs in, retrying a failed connect ConnectionOptions::retries times; notes the
    // entry folder and switches the server to UTF-8 names where it offers them.
    [[nodiscard]] FtpResult open();
    // Logged in and not closed since; a lost connection stays open until it is closed.
    [[nodiscard]] bool isOpen() const { return open_; }
    // Why the control connection was lost under the login (a time-out, a drop), or none.
    [[nodiscard]] const std::optional<FtpResult>& lost() const { return lost_; }
    // Logs out (QUIT) and drops the handle. A closed connection can be prepared again.
    void close();

    // The folder relative names are in: where the login started (the server's PWD) until a
    // change of folder.
    [[nodiscard]] QString currentFolder() const { return currentFolder_; }
    [[nodiscard]] QString absolutePath(const QString& path) const;

    [[nodiscard]] FtpResult changeFolder(const QString& folder);
    // The entries of `folder` (empty: the current folder), taken as they arrive. A reply past
    // RemoteListing's bounds is refused with kReplyNotParsed and says which bound it passed.
    [[nodiscard]] FtpValue<RemoteListing> list(const QString& folder);
    // Whether list() asks for MLSD; known after open().
    [[nodiscard]] bool listsWithMlsd() const { return mlsd_; }
    [[nodiscard]] FtpResult makeFolder(const QString& path);
    [[nodiscard]] FtpResult removeFolder(const QString& path);
    [[nodiscard]] FtpResult removeFile(const QString& path);
    [[nodiscard]] FtpResult rename(const QString& from, const QString& to);

    // Stores the bytes that `read` hands out as `path` (STOR). `size` is told to libcurl, -1 when
    // unknown. Aborted on purpose: 237.
    [[nodiscard]] FtpResult upload(const QString& path, TransferType type, qint64 size,
        const ReadFunction& read, const AbortCheck& abort = {});
    // Fetches `path` (RETR) into `write`, bytes as the server sends them. Aborted on purpose: 285.
    [[nodiscard]] FtpResult download(const QString& path, TransferType type,
        const WriteFunction& write, const AbortCheck& abort = {});

private:
    struct Request;

    [[nodiscard]] FtpResult perform(const Request& request);
    // Sends the commands, each prefixed with "*" so that a refusal keeps the connection, and
    // hands back their replies, one per command.
    [[nodiscard]] FtpValue<std::vector<FtpReply>> quote(const QByteArrayList& commands);
    [[nodiscard]] FtpResult singleCommand(const QByteArray& verb, const QString& path, int okClass);
    // The absolute form of a name that can go into a command.
    [[nodiscard]] FtpValue<QString> checkedPath(const QString& path) const;
    [[nodiscard]] QByteArray urlFor(const QString& absolute) const;
    [[nodiscard]] std::vector<FtpReply> replies() const;
    [[nodiscard]] bool abortRequested() const;
    // The server closed the control connection that libcurl keeps between operations (a "421"
    // notice, or the connection's end, is waiting on it).
    [[nodiscard]] bool controlConnectionDropped() const;

    [[nodiscard]] CURLcode run(CURL* handle);

    static size_t onHeader(char* data, size_t size, size_t count, void* self);
    static size_t onRead(char* buffer, size_t size, size_t count, void* self);
    static size_t onWrite(char* data, size_t size, size_t count, void* self);
    static int onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);

    ConnectionOptions options_;
    std::stop_token stop_;
    CURL* handle_ = nullptr;
    // Owns the cached control connection while the handle is not running.
    CURLM* multi_ = nullptr;
    QByteArray baseUrl_; // "ftp://host:port/"
    QByteArray user_;
    QByteArray password_;
    QByteArray proxy_;
    char errorBuffer_[CURL_ERROR_SIZE] {};
    bool open_ = false;
    std::optional<FtpResult> lost_;
    // The control connection libcurl keeps after the last operation; none when it closed it.
    curl_socket_t controlSocket_ = CURL_SOCKET_BAD;
    QString currentFolder_;

    // State of the operation under way, seen by the callbacks.
    QByteArrayList replyLines_;
    const ReadFunction* read_ = nullptr;
    const WriteFunction* write_ = nullptr;
    const AbortCheck* abort_ = nullptr;
    bool aborted_ = false;
    CURLcode lastCode_ = CURLE_OK;
    bool serverInText_ = false; // we may have left the server in TYPE A
    bool mlsd_ = false; // FEAT offered MLST, and so MLSD
};

} // namespace zelto
