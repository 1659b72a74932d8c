// An unattended run on a desktop: a link's sites each show a transfer window, titled with the
// site's profile, a script shows its progress window, the main window never shows, and the run
// ends with the status a console run gives.

#include "DataFiles.h"
#include "DistributionFixture.h"
#include "app/CommandLine.h"
#include "app/ui/WindowedRun.h"
#include "distribution/ui/CTransferDlg.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "scripts/ui/CScriptProgressDlg.h"
#include "settings/DataFolders.h"

#include <QApplication>

namespace zelto::test {
namespace {

// The title of every window shown while it is installed, by the window's class.
class ShownWindows final : public QObject {
public:
    ShownWindows() { qApp->installEventFilter(this); }
    ~ShownWindows() override { qApp->removeEventFilter(this); }
    ShownWindows(const ShownWindows&) = delete;
    ShownWindows& operator=(const ShownWindows&) = delete;

    std::vector<std::pair<QString, QString>> shown; // class, title

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && watched->isWidgetType()
            && static_cast<QWidget*>(watched)->isWindow())
            shown.emplace_back(QString::fromLatin1(watched->metaObject()->className()),
                static_cast<QWidget*>(watched)->windowTitle());
        return false;
    }
};

using UnattendedWindowsTest = DistributionFixture;

TEST_F(UnattendedWindowsTest, LinkAndScriptShowTheirWindowsAndEndWithTheirStatus)
{
    writeLinkOf(QStringLiteral("both"), { 0, 1 });
    const QString good = local_.path() + QStringLiteral("/good.cmd");
    const QString bad = local_.path() + QStringLiteral("/bad.cmd");
    writeFile(good, "/ nothing to do\n");
    writeFile(bad, "# not a command\n");

    const QString putTo = StringTable::text(ids::kTitlePutTo) + FtpServer::host();
    const struct {
        const char* what;
        StartRequest request;
        int status;
        std::vector<std::pair<QString, QString>> windows;
    } cases[] = {
        { "a link", CommandLineParser::parse({ "-l", "both" }), 0,
            { { "zelto::CTransferDlg", putTo + QStringLiteral(" (site0)") },
                { "zelto::CTransferDlg", putTo + QStringLiteral(" (site1)") } } },
        { "a script", CommandLineParser::parse({ "-b", good }), 0,
            { { "zelto::CScriptProgressDlg", QStringLiteral("Script good.cmd") } } },
        { "a script with a failed line", CommandLineParser::parse({ "-b", bad }), 1,
            { { "zelto::CScriptProgressDlg", QStringLiteral("Script bad.cmd") } } },
    };
    for (const auto& c : cases) {
        const ShownWindows windows;
        EXPECT_EQ(WindowedRun::runWindows(c.request), c.status) << c.what;
        EXPECT_EQ(windows.shown, c.windows) << c.what;
    }
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(served(i));
}

} // namespace
} // namespace zelto::test
