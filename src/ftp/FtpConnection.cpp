#include "FtpConnection.h"

#include "ftp/FtpErrors.h"
#include "ftp/ListingReader.h"
#include "platform/StringIds.h"

#include <QUrl>

#include <algorithm>
#include <memory>
#include <mutex>
#include <poll.h>
#include <utility>

namespace zelto {

struct FtpConnection::Request {
    QByteArray url;
    bool noBody = true;
    bool upload = false;
    TransferType type = TransferType::Binary;
    qint64 uploadSize = -1;
    // The listing command in place of LIST, for a URL that names a folder.
    const char* listCommand = nullptr;
    curl_slist* quote = nullptr;
    std::chrono::milliseconds stall { 0 };
    const ReadFunction* read = nullptr;
    const WriteFunction* write = nullptr;
    const AbortCheck* abort = nullptr;
    // The code of an operation that we aborted on purpose.
    int cancelCode = inet::kCancelled;
};

namespace {

// How long to wait for libcurl's sockets before the next perform, in milliseconds. The cap keeps
// a stop request prompt. libcurl 7.88 often returns from a perform (after the reply to EPSV)
// with no socket and no timer to wait on, and makes the data connection at the next perform, so
// that perform follows at once: even a 1 ms sleep there cost most files a millisecond, more on a
// busy machine. Only when the perform before left nothing to wait on as well (`idle`) does the
// shortest wait keep the loop from spinning.
int pollWait(CURLM* multi, bool& idle)
{
    constexpr long kCap = 20;
    long timeout = -1;
    if (curl_multi_timeout(multi, &timeout) == CURLM_OK && timeout == 0)
        return 0;
    fd_set read;
    fd_set write;
    fd_set except;
    FD_ZERO(&read);
    FD_ZERO(&write);
    FD_ZERO(&except);
    int highest = -1;
    if (curl_multi_fdset(multi, &read, &write, &except, &highest) == CURLM_OK && highest < 0)
        return std::exchange(idle, true) ? 1 : 0;
    idle = false;
    return int(timeout > 0 && timeout < kCap ? timeout : kCap);
}

using SList = std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)>;

// curl_global_init is not thread-safe and must run once before the first handle.
void initialiseCurl()
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

// libcurl takes these options in whole seconds; a part of a second counts as a whole one.
// The least a data connection must move, in bytes per second on average over the data time-out,
// or the transfer fails as timed out (libcurl's low-speed limit). A server that drips a byte now
// and then would otherwise hold a transfer or a listing for ever; any link still in use (a
// 2 kbit/s one) passes.
constexpr long kMinimumRate = 256;

long wholeSeconds(std::chrono::milliseconds time)
{
    return long((time.count() + 999) / 1000);
}

bool isTransientConnectFailure(CURLcode code)
{
    switch (code) {
    case CURLE_COULDNT_CONNECT:
    case CURLE_OPERATION_TIMEDOUT:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_WEIRD_SERVER_REPLY:
        return true;
    default:
        return false;
    }
}

// A name with control characters could end a command early and start another one.
bool hasControlCharacters(const QString& text)
{
    return std::any_of(text.begin(), text.end(),
        [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7f; });
}

// The folder of a 257 reply: the text between the first quote and its closing quote, where a
// doubled quote stands for one.
QString quotedFolder(const QString& reply)
{
    const auto open = reply.indexOf(u'"');
    if (open < 0)
        return {};
    QString folder;
    for (auto i = open + 1; i < reply.size(); ++i) {
        if (reply[i] != u'"') {
            folder += reply[i];
        } else if (i + 1 < reply.size() && reply[i + 1] == u'"') {
            folder += u'"';
            ++i;
        } else {
            return folder;
        }
    }
    return {};
}

int replyClass(const FtpReply& reply)
{
    return reply.code / 100;
}

// Commands for CURLOPT_QUOTE or CURLOPT_PREQUOTE; `mayFail` prefixes "*", so that a refusal
// neither fails the request nor closes the connection.
SList commandList(const QByteArrayList& commands, bool mayFail)
{
    curl_slist* list = nullptr;
    for (const auto& command : commands)
        list = curl_slist_append(list, ((mayFail ? "*" : "") + command).constData());
    return SList(list, &curl_slist_free_all);
}

} // namespace

FtpConnection::FtpConnection(ConnectionOptions options, std::stop_token stop)
    : options_(std::move(options)), stop_(std::move(stop))
{
    initialiseCurl();
}

FtpConnection::~FtpConnection()
{
    close();
}

FtpResult FtpConnection::prepare(const ServerLogin& login)
{
    close();
    QUrl url;
    url.setScheme(QStringLiteral("ftp"));
    url.setHost(login.host, QUrl::StrictMode);
    url.setPort(login.port);
    if (login.host.isEmpty() || !url.isValid() || url.host().isEmpty())
        return FtpResult::failure(inet::kInvalidUrl, login.host);
    baseUrl_ = url.toEncoded() + '/';
    // libcurl's own parser has the last word on the address.
    CURLU* parsed = curl_url();
    const bool accepted
        = parsed && curl_url_set(parsed, CURLUPART_URL, baseUrl_.constData(), 0) == CURLUE_OK;
    curl_url_cleanup(parsed);
    if (!accepted)
        return FtpResult::failure(inet::kInvalidUrl, login.host);

    proxy_.clear();
    if (options_.access == AccessType::Proxy) {
        const auto host = options_.proxy.section(u':', 0, 0);
        if (host.isEmpty() || hasControlCharacters(options_.proxy))
            return FtpResult::failure(inet::kInvalidProxyRequest, options_.proxy);
        proxy_ = options_.proxy.toUtf8();
    }

    handle_ = curl_easy_init();
    if (!handle_)
        return FtpResult::failure(inet::kOutOfHandles);
    user_ = login.user.toUtf8();
    password_ = login.password.toUtf8();

    auto* h = handle_;
    curl_easy_setopt(h, CURLOPT_ERRORBUFFER, errorBuffer_);
    curl_easy_setopt(h, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(h, CURLOPT_USERNAME, user_.constData());
    curl_easy_setopt(h, CURLOPT_PASSWORD, password_.constData());
    curl_easy_setopt(h, CURLOPT_FTP_FILEMETHOD, long(CURLFTPMETHOD_NOCWD));
    curl_easy_setopt(h, CURLOPT_FTPPORT, options_.passive ? nullptr : "-");
    curl_easy_setopt(h, CURLOPT_CONNECTTIMEOUT_MS, long(options_.connectTimeout.count()));
    // The wait for the server to connect back in active mode is a connect, too.
    curl_easy_setopt(h, CURLOPT_ACCEPTTIMEOUT_MS, long(options_.connectTimeout.count()));
    curl_easy_setopt(h, CURLOPT_SERVER_RESPONSE_TIMEOUT, wholeSeconds(options_.replyTimeout));
    curl_easy_setopt(h, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(h, CURLOPT_BUFFERSIZE, kCurlBufferSize);
    curl_easy_setopt(h, CURLOPT_UPLOAD_BUFFERSIZE, kCurlBufferSize);
    curl_easy_setopt(h, CURLOPT_HEADERFUNCTION, &FtpConnection::onHeader);
    curl_easy_setopt(h, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(h, CURLOPT_READFUNCTION, &FtpConnection::onRead);
    curl_easy_setopt(h, CURLOPT_READDATA, this);
    curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, &FtpConnection::onWrite);
    curl_easy_setopt(h, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(h, CURLOPT_XFERINFOFUNCTION, &FtpConnection::onProgress);
    curl_easy_setopt(h, CURLOPT_XFERINFODATA, this);
    curl_easy_setopt(h, CURLOPT_NOPROGRESS, 0L);
    switch (options_.access) {
    case AccessType::Preconfigured:
        break; // libcurl reads ftp_proxy, all_proxy and no_proxy itself
    case AccessType::Direct:
        curl_easy_setopt(h, CURLOPT_NOPROXY, "*");
        break;
    case AccessType::Proxy:
        curl_easy_setopt(h, CURLOPT_PROXY, proxy_.constData());
        curl_easy_setopt(h, CURLOPT_PROXYTYPE, long(CURLPROXY_HTTP));
        curl_easy_setopt(h, CURLOPT_HTTPPROXYTUNNEL, 1L);
        break;
    }
    return FtpResult::success();
}

FtpResult FtpConnection::open()
{
    if (!handle_)
        return FtpResult::failure(inet::kInternalError, QStringLiteral("no connection prepared"));
    FtpValue<std::vector<FtpReply>> features;
    for (int attempt = 0;; ++attempt) {
        features = quote({ "FEAT" });
        if (features.ok() || attempt >= options_.retries || !isTransientConnectFailure(lastCode_)
            || stop_.stop_requested())
            break;
    }
    if (!features.ok())
        return features.result;

    const char* entry = nullptr;
    curl_easy_getinfo(handle_, CURLINFO_FTP_ENTRY_PATH, &entry);
    currentFolder_ = entry ? QString::fromUtf8(entry) : QString();
    open_ = true;

    const auto& feat = features.value.front();
    const auto offers = [&](QLatin1StringView feature) {
        if (replyClass(feat) != 2)
            return false;
        const auto lines = feat.text.split(u'\n');
        return std::any_of(lines.begin(), lines.end(), [&](const QString& line) {
            return line.section(u' ', 0, 0).compare(feature, Qt::CaseInsensitive) == 0;
        });
    };
    // RFC 3659: a server that offers MLST offers MLSD with it.
    mlsd_ = offers(QLatin1StringView("MLST"));
    const auto offered = offers(QLatin1StringView("UTF8"));
    // A server that refuses the switch keeps its own names; only a failed exchange counts.
    if (offered)
        return quote({ "OPTS UTF8 ON" }).result;
    return FtpResult::success();
}

void FtpConnection::close()
{
    if (handle_)
        curl_easy_cleanup(handle_);
    // The control connection lives in the multi handle's cache: its clean-up sends QUIT, bounded
    // by the reply time-out.
    if (multi_)
        curl_multi_cleanup(multi_);
    handle_ = nullptr;
    multi_ = nullptr;
    open_ = false;
    mlsd_ = false;
    lost_.reset();
    controlSocket_ = CURL_SOCKET_BAD;
}

QString FtpConnection::absolutePath(const QString& path) const
{
    if (path.startsWith(u'/') || currentFolder_.isEmpty())
        return path;
    return currentFolder_.endsWith(u'/') ? currentFolder_ + path : currentFolder_ + u'/' + path;
}

FtpResult FtpConnection::changeFolder(const QString& folder)
{
    const auto checked = checkedPath(folder);
    if (!checked.ok())
        return checked.result;
    const QString& target = checked.value;
    const auto quoted = quote({ "CWD " + target.toUtf8(), "PWD" });
    if (!quoted.ok())
        return quoted.result;
    const auto& replies = quoted.value;
    if (replyClass(replies.front()) != 2)
        return FtpResult::failure(inet::kServerError, replies.front().text);
    const auto confirmed
        = replyClass(replies.back()) == 2 ? quotedFolder(replies.back().text) : QString();
    currentFolder_ = confirmed.isEmpty() ? target : confirmed;
    return FtpResult::success();
}

FtpValue<RemoteListing> FtpConnection::list(const QString& folder)
{
    const QString wanted = !folder.isEmpty() ? folder
        : !currentFolder_.isEmpty()          ? currentFolder_
                                             : QStringLiteral(".");
    const auto checked = checkedPath(wanted);
    if (!checked.ok())
        return { checked.result };
    // A URL that ends in "/" is listed rather than fetched.
    const QString path = checked.value.endsWith(u'/') ? checked.value : checked.value + u'/';
    ListingReader reader(
        ListingParser(mlsd_ ? ListingParser::Format::Mlsd : ListingParser::Format::List,
            QDateTime::currentDateTimeUtc()),
        path);
    const WriteFunction write
        = [&](const char* data, qint64 size) { return reader.take(QByteArrayView(data, size)); };
    Request request;
    request.url = urlFor(path);
    request.noBody = false;
    request.listCommand = mlsd_ ? "MLSD" : nullptr;
    request.stall = options_.receiveStall;
    request.write = &write;
    const auto listed = perform(request);
    if (!reader.refusal().isEmpty())
        return { FtpResult::failure(inet::kReplyNotParsed, reader.refusal()) };
    if (!listed.ok())
        return { listed };
    return { listed, reader.finish() };
}

FtpResult FtpConnection::makeFolder(const QString& path)
{
    return singleCommand("MKD", path, 2);
}

FtpResult FtpConnection::removeFolder(const QString& path)
{
    return singleCommand("RMD", path, 2);
}

FtpResult FtpConnection::removeFile(const QString& path)
{
    return singleCommand("DELE", path, 2);
}

FtpResult FtpConnection::rename(const QString& from, const QString& to)
{
    const auto source = checkedPath(from);
    if (!source.ok())
        return source.result;
    const auto target = checkedPath(to);
    if (!target.ok())
        return target.result;
    const auto quoted = quote({ "RNFR " + source.value.toUtf8(), "RNTO " + target.value.toUtf8() });
    if (!quoted.ok())
        return quoted.result;
    const auto& replies = quoted.value;
    // A refused RNFR makes the RNTO fail too; the RNFR reply says why.
    const auto& failed = replyClass(replies.front()) != 3 ? replies.front() : replies.back();
    if (replyClass(replies.front()) != 3 || replyClass(replies.back()) != 2)
        return FtpResult::failure(inet::kServerError, failed.text);
    return FtpResult::success();
}

FtpResult FtpConnection::upload(const QString& path, TransferType type, qint64 size,
    const ReadFunction& read, const AbortCheck& abort)
{
    const auto target = checkedPath(path);
    if (!target.ok())
        return target.result;
    Request request;
    request.url = urlFor(target.value);
    request.noBody = false;
    request.upload = true;
    request.type = type;
    request.uploadSize = size;
    request.stall = options_.sendStall;
    request.read = &read;
    request.abort = abort ? &abort : nullptr;
    request.cancelCode = ids::kPutCanceled;
    return perform(request);
}

FtpResult FtpConnection::download(
    const QString& path, TransferType type, const WriteFunction& write, const AbortCheck& abort)
{
    const auto source = checkedPath(path);
    if (!source.ok())
        return source.result;
    Request request;
    request.url = urlFor(source.value);
    request.noBody = false;
    request.type = type;
    request.stall = options_.receiveStall;
    request.write = &write;
    request.abort = abort ? &abort : nullptr;
    request.cancelCode = ids::kGetCanceled;
    return perform(request);
}

FtpResult FtpConnection::perform(const Request& request)
{
    if (!handle_)
        return FtpResult::failure(inet::kInternalError, QStringLiteral("no connection prepared"));
    if (lost_)
        return *lost_;
    // libcurl would find the dropped connection dead and log in anew without a word.
    if (open_ && controlConnectionDropped()) {
        lost_ = FtpResult::failure(
            inet::kConnectionTerminated, QStringLiteral("the server closed the connection"));
        return *lost_;
    }
    auto* h = handle_;
    curl_easy_setopt(h, CURLOPT_URL, request.url.constData());
    curl_easy_setopt(h, CURLOPT_NOBODY, long(request.noBody));
    curl_easy_setopt(h, CURLOPT_UPLOAD, long(request.upload));
    curl_easy_setopt(h, CURLOPT_INFILESIZE_LARGE, curl_off_t(request.uploadSize));
    curl_easy_setopt(h, CURLOPT_QUOTE, request.quote);
    curl_easy_setopt(h, CURLOPT_CUSTOMREQUEST, request.listCommand);
    // The transfer type. With CURLOPT_TRANSFERTEXT libcurl would convert line ends itself, LF to
    // CRLF blindly on uploads and CRLF (and a lone CR) to LF on downloads. It is left off, so
    // libcurl moves bytes as they are and asks for TYPE I; the type we want is then sent just
    // before RETR or STOR, and the line ends are ours to convert. libcurl's own idea of the type
    // stays "I", so after a text transfer the next binary one sends TYPE I again. A text
    // download skips libcurl's SIZE (a converted file has another size, and servers refuse SIZE
    // in ASCII mode).
    const bool text = !request.noBody && request.type == TransferType::Text;
    const bool sendType = text || (!request.noBody && serverInText_);
    const auto type = commandList({ text ? "TYPE A" : "TYPE I" }, false);
    curl_easy_setopt(h, CURLOPT_PREQUOTE, sendType ? type.get() : nullptr);
    curl_easy_setopt(h, CURLOPT_IGNORE_CONTENT_LENGTH, long(text));
    if (text)
        serverInText_ = true;
    curl_easy_setopt(h, CURLOPT_LOW_SPEED_LIMIT, request.stall.count() > 0 ? kMinimumRate : 0L);
    curl_easy_setopt(h, CURLOPT_LOW_SPEED_TIME, wholeSeconds(request.stall));

    replyLines_.clear();
    errorBuffer_[0] = '\0';
    read_ = request.read;
    write_ = request.write;
    abort_ = request.abort;
    aborted_ = false;
    lastCode_ = run(h);
    read_ = nullptr;
    write_ = nullptr;
    abort_ = nullptr;
    curl_easy_setopt(h, CURLOPT_QUOTE, nullptr);
    curl_easy_setopt(h, CURLOPT_PREQUOTE, nullptr);

    if (lastCode_ == CURLE_OK) {
        if (sendType && !text)
            serverInText_ = false;
        return FtpResult::success();
    }
    if (aborted_ || stop_.stop_requested())
        return FtpResult::failure(request.cancelCode);

    const auto all = replies();
    const auto refusal = std::find_if(
        all.rbegin(), all.rend(), [](const FtpReply& reply) { return reply.code >= 400; });
    CurlFailure failure { lastCode_ };
    curl_easy_getinfo(h, CURLINFO_OS_ERRNO, &failure.osErrno);
    failure.userNameRefused = std::none_of(all.begin(), all.end(),
        [](const FtpReply& reply) { return reply.code == 331 || reply.code == 332; });
    failure.errorReply = refusal != all.rend() ? refusal->code : 0;
    const int code = libraryErrorFor(failure);
    QString detail;
    const bool closedByServer = failure.errorReply == 421 || failure.errorReply == 426;
    if (refusal != all.rend() && (isServerRefusal(code) || closedByServer))
        detail = refusal->text;
    // The error buffer holds stray words after a success, so it is read only here. libcurl
    // before 8.0 notes a false "sa_addr inet_ntop() failed" at every active-mode transfer, and
    // the buffer keeps that first note instead of the real reason.
    const QString buffered = QString::fromUtf8(errorBuffer_).trimmed();
    if (detail.isEmpty() && !buffered.startsWith(QLatin1String("sa_addr inet_ntop()")))
        detail = buffered;
    if (detail.isEmpty())
        detail = QString::fromUtf8(curl_easy_strerror(lastCode_));
    auto result = FtpResult::failure(code, detail);
    // The control connection timed out or broke (libcurl gives up on it), or the server closed
    // it with 421; a data connection that ended early (426) leaves it usable. Before the login
    // the connect's own retries decide.
    if (open_
        && (lastCode_ == CURLE_OPERATION_TIMEDOUT || lastCode_ == CURLE_SEND_ERROR
            || lastCode_ == CURLE_RECV_ERROR || lastCode_ == CURLE_GOT_NOTHING
            || failure.errorReply == 421))
        lost_ = result;
    return result;
}

// libcurl 7.88's easy perform can sit a whole second in poll() between the server's passive-mode
// reply and the connect of the data connection, waiting on nothing but its own wake-up: a second
// per file. Driven through a multi handle whose poll is capped at 20 ms it never stalls. The
// multi handle is kept, so the control connection and its login are reused from one call to
// the next.
CURLcode FtpConnection::run(CURL* handle)
{
    if (!multi_)
        multi_ = curl_multi_init();
    if (!multi_ || curl_multi_add_handle(multi_, handle) != CURLM_OK)
        return CURLE_OUT_OF_MEMORY;
    int running = 1;
    bool idle = false;
    CURLMcode state = CURLM_OK;
    while (state == CURLM_OK) {
        state = curl_multi_perform(multi_, &running);
        if (state != CURLM_OK || running == 0)
            break;
        if (const int wait = pollWait(multi_, idle); wait > 0)
            state = curl_multi_poll(multi_, nullptr, 0, wait, nullptr);
    }
    CURLcode result = state == CURLM_OK ? CURLE_OK : CURLE_OUT_OF_MEMORY;
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
        if (message->msg == CURLMSG_DONE && message->easy_handle == handle)
            result = message->data.result;
    }
    // Asked while the handle is in the multi handle, whose cache holds the connection.
    if (curl_easy_getinfo(handle, CURLINFO_ACTIVESOCKET, &controlSocket_) != CURLE_OK)
        controlSocket_ = CURL_SOCKET_BAD;
    curl_multi_remove_handle(multi_, handle);
    return result;
}

FtpValue<std::vector<FtpReply>> FtpConnection::quote(const QByteArrayList& commands)
{
    const auto list = commandList(commands, true);
    Request request;
    request.url = baseUrl_;
    request.quote = list.get();
    if (auto result = perform(request); !result.ok())
        return { result };
    // Nothing follows the quoted commands of a request without a body, so the last replies are
    // theirs.
    const auto all = this->replies();
    if (all.size() < size_t(commands.size()))
        return { FtpResult::failure(inet::kReplyNotParsed,
            QStringLiteral("no reply to %1").arg(QString::fromUtf8(commands.join(", ")))) };
    return { FtpResult::success(), { all.end() - commands.size(), all.end() } };
}

FtpResult FtpConnection::singleCommand(const QByteArray& verb, const QString& path, int okClass)
{
    const auto absolute = checkedPath(path);
    if (!absolute.ok())
        return absolute.result;
    const auto quoted = quote({ verb + ' ' + absolute.value.toUtf8() });
    if (!quoted.ok())
        return quoted.result;
    const auto& reply = quoted.value.front();
    if (replyClass(reply) != okClass)
        return FtpResult::failure(inet::kServerError, reply.text);
    return FtpResult::success();
}

FtpValue<QString> FtpConnection::checkedPath(const QString& path) const
{
    if (path.isEmpty() || hasControlCharacters(path))
        return { FtpResult::failure(inet::kInvalidUrl,
            path.isEmpty() ? QStringLiteral("no name given")
                           : QStringLiteral("a name with control characters")) };
    return { FtpResult::success(), absolutePath(path) };
}

QByteArray FtpConnection::urlFor(const QString& absolute) const
{
    // "%2F" keeps a leading "/": libcurl then sends the whole path as it stands.
    const bool rooted = absolute.startsWith(u'/');
    QByteArrayList segments;
    for (const auto& part : (rooted ? absolute.mid(1) : absolute).split(u'/'))
        segments.append(QUrl::toPercentEncoding(part));
    return baseUrl_ + (rooted ? QByteArray("%2F") : QByteArray()) + segments.join('/');
}

std::vector<FtpReply> FtpConnection::replies() const
{
    std::vector<FtpReply> all;
    FtpReply current;
    QStringList lines;
    int multiLine = 0; // the code of a multi-line reply under way
    for (const auto& raw : replyLines_) {
        const auto line = QString::fromUtf8(raw).trimmed();
        bool number = false;
        const int code = line.left(3).toInt(&number);
        const bool coded = number && line.size() >= 3 && code >= 100 && code < 600;
        const QChar separator = line.size() > 3 ? line[3] : u' ';
        if (!multiLine && !coded)
            continue; // not a reply line
        lines.append(line);
        if (!multiLine && coded && separator == u'-') {
            multiLine = code;
            continue;
        }
        if (multiLine && !(coded && code == multiLine && separator == u' '))
            continue;
        all.push_back({ coded ? code : multiLine, lines.join(u'\n') });
        lines.clear();
        multiLine = 0;
    }
    return all;
}

bool FtpConnection::abortRequested() const
{
    return stop_.stop_requested() || (abort_ && (*abort_)());
}

bool FtpConnection::controlConnectionDropped() const
{
    // None kept: libcurl closed it itself after an operation we aborted, and connects anew.
    if (controlSocket_ == CURL_SOCKET_BAD)
        return false;
    // Between operations the server has nothing to say on it but its farewell.
    pollfd control { controlSocket_, POLLIN, 0 };
    return ::poll(&control, 1, 0) > 0;
}

size_t FtpConnection::onHeader(char* data, size_t size, size_t count, void* self)
{
    static_cast<FtpConnection*>(self)->replyLines_.append(
        QByteArray(data, qsizetype(size * count)));
    return size * count;
}

size_t FtpConnection::onRead(char* buffer, size_t size, size_t count, void* self)
{
    auto* connection = static_cast<FtpConnection*>(self);
    if (!connection->read_ || connection->abortRequested()) {
        connection->aborted_ = true;
        return CURL_READFUNC_ABORT;
    }
    const auto got = (*connection->read_)(buffer, qint64(size * count));
    if (got < 0) {
        connection->aborted_ = true;
        return CURL_READFUNC_ABORT;
    }
    return size_t(got);
}

size_t FtpConnection::onWrite(char* data, size_t size, size_t count, void* self)
{
    auto* connection = static_cast<FtpConnection*>(self);
    const auto bytes = size * count;
    if (!connection->write_ || connection->stop_.stop_requested()
        || !(*connection->write_)(data, qint64(bytes))) {
        connection->aborted_ = true;
        return bytes == 0 ? 1 : 0; // any count other than `bytes` fails the download
    }
    return bytes;
}

int FtpConnection::onProgress(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    auto* connection = static_cast<FtpConnection*>(self);
    if (!connection->abortRequested())
        return 0;
    connection->aborted_ = true;
    return 1;
}

} // namespace zelto
