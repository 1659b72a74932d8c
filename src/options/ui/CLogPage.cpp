#include "CLogPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace zelto {
namespace {

using namespace settings;

} // namespace

CLogPage::CLogPage(QWidget* parent)
    : COptionsPage(OptionPageKind::Log, QStringLiteral("options-log"), parent)
{
    auto* layout = new QVBoxLayout(this);
    auto* toScreen = new QCheckBox(tr("Log To &Screen"));
    bindCheck(toScreen, log::kToScreenPage.name, Checked::UnlessNo);
    layout->addWidget(toScreen);

    auto* view = new QGroupBox(tr("View"));
    auto* viewLayout = new QHBoxLayout(view);
    const std::vector<QRadioButton*> views { new QRadioButton(tr("&All")),
        new QRadioButton(tr("Su&ccessful")), new QRadioButton(tr("&Unsuccessful")) };
    for (QRadioButton* button : views)
        viewLayout->addWidget(button);
    bindChoice(views,
        { QString::fromLatin1(log::kViewAll), QString::fromLatin1(log::kViewSuccess),
            QString::fromLatin1(log::kViewUnsuccess) },
        log::kView.name);
    layout->addWidget(view);

    toFile_ = new QCheckBox(tr("Log to &file"));
    fileName_ = new QLineEdit;
    append_ = new QCheckBox(tr("A&ppend Between Sessions"));
    bindCheck(toFile_, log::kToFilePage.name, Checked::UnlessNo);
    bindText(fileName_, log::kFileName.name);
    bindCheck(append_, log::kAppendLog.name, Checked::UnlessNo);
    layout->addWidget(toFile_);
    auto* fileForm = new QFormLayout;
    fileForm->addRow(tr("File &Name:"), fileName_);
    fileName_->setToolTip(tr("Stored with the extension .log, in the Log Directory of the System "
                             "page"));
    layout->addLayout(fileForm);
    layout->addWidget(append_);
    connect(toFile_, &QCheckBox::toggled, this, [this](bool on) {
        fileName_->setEnabled(on);
        append_->setEnabled(on);
    });

    auto* stamps = new QGroupBox(tr("Log Timestamp Format"));
    auto* stampForm = new QFormLayout(stamps);
    auto* time = new QComboBox;
    time->addItems({ tr("hh:mm (hh: 0-23)"), tr("hh:mm:ss (hh: 0-23)"), tr("hh:mm am/pm"),
        tr("hh:mm:ss am/pm") });
    auto* date = new QComboBox;
    date->addItems({ tr("dd/mm/yy"), tr("mm/dd/yy"), tr("dd/mm"), tr("mm/dd"), tr("dd-mon-yy"),
        tr("mon-dd-yy"), tr("dd-mon"), tr("mon-dd") });
    stampForm->addRow(tr("&Time:"), time);
    stampForm->addRow(tr("&Date:"), date);
    bindIndex(time, log::kTimeFormat.name);
    bindIndex(date, log::kDateFormat.name);
    layout->addWidget(stamps);
    layout->addStretch();
}

void CLogPage::loaded()
{
    // First by "Log to file", then by "Append Between Sessions": the second decides.
    fileName_->setEnabled(toFile_->isChecked());
    fileName_->setEnabled(append_->isChecked());
    append_->setEnabled(toFile_->isChecked());
}

} // namespace zelto
