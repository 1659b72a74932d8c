#include "CFtpPage.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QVBoxLayout>

namespace zelto {
namespace {

using namespace settings;

// A time-out longer than an hour is a hung server, not a slow one.
constexpr int kLongestTimeOut = 3600;
constexpr int kMostRetries = 99;

} // namespace

CFtpPage::CFtpPage(QWidget* parent)
    : COptionsPage(OptionPageKind::Ftp, QStringLiteral("options-ftp"), parent)
{
    auto* layout = new QVBoxLayout(this);

    auto* anonymous = new QGroupBox(tr("Anonymous FTP Default Password"));
    auto* anonymousForm = new QFormLayout(anonymous);
    auto* email = new QLineEdit;
    anonymousForm->addRow(tr("User's &E-mail address:"), email);
    bindText(email, config::kEmail.name);
    layout->addWidget(anonymous);

    auto* form = new QFormLayout;
    struct Number {
        const char* label;
        IntKey key;
        int lowest;
        int highest;
    };
    const Number numbers[] = { { QT_TR_NOOP("Connection &Retries:"), ftp::kRetry, 0, kMostRetries },
        { QT_TR_NOOP("&Connection Time-Out (secs):"), ftp::kConnectTo, 1, kLongestTimeOut },
        { QT_TR_NOOP("Recei&ve Time-Out (Data) (secs):"), ftp::kRecTo, 1, kLongestTimeOut },
        { QT_TR_NOOP("&Send Time-Out (Data) (secs):"), ftp::kSendTo, 1, kLongestTimeOut },
        { QT_TR_NOOP("Receive Time-Out (Con&trol) (secs):"), ftp::kRecToCtrl, 1, kLongestTimeOut },
        { QT_TR_NOOP("Send Time-Out (Contro&l) (secs):"), ftp::kSendToCtrl, 1, kLongestTimeOut } };
    for (const Number& number : numbers) {
        auto* edit = new QLineEdit;
        form->addRow(tr(number.label), edit);
        bindNumber(edit, number.key.name, number.lowest, number.highest);
    }
    layout->addLayout(form);

    auto* cache = new QCheckBox(tr("C&ache Data"));
    auto* reload = new QCheckBox(tr("Reload &From Wire"));
    auto* passive = new QCheckBox(tr("&Passive mode (PASV/EPSV)"));
    passive->setToolTip(tr("Let the server open the data connections: needed behind most "
                           "firewalls and NAT routers"));
    bindCheck(cache, ftp::kCachePage.name);
    bindCheck(reload, ftp::kReload.name);
    bindCheck(passive, ftp::kPassive.name);
    for (QCheckBox* box : { cache, reload, passive })
        layout->addWidget(box);
    layout->addStretch();
}

} // namespace zelto
