#include "Vsftpd.h"

#include "RefusingPort.h"
#include "TestFiles.h"
#include "TestWait.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include <pwd.h>

namespace zelto::test {

namespace {

using namespace std::chrono_literals;

constexpr auto kStartDeadline = 10s;
constexpr int kPortAttempts = 5;
const QByteArray kBanner = "Zelto test vsftpd";
// Anonymous sessions run as this user (vsftpd's default ftp_username); vsftpd changes to its home
// folder before anon_root.
const char* const kSessionUser = "ftp";

QString vsftpdProgram()
{
    return QStandardPaths::findExecutable(QStringLiteral("vsftpd"),
        qEnvironmentVariable("PATH").split(u':') + QStringList { "/usr/sbin", "/usr/local/sbin" });
}

// True when our vsftpd greets on the port.
bool greets(quint16 port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    const auto address = loopback(port);
    const timeval wait { 2, 0 };
    ::setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &wait, sizeof wait);
    QByteArray reply(256, '\0');
    ssize_t received = -1;
    if (::connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        received = ::recv(fd, reply.data(), reply.size(), 0);
    ::close(fd);
    return received > 0 && reply.left(received).startsWith("220 " + kBanner);
}

QByteArray config(quint16 port, const QString& root, const QString& emptyDir)
{
    // Only what differs from vsftpd's defaults. isolate=NO: the network and PID namespaces are not
    // available in every container.
    return QStringLiteral(R"(listen=YES
listen_address=127.0.0.1
listen_port=%1
seccomp_sandbox=NO
isolate=NO
isolate_network=NO
secure_chroot_dir=%2
ftpd_banner=%3
anonymous_enable=YES
anon_root=%4
write_enable=YES
anon_upload_enable=YES
anon_mkdir_write_enable=YES
anon_other_write_enable=YES
anon_world_readable_only=NO
anon_umask=022
)")
        .arg(port)
        .arg(emptyDir, QLatin1String(kBanner), root)
        .toUtf8();
}

} // namespace

std::optional<QString> Vsftpd::unavailableReason()
{
    if (vsftpdProgram().isEmpty())
        return QStringLiteral("vsftpd is not installed (package vsftpd)");
    if (::geteuid() != 0)
        return QStringLiteral("vsftpd needs root to chroot its sessions into the test folder; "
                              "these tests run as uid %1")
            .arg(::geteuid());
    const auto* session = ::getpwnam(kSessionUser);
    if (!session || !QDir(QFile::decodeName(session->pw_dir)).exists())
        return QStringLiteral("vsftpd's anonymous sessions run as the user \"%1\", and this system "
                              "has no such user with a home folder")
            .arg(QLatin1String(kSessionUser));
    return std::nullopt;
}

Vsftpd::Vsftpd()
{
    if (const auto reason = unavailableReason())
        fixtureError(*reason);
    if (!dir_.isValid())
        fixtureError(QStringLiteral("cannot make a temporary folder: %1").arg(dir_.errorString()));
    // vsftpd refuses an anonymous root that its session user may write to: root owns "/", the
    // session user owns "pub". Every folder is 0755 whatever the umask, so that the session user
    // can reach "pub".
    const auto* session = ::getpwnam(kSessionUser);
    const auto pub = root() + QLatin1Char('/') + uploadFolder();
    const auto empty = dir_.filePath(QStringLiteral("empty"));
    const auto reachable = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadGroup
        | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    bool ready = QDir().mkpath(pub) && QDir().mkpath(empty)
        && ::chown(QFile::encodeName(pub).constData(), session->pw_uid, session->pw_gid) == 0;
    for (const auto& folder : { dir_.path(), root(), pub, empty })
        ready = ready && QFile::setPermissions(folder, reachable);
    if (!ready)
        fixtureError(QStringLiteral("cannot prepare the vsftpd folders in %1").arg(dir_.path()));

    // vsftpd must be told its port: one that was free a moment ago, which another process may
    // take first.
    for (int attempt = 0; attempt < kPortAttempts; ++attempt) {
        const quint16 port = RefusingPort().port(); // released before vsftpd binds it
        if (start(port))
            return;
    }
    fixtureError(QStringLiteral("vsftpd found no free port in %1 attempts").arg(kPortAttempts));
}

Vsftpd::~Vsftpd() = default;

QString Vsftpd::root() const
{
    return dir_.filePath(QStringLiteral("root"));
}

bool Vsftpd::start(quint16 port)
{
    const auto configFile = dir_.filePath(QStringLiteral("vsftpd.conf"));
    const auto errorFile = dir_.filePath(QStringLiteral("vsftpd.err"));
    writeFile(configFile, config(port, root(), dir_.filePath(QStringLiteral("empty"))));

    // vsftpd writes its fatal errors to descriptor 0 (the socket when run from inetd): give it
    // the error file there, opened for writing.
    process_ = std::make_unique<ServerProcess>(QStringLiteral("/bin/sh"),
        QStringList { QStringLiteral("-c"), QStringLiteral("exec \"$0\" \"$1\" 0<>\"$2\""),
            vsftpdProgram(), configFile, errorFile },
        errorFile);
    if (waitUntil([&] { return !process_->isRunning() || greets(port); }, kStartDeadline)
        && process_->isRunning()) {
        port_ = port;
        return true;
    }
    const auto what = process_->isRunning()
        ? QStringLiteral("did not greet within %1 s").arg(kStartDeadline.count())
        : QStringLiteral("ended");
    const auto errors = process_->errorOutput();
    process_.reset();
    if (errors.contains(QLatin1String("could not bind")))
        return false;
    fixtureError(
        QStringLiteral("vsftpd on port %1 %2; its error output:\n%3").arg(port).arg(what, errors));
}

} // namespace zelto::test
