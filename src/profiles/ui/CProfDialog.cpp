#include "CProfDialog.h"

#include "distribution/RunOffThread.h"
#include "ftp/LoginCheck.h"
#include "platform/Paths.h"
#include "profiles/SiteProfile.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace zelto {

CProfDialog::CProfDialog(
    Notifier& notifier, ProfileEvents& events, WorkerThreads& threads, QWidget* parent)
    : QWidget(parent)
    , notifier_(notifier)
    , events_(events)
    , threads_(threads)
    , name_(new QLineEdit(this))
    , host_(new QLineEdit(this))
    , user_(new QLineEdit(this))
    , password_(new QLineEdit(this))
    , remotePath_(new QLineEdit(this))
    , description_(new QLineEdit(this))
    , port_(new QLineEdit(this))
    , anonymous_(new QCheckBox(tr("&Anonymous Login"), this))
    , ok_(new QPushButton(tr("OK"), this))
    , cancel_(new QPushButton(tr("Cancel"), this))
    , test_(new QPushButton(tr("&Test connection"), this))
    , hint_(new QLabel(this))
    , testResult_(new QLabel(this))
{
    password_->setEchoMode(QLineEdit::Password);
    port_->setInputMethodHints(Qt::ImhDigitsOnly);
    port_->setMaxLength(5);
    auto* fields = new QFormLayout;
    const std::pair<QString, QLineEdit*> rows[] = { { tr("Profile &Name:"), name_ },
        { tr("FTP &Server:"), host_ }, { tr("&Login:"), user_ }, { tr("Pass&word:"), password_ },
        { tr("Remote &Directory:"), remotePath_ }, { tr("D&escription:"), description_ },
        { tr("P&ort:"), port_ } };
    for (const auto& [label, field] : rows)
        fields->addRow(label, field);
    fields->addRow(QString(), anonymous_);

    ok_->setDefault(true);
    ok_->setObjectName(QStringLiteral("ok"));
    test_->setObjectName(QStringLiteral("test"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(test_);
    buttons->addStretch();
    buttons->addWidget(ok_);
    buttons->addWidget(cancel_);

    hint_->setWordWrap(true);
    hint_->setText(tr("Choose a profile to edit it, or make one with New Site (Ctrl+N)."));
    testResult_->setWordWrap(true);
    testResult_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    testResult_->setAccessibleName(tr("Test result"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(hint_);
    layout->addLayout(fields);
    layout->addLayout(buttons);
    layout->addWidget(testResult_);
    layout->addStretch();

    connect(anonymous_, &QCheckBox::clicked, this, [this](bool on) {
        takeTyped();
        form_.setAnonymous(on);
        show(form_.values());
    });
    connect(ok_, &QPushButton::clicked, this, &CProfDialog::ok);
    connect(cancel_, &QPushButton::clicked, this, &CProfDialog::cancel);
    connect(test_, &QPushButton::clicked, this, &CProfDialog::testConnection);
    for (QLineEdit* field : { name_, host_, user_, password_, remotePath_, description_, port_ })
        connect(field, &QLineEdit::returnPressed, this, &CProfDialog::ok);
    form_.clear();
    show(form_.values());
    updateState();
}

CProfDialog::~CProfDialog()
{
    // A test still waiting on its server ends at its next step; nobody hears of it.
    testStop_.request_stop();
}

void CProfDialog::setFolder(const QString& folder)
{
    if (folder == folder_)
        return;
    folder_ = folder;
    // The profile being edited is no longer in the list beside the form.
    if (form_.mode() == ProfileForm::Mode::Edit)
        cancel();
}

void CProfDialog::load(const QString& folder, const QString& fileName)
{
    folder_ = folder;
    form_.load(folder, fileName);
    show(form_.values());
    testResult_->clear();
    updateState();
}

QString CProfDialog::testResult() const
{
    return testResult_->text();
}

void CProfDialog::newSite()
{
    // A profile only looked at is left for the new one; one with changes typed is not.
    if (form_.mode() == ProfileForm::Mode::Edit) {
        const ProfileFormValues shown = form_.values();
        takeTyped();
        if (form_.values() != shown) {
            showTestResult(tr("Save or cancel the changes to %1 first.").arg(shown.name));
            return;
        }
        form_ = ProfileForm();
    }
    form_.newSite();
    show(form_.values());
    updateState();
    if (form_.mode() == ProfileForm::Mode::New)
        name_->setFocus();
}

void CProfDialog::ok()
{
    if (form_.mode() == ProfileForm::Mode::None)
        return;
    takeTyped();
    const QString file = joinPath(folder_, SiteProfile::fileNameFor(form_.values().name));
    if (!form_.ok(folder_, notifier_, events_))
        return;
    show(form_.values());
    testResult_->clear();
    updateState();
    Q_EMIT saved(folder_, file);
}

void CProfDialog::cancel()
{
    // The form leaves the profile: nothing is made or edited any more, so New Site works again.
    form_ = ProfileForm();
    form_.clear();
    show(form_.values());
    testResult_->clear();
    updateState();
}

void CProfDialog::testConnection()
{
    if (testing_)
        return;
    takeTyped();
    const ProfileFields& fields = form_.values().profile;
    bool portOk = false;
    const uint port = fields.port.toUInt(&portOk);
    if (fields.host.isEmpty()) {
        showTestResult(tr("Fill in the FTP server to test the connection."));
        return;
    }
    if (!portOk || port == 0 || port > 65535) {
        showTestResult(tr("The port must be a number from 1 to 65535."));
        return;
    }
    const ServerLogin login { fields.host, quint16(port), fields.user, fields.password };
    const QString folder = fields.remotePath;
    testing_ = true;
    updateState();
    showTestResult(tr("Logging in to %1...").arg(fields.host));
    testStop_ = threads_.launch(
        [guard = QPointer<QObject>(this), login, folder](std::stop_token stop) {
            const LoginCheck::Outcome outcome = LoginCheck::run(login, folder, std::move(stop));
            postWhileAlive(guard, [guard, outcome] {
                auto* form = static_cast<CProfDialog*>(guard.data());
                form->testing_ = false;
                form->updateState();
                switch (outcome.step) {
                case LoginCheck::Step::Login:
                    form->showTestResult(tr("The login failed: %1").arg(outcome.result.text()));
                    break;
                case LoginCheck::Step::Folder:
                    form->showTestResult(
                        tr("The login worked, but the remote directory could not be entered: %1")
                            .arg(outcome.result.text()));
                    break;
                case LoginCheck::Step::Done:
                    form->showTestResult(
                        tr("The login and the remote directory worked (%1).").arg(outcome.folder));
                    break;
                }
            });
        });
}

void CProfDialog::takeTyped()
{
    ProfileFormValues values = form_.values();
    values.name = name_->text();
    values.profile = { host_->text(), user_->text(), password_->text(), remotePath_->text(),
        description_->text(), port_->text() };
    values.anonymous = anonymous_->isChecked();
    form_.setValues(values);
}

void CProfDialog::show(const ProfileFormValues& values)
{
    name_->setText(values.name);
    host_->setText(values.profile.host);
    user_->setText(values.profile.user);
    password_->setText(values.profile.password);
    remotePath_->setText(values.profile.remotePath);
    description_->setText(values.profile.description);
    port_->setText(values.profile.port);
    anonymous_->setChecked(values.anonymous);
}

void CProfDialog::updateState()
{
    const bool working = form_.mode() != ProfileForm::Mode::None;
    hint_->setVisible(!working);
    for (QWidget* field : std::initializer_list<QWidget*> {
             host_, user_, password_, remotePath_, description_, port_, anonymous_, ok_, cancel_ })
        field->setEnabled(working);
    name_->setEnabled(working && form_.nameEditable());
    test_->setEnabled(working && !testing_);
}

void CProfDialog::showTestResult(const QString& text)
{
    testResult_->setText(text);
}

} // namespace zelto
