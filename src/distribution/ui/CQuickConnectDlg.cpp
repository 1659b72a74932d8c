#include "CQuickConnectDlg.h"

#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace zelto {
namespace {

const QString kAnonymousUser = QStringLiteral("anonymous");

} // namespace

CQuickConnectDlg::CQuickConnectDlg(QWidget* parent)
    : QDialog(parent)
    , host_(new QLineEdit)
    , user_(new QLineEdit)
    , password_(new QLineEdit)
    , port_(new QSpinBox)
    , folder_(new QLineEdit)
    , anonymous_(new QCheckBox(tr("&Anonymous login")))
{
    setWindowTitle(tr("Quick Connect"));
    password_->setEchoMode(QLineEdit::Password);
    port_->setRange(1, 65535);
    auto* form = new QFormLayout(this);
    form->addRow(tr("&Host:"), host_);
    form->addRow(tr("&User:"), user_);
    form->addRow(tr("&Password:"), password_);
    form->addRow(tr("P&ort:"), port_);
    form->addRow(tr("Remote &folder:"), folder_);
    form->addRow(anonymous_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("&Connect"));
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(anonymous_, &QCheckBox::toggled, this, &CQuickConnectDlg::setAnonymous);
    connect(host_, &QLineEdit::textChanged, this, [buttons](const QString& host) {
        buttons->button(QDialogButtonBox::Ok)->setEnabled(!host.trimmed().isEmpty());
    });

    using namespace settings::ftp;
    JobSite last;
    last.server = SettingsStore::get(kQuickServer);
    last.user = SettingsStore::get(kQuickLogin);
    last.password = SettingsStore::get(kQuickPasswd);
    last.remoteFolder = SettingsStore::get(kQuickDirec);
    last.port = quint16(qBound(1, SettingsStore::get(kQuickPort).toInt(), 65535));
    setSite(last);
}

JobSite CQuickConnectDlg::site() const
{
    JobSite site;
    site.server = host_->text().trimmed();
    site.user = user_->text();
    site.password = password_->text();
    site.port = quint16(port_->value());
    site.remoteFolder = folder_->text().trimmed();
    return site;
}

void CQuickConnectDlg::setSite(const JobSite& site)
{
    host_->setText(site.server);
    user_->setText(site.user);
    password_->setText(site.password);
    port_->setValue(site.port);
    folder_->setText(site.remoteFolder);
    anonymous_->setChecked(site.user == kAnonymousUser);
}

void CQuickConnectDlg::setAnonymous(bool anonymous)
{
    if (anonymous) {
        user_->setText(kAnonymousUser);
        if (password_->text().isEmpty())
            password_->setText(QStringLiteral("zelto@"));
    }
    user_->setReadOnly(anonymous);
}

} // namespace zelto
