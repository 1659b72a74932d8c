#pragma once

#include "FtpTestKit.h"

#include <QDir>

#include <memory>
#include <string>
#include <vector>

namespace zelto::test {

// One of the fixture servers, seen from both ends: its writable folder as a client names it, and
// where the server keeps that folder.
struct ServedFolder {
    std::string name;
    JobSite site;
    QString folder; // "/pub"
    QString disk;

    // A file of the folder as a transfer names it, relative to the login's folder.
    [[nodiscard]] QString remote(const QString& file) const { return folder.mid(1) + u'/' + file; }
    [[nodiscard]] QString stored(const QString& file) const { return disk + u'/' + file; }
};

// A test against pyftpdlib, and vsftpd where it can run, each serving a writable folder "/pub".
class BothServersTest : public FtpTest {
protected:
    BothServersTest() : FtpTest(2) { }
    void SetUp() override
    {
        FtpTest::SetUp();
        if (IsSkipped())
            return;
        const QString pub = QStringLiteral("/pub");
        pyftpd_ = std::make_unique<FtpServer>();
        ASSERT_TRUE(QDir().mkdir(pyftpd_->home() + pub));
        served_.push_back({ "pyftpdlib", siteOf(*pyftpd_), pub, pyftpd_->home() + pub });
        if (!Vsftpd::unavailableReason()) {
            vsftpd_ = std::make_unique<Vsftpd>();
            served_.push_back({ "vsftpd", siteOf(*vsftpd_), pub, vsftpd_->root() + pub });
        }
    }

    std::unique_ptr<FtpServer> pyftpd_;
    std::unique_ptr<Vsftpd> vsftpd_;
    std::vector<ServedFolder> served_;
};

} // namespace zelto::test
