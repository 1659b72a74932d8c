#include "CProxiesPage.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace zelto {
namespace {

using namespace settings;

constexpr int kHighestPort = 65535;

} // namespace

CProxiesPage::CProxiesPage(QWidget* parent)
    : COptionsPage(OptionPageKind::Proxies, QStringLiteral("options-proxies"), parent)
{
    auto* layout = new QVBoxLayout(this);
    auto* access = new QGroupBox(tr("Access"));
    auto* accessLayout = new QVBoxLayout(access);
    auto* direct = new QRadioButton(tr("&Direct Access"));
    auto* preconfigured = new QRadioButton(tr("P&re-configured Access"));
    auto* cern = new QRadioButton(tr("&CERN Proxy Access"));
    for (QRadioButton* button : { direct, preconfigured, cern })
        accessLayout->addWidget(button);
    bindChoice({ direct, preconfigured, cern },
        { QStringLiteral("DirectAccess"), QStringLiteral("PreconfigAccess"),
            QStringLiteral("ProxyAccess") },
        ftp::kAccessTypePage.name);
    layout->addWidget(access);

    auto* form = new QFormLayout;
    auto* name = new QLineEdit;
    auto* port = new QLineEdit;
    auto* proxyPort = new QLineEdit;
    form->addRow(tr("Proxy Server &Name:"), name);
    form->addRow(tr("FTP Default P&ort:"), port);
    form->addRow(tr("Proxy Port Nu&mber:"), proxyPort);
    bindText(name, ftp::kProxyName.name);
    bindNumber(port, ftp::kPort.name, 1, kHighestPort);
    bindNumber(proxyPort, ftp::kProxyPort.name, 1, kHighestPort);
    layout->addLayout(form);
    layout->addStretch();
}

} // namespace zelto
