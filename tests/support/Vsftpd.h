#pragma once

#include "ServerProcess.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace zelto::test {

// A real vsftpd on a free loopback port, for the lifetime of the object.
//
// Setup: anonymous login only, chrooted into a temporary folder owned by root, with the writable
// folder "pub" (upload, mkdir, delete, rename) owned by "ftp", the system user that the anonymous
// sessions run as (the vsftpd package makes it). The configuration is generated in the temporary
// folder; nothing under /etc is read or changed. vsftpd needs root for the chroot and the change of
// user; run_as_launching_user would work without root, but it has no chroot, so "/" would be the
// machine's root instead of the test folder.
class Vsftpd final {
public:
    // Why vsftpd cannot run here (not installed, not root), for GTEST_SKIP.
    [[nodiscard]] static std::optional<QString> unavailableReason();

    // Throws std::runtime_error, with vsftpd's error output, when it does not start.
    Vsftpd();
    ~Vsftpd();
    Vsftpd(const Vsftpd&) = delete;
    Vsftpd& operator=(const Vsftpd&) = delete;

    [[nodiscard]] static QString host() { return QStringLiteral("127.0.0.1"); }
    [[nodiscard]] quint16 port() const { return port_; }
    [[nodiscard]] static QString user() { return QStringLiteral("anonymous"); }
    [[nodiscard]] static QString password() { return QStringLiteral("zelto@example.com"); }
    // The writable remote folder, relative to "/".
    [[nodiscard]] static QString uploadFolder() { return QStringLiteral("pub"); }
    // The local folder that clients see as "/".
    [[nodiscard]] QString root() const;

private:
    [[nodiscard]] bool start(quint16 port);

    QTemporaryDir dir_;
    std::unique_ptr<ServerProcess> process_;
    quint16 port_ = 0;
};

} // namespace zelto::test
