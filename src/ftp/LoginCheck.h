#pragma once

#include "ftp/ConnectionOptions.h"
#include "ftp/FtpResult.h"

#include <stop_token>

namespace zelto {

// Whether a site can be used, before anything is sent to it: one connect with the options of the
// FTP page (so its time-outs bound the wait), the login, the change to the remote folder, and
// the logout. Runs on a worker; nothing is logged or sounded, since no job runs.
class LoginCheck final {
public:
    enum class Step {
        Login, // the connect or the login failed
        Folder, // logged in, but the remote folder could not be entered
        Done, // both worked
    };
    struct Outcome {
        Step step = Step::Login;
        FtpResult result;
        // The folder the server confirmed, where the login started when none was given.
        QString folder;
    };

    [[nodiscard]] static Outcome run(
        const ServerLogin& login, const QString& remoteFolder, std::stop_token stop = {});
};

} // namespace zelto
