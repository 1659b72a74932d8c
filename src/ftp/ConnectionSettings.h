#pragma once

#include "ftp/ConnectionOptions.h"

namespace zelto {

// The connection options as the FTP page of the settings sets them.
class ConnectionSettings final {
public:
    ConnectionSettings() = delete;

    // The connect, control and data time-outs (seconds in the settings) and the retry count.
    static void readTimeouts(ConnectionOptions& options);
    // The access type, the proxy and passive mode.
    static void readAccess(ConnectionOptions& options);
};

} // namespace zelto
