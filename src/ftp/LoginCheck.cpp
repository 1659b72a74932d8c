#include "LoginCheck.h"

#include "ftp/ConnectionSettings.h"
#include "ftp/FtpConnection.h"

namespace zelto {

LoginCheck::Outcome LoginCheck::run(
    const ServerLogin& login, const QString& remoteFolder, std::stop_token stop)
{
    ConnectionOptions options;
    ConnectionSettings::readTimeouts(options);
    ConnectionSettings::readAccess(options);
    // A test answers once: retries would multiply the wait for a server that does not answer.
    options.retries = 0;
    FtpConnection connection(options, std::move(stop));
    if (FtpResult prepared = connection.prepare(login); !prepared.ok())
        return { Step::Login, prepared, {} };
    if (FtpResult opened = connection.open(); !opened.ok())
        return { Step::Login, opened, {} };
    if (!remoteFolder.isEmpty()) {
        if (FtpResult changed = connection.changeFolder(remoteFolder); !changed.ok()) {
            connection.close();
            return { Step::Folder, changed, {} };
        }
    }
    Outcome done { Step::Done, FtpResult::success(), connection.currentFolder() };
    connection.close();
    return done;
}

} // namespace zelto
