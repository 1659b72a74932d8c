#pragma once

#include <QString>

#include <chrono>

namespace zelto {

// How a connection reaches its server.
enum class AccessType {
    Preconfigured, // libcurl's own proxy environment (ftp_proxy, all_proxy, no_proxy)
    Direct, // no proxy, whatever the environment says
    Proxy, // an HTTP proxy, tunnelled, at ConnectionOptions::proxy
};

// The options of one connection, worked out from the settings when its session is made. A time-out
// of 0 is passed to libcurl as it is, where 0 means libcurl's own default (connect, reply) or no
// limit (data stall).
struct ConnectionOptions {
    std::chrono::milliseconds connectTimeout { 20000 };
    // The wait for a reply on the control connection.
    std::chrono::milliseconds replyTimeout { 20000 };
    // The data time-outs: how long a data connection may move nothing, or too little to count
    // (see "Stalled transfers" in CODING.md), before the transfer fails.
    std::chrono::milliseconds receiveStall { 20000 };
    std::chrono::milliseconds sendStall { 20000 };
    // Further attempts to connect after the first fails for a network reason; 0 = one attempt.
    int retries = 2;
    AccessType access = AccessType::Preconfigured;
    QString proxy; // "name:port", used with AccessType::Proxy
    bool passive = false;
};

// The server of a job and how to log in. The password goes to libcurl and nowhere else.
struct ServerLogin {
    QString host;
    quint16 port = 21;
    QString user;
    QString password;
};

} // namespace zelto
