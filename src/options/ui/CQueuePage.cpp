#include "CQueuePage.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace zelto {
namespace {

using namespace settings;

constexpr int kMostResends = 9999;
constexpr int kLongestInterval = 7 * 24 * 60; // a week, in minutes

} // namespace

CQueuePage::CQueuePage(QWidget* parent)
    : COptionsPage(OptionPageKind::Queue, QStringLiteral("options-queue"), parent)
{
    auto* layout = new QVBoxLayout(this);
    auto* addFailed = new QCheckBox(tr("Automatically Add &Failed Transfers to Queue"));
    watch(addFailed);
    bindCustom(
        schedule::kResendFail.name,
        [addFailed](const QString& value) { addFailed->setChecked(value.toInt() == 1); },
        [addFailed] { return QString::number(addFailed->isChecked() ? 1 : 0); });
    layout->addWidget(addFailed);

    auto* resends = new QGroupBox(tr("Resends"));
    auto* grid = new QGridLayout(resends);
    auto* untilEnd = new QRadioButton(tr("Send &Until Complete"));
    auto* byCount = new QRadioButton(tr("Number of  &Resends:"));
    auto* count = new QLineEdit;
    count->setAccessibleName(tr("Number of Resends"));
    grid->addWidget(untilEnd, 0, 0);
    grid->addWidget(byCount, 1, 0);
    grid->addWidget(count, 1, 1);
    bindChoice({ untilEnd, byCount },
        { QStringLiteral("UNTIL_END"), QString::fromLatin1(schedule::kResendFreqByAttempts) },
        schedule::kResendFreq.name);
    bindNumber(count, schedule::kResendFreqNum.name, 0, kMostResends);
    count->setEnabled(false); // until a number of resends is chosen
    connect(byCount, &QRadioButton::toggled, count, &QWidget::setEnabled);

    auto* every = new QLabel(tr("Resend &every"));
    auto* interval = new QLineEdit;
    every->setBuddy(interval);
    grid->addWidget(every, 2, 0);
    grid->addWidget(interval, 2, 1);
    grid->addWidget(new QLabel(tr("Minutes")), 2, 2);
    bindNumber(interval, schedule::kResendTimePage.name, 0, kLongestInterval);
    layout->addWidget(resends);

    auto* start = new QGroupBox(tr("On application start"));
    auto* startLayout = new QHBoxLayout(start);
    const std::vector<QRadioButton*> starts { new QRadioButton(tr("E&mpty Queue")),
        new QRadioButton(tr("&Send Queue")), new QRadioButton(tr("Do &Nothing")) };
    for (QRadioButton* button : starts)
        startLayout->addWidget(button);
    bindChoice(starts, { QStringLiteral("0"), QStringLiteral("1"), QStringLiteral("2") },
        schedule::kStartQueueProg.name);
    layout->addWidget(start);
    layout->addStretch();
}

} // namespace zelto
