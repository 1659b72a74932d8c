#pragma once

#include "ServerProcess.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace zelto::test {

[[nodiscard]] inline sockaddr_in loopback(quint16 port)
{
    sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// A loopback port that refuses connections: bound, never listening, for the object's lifetime.
// Once the object is gone, the port is free again for a moment.
class RefusingPort final {
public:
    RefusingPort()
    {
        auto address = loopback(0);
        socklen_t length = sizeof address;
        if (fd_ < 0 || ::bind(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0
            || ::getsockname(fd_, reinterpret_cast<sockaddr*>(&address), &length) != 0)
            fixtureError(QStringLiteral("cannot reserve a loopback port"));
        port_ = ntohs(address.sin_port);
    }
    ~RefusingPort() { ::close(fd_); }
    RefusingPort(const RefusingPort&) = delete;
    RefusingPort& operator=(const RefusingPort&) = delete;
    [[nodiscard]] quint16 port() const { return port_; }

private:
    int fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
    quint16 port_ = 0;
};

} // namespace zelto::test
