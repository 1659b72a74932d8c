// Send Parallel and Send Serial from the multiple-put screen's two lists to fixture servers: the
// refusals, the wait window, the transfer windows and the files that reach every server.

#include "distribution/ui/MultiplePut.h"

#include "DataFiles.h"
#include "DistributionFixture.h"
#include "SilentPlayer.h"
#include "app/ProgramServices.h"
#include "distribution/ui/CFtpView.h"
#include "distribution/ui/CTransferDlg.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "profiles/ProfileStore.h"
#include "profiles/ui/CFileListView.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPointer>

namespace zelto::test {
namespace {

using namespace std::chrono_literals;

constexpr auto kDeadline = 30s;

class MultiplePutTest : public DistributionFixture {
protected:
    void SetUp() override
    {
        DistributionFixture::SetUp();
        if (IsSkipped())
            return;
        window_.resize(600, 400);
        QObject::connect(&put_, &MultiplePut::transferWindowOpened, [this](CTransferDlg* window) {
            // Where each window opened, and whether the one before was still there to follow.
            opened_.push_back({ window, window->pos(), waitWindow() != nullptr });
        });
    }

    // A profile for fixture server `index`.
    [[nodiscard]] QString profileOf(int index) const
    {
        const QString file = ProfileStore::root() + QStringLiteral("/site%1.ini").arg(index);
        writeProfile(file, *servers_[index]);
        return file;
    }
    void listAll()
    {
        sites_->addProfiles({ profileOf(0), profileOf(1) });
        files_->addPaths({ localPath(QStringLiteral("www")) });
    }
    // The wait window while it is shown.
    [[nodiscard]] static QDialog* waitWindow()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<QDialog*>(widget);
            const auto* label = dialog ? dialog->findChild<QLabel*>() : nullptr;
            if (dialog && dialog->isVisible() && label
                && label->text() == StringTable::text(ids::kSortingFiles))
                return dialog;
        }
        return nullptr;
    }

    struct Opened {
        QPointer<CTransferDlg> window;
        QPoint position;
        bool waitShown;
    };

    SilentPlayer player_;
    ProgramServices services_ { recorder_, player_ };
    QWidget window_;
    CFtpView* sites_ = new CFtpView(&window_);
    CFileListView* files_ = new CFileListView(recorder_, &window_);
    MultiplePut put_ { *sites_, *files_, services_.jobs(), services_.threads(), outcomes_ };
    std::vector<Opened> opened_;
};

// Which refusal comes first is the file set's; here, both sends refuse and stay available.
TEST_F(MultiplePutTest, RefusesWithoutSitesOrFiles)
{
    QObject::connect(&put_, &MultiplePut::transferWindowOpened,
        [](CTransferDlg*) { ADD_FAILURE() << "a transfer window opened"; });
    for (QAction* send : put_.actions()) {
        send->trigger();
        ASSERT_TRUE(waitUntil([&] { return !put_.preparing(); }, kDeadline));
        EXPECT_TRUE(send->isEnabled());
    }
    const std::pair<QString, MessageIcon> refusal { StringTable::text(ids::kNoTargetSites),
        MessageIcon::Stop };
    EXPECT_EQ(recorder_.messages(), std::vector({ refusal, refusal }));
}

TEST_F(MultiplePutTest, SendParallelOpensCascadingWindowsAndDeliversToEverySite)
{
    listAll();
    ASSERT_TRUE(waitUntil([&] { return !files_->adding(); }, kDeadline));
    // The first site's login is held back, so that its window is still open when the second
    // one follows it.
    servers_[0]->setFaults({ .stall = { { "PASS", 1500ms } } });

    put_.sendParallel();
    EXPECT_TRUE(put_.preparing());
    EXPECT_FALSE(put_.sendParallelAction()->isEnabled());
    EXPECT_FALSE(put_.sendSerialAction()->isEnabled());
    // Asked again while the first is being prepared: ignored.
    put_.sendParallel();
    ASSERT_TRUE(waitUntil([&] { return waitWindow() != nullptr; }, kDeadline));
    ASSERT_TRUE(waitUntil([&] { return opened_.size() == 2; }, kDeadline));

    EXPECT_FALSE(opened_[0].waitShown);
    ASSERT_TRUE(opened_[0].window) << "the first window closed before the second opened";
    EXPECT_EQ(opened_[1].position - opened_[0].position, CTransferDlg::kCascadeStep);
    ASSERT_TRUE(waitUntil([&] { return outcomes_.count() == 2; }, kDeadline));
    EXPECT_TRUE(served(0));
    EXPECT_TRUE(served(1));
    ASSERT_TRUE(waitUntil([&] { return !opened_[0].window && !opened_[1].window; }, kDeadline));
    EXPECT_EQ(opened_.size(), 2u);
    EXPECT_TRUE(put_.sendParallelAction()->isEnabled());
}

TEST_F(MultiplePutTest, SendSerialServesEverySiteFromOneWindow)
{
    listAll();
    // Sent while the dropped folder is still being added: the send waits for it.
    ASSERT_TRUE(files_->adding());
    put_.sendSerial();
    ASSERT_TRUE(waitUntil([&] { return outcomes_.count() == 2; }, kDeadline));
    ASSERT_EQ(opened_.size(), 1u);
    EXPECT_TRUE(served(0));
    EXPECT_TRUE(served(1));
    // One job walked the list in its order.
    const auto ended = outcomes_.sites();
    EXPECT_EQ(ended[0].site.port, servers_[0]->port());
    EXPECT_EQ(ended[1].site.port, servers_[1]->port());
    ASSERT_TRUE(waitUntil([&] { return !opened_[0].window; }, kDeadline));
}

} // namespace
} // namespace zelto::test
