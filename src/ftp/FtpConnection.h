#pragma once

#include "ftp/ConnectionOptions.h"
#include "ftp/FtpResult.h"
#include "ftp/TransferType.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QString>

#include <curl/curl.h>

#include <functional>
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
// Text transfers are TYPE A with the bytes moved as they are: line ends are the caller's to
// convert (libcurl's own conversion is kept off, see perform()).
//
// A stop request (the worker's std::stop_token) ends any operation at the next libcurl callback.
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
    [[nodiscard]] bool isOpen() const { return open_; }
    // Logs out (QUIT) and drops the handle. A closed connection can be prepared again.
    void close();

    [[nodiscard]] const ConnectionOptions& options() const { return options_; }
    [[nodiscard]] const ServerLogin& login() const { return login_; }
    // The folder the login started in (the server's PWD), and the folder relative names are in.
    [[nodiscard]] QString entryFolder() const { return entryFolder_; }
    [[nodiscard]] QString currentFolder() const { return currentFolder_; }
    [[nodiscard]] QString absolutePath(const QString& path) const;
    [[nodiscard]] bool utf8Names() const { return utf8_; }

    [[nodiscard]] FtpResult changeFolder(const QString& folder);
    [[nodiscard]] FtpResult makeFolder(const QString& path);
    [[nodiscard]] FtpResult removeFolder(const QString& path);
    [[nodiscard]] FtpResult removeFile(const QString& path);
    [[nodiscard]] FtpResult rename(const QString& from, const QString& to);
    [[nodiscard]] FtpResult fileSize(const QString& path, qint64& size);
    [[nodiscard]] FtpResult printFolder(QString& folder);
    // The reply to the last single command.
    [[nodiscard]] const FtpReply& lastReply() const { return lastReply_; }

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
    // hands back their replies (empty on failure of the whole exchange).
    [[nodiscard]] FtpResult quote(const QByteArrayList& commands, std::vector<FtpReply>& replies);
    [[nodiscard]] FtpResult singleCommand(const QByteArray& verb, const QString& path, int okClass);
    [[nodiscard]] FtpResult checkedPath(const QString& path, QString& absolute) const;
    [[nodiscard]] QByteArray urlFor(const QString& absolute) const;
    [[nodiscard]] std::vector<FtpReply> replies() const;
    [[nodiscard]] bool abortRequested() const;

    [[nodiscard]] CURLcode run(CURL* handle);

    static size_t onHeader(char* data, size_t size, size_t count, void* self);
    static size_t onRead(char* buffer, size_t size, size_t count, void* self);
    static size_t onWrite(char* data, size_t size, size_t count, void* self);
    static int onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);

    ConnectionOptions options_;
    std::stop_token stop_;
    ServerLogin login_;
    CURL* handle_ = nullptr;
    // Owns the cached control connection while the handle is not running.
    CURLM* multi_ = nullptr;
    QByteArray baseUrl_; // "ftp://host:port/"
    QByteArray user_;
    QByteArray password_;
    QByteArray proxy_;
    char errorBuffer_[CURL_ERROR_SIZE] {};
    bool open_ = false;
    bool utf8_ = false;
    QString entryFolder_;
    QString currentFolder_;
    FtpReply lastReply_;

    // State of the operation under way, seen by the callbacks.
    QByteArrayList replyLines_;
    const ReadFunction* read_ = nullptr;
    const WriteFunction* write_ = nullptr;
    const AbortCheck* abort_ = nullptr;
    bool aborted_ = false;
    CURLcode lastCode_ = CURLE_OK;
    bool serverInText_ = false; // we may have left the server in TYPE A
};

} // namespace zelto
