#include "CSchedulerDlg.h"

#include "platform/Notifier.h"
#include "platform/StringIds.h"
#include "platform/StringTable.h"
#include "profiles/LinkFile.h"
#include "scheduler/ScheduleStore.h"
#include "settings/DataFolders.h"
#include "widgets/CHelpWindow.h"
#include "widgets/StoredPlacement.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <array>

namespace zelto {
namespace {

// Where the window was left, kept across runs.
const QString kPlacement = QStringLiteral("Dimensions\\Scheduler");

// The years a "Once" entry may name.
constexpr int kYearsAhead = 50;

QString twoDigits(int value)
{
    return QStringLiteral("%1").arg(value, 2, 10, QChar(u'0'));
}

QComboBox* numberBox(int first, int last)
{
    auto* box = new QComboBox;
    for (int n = first; n <= last; ++n)
        box->addItem(twoDigits(n), n);
    return box;
}

QComboBox* wordBox(int firstId, int lastId)
{
    auto* box = new QComboBox;
    for (int id = firstId; id <= lastId; ++id)
        box->addItem(StringTable::text(id), id);
    return box;
}

// What each frequency reads from the controls; the minute it always reads.
struct Uses {
    int frequency;
    bool day;
    bool month; // and the year
    bool weekday;
    bool hour;
};
constexpr std::array<Uses, 7> kUses = { {
    { ids::kFrequencyOnce, true, true, false, true },
    { ids::kFrequencyToday, false, false, false, true },
    { ids::kFrequencyHourly, false, false, false, false },
    { ids::kFrequencyDaily, false, false, false, true },
    { ids::kFrequencyWeekly, false, false, true, true },
    { ids::kFrequencyMonthly, true, false, false, true },
    { ids::kFrequencyYearly, true, true, false, true },
} };

enum ListColumn { Name, Frequency, Date, Time, State, kListColumns };

QLabel* buddyLabel(const QString& text, QWidget* buddy)
{
    auto* label = new QLabel(text);
    label->setBuddy(buddy);
    return label;
}

} // namespace

CSchedulerDlg::CSchedulerDlg(Notifier& notifier, Clock clock, QWidget* parent)
    : QDialog(parent)
    , notifier_(notifier)
    , clock_(std::move(clock))
    , frequency_(wordBox(ids::kFrequencyOnce, ids::kFrequencyYearly))
    , day_(numberBox(1, 31))
    , month_(wordBox(ids::kMonthJanuary, ids::kMonthDecember))
    , year_(new QSpinBox)
    , weekday_(wordBox(ids::kWeekdaySunday, ids::kWeekdaySaturday))
    , hour_(numberBox(0, 23))
    , minute_(numberBox(0, 59))
    , scriptCheck_(new QCheckBox(tr("Schedule Script &File")))
    , scriptEdit_(new QLineEdit)
    , browse_(new QPushButton(tr("&Browse...")))
    , link_(new QComboBox)
    , list_(new QTreeWidget)
{
    setWindowTitle(tr("Zelto Scheduler"));
    CHelpWindow::bindHelpKey(*this, QStringLiteral("scheduler"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(buildChoice());
    layout->addWidget(buildList(), 1);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &CSchedulerDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CSchedulerDlg::reject);
    layout->addWidget(buttons);

    frequency_->setCurrentIndex(ids::kFrequencyToday - ids::kFrequencyOnce);
    year_->setRange(clock_().date().year(), clock_().date().year() + kYearsAhead);
    resetChoice();
    showFrequency();
    for (const ScheduleEntry& entry : ScheduleStore::readEntries())
        addRow(entry);
    StoredPlacement::restore(*this, kPlacement, QSize(640, 520), parentWidget());
}

QWidget* CSchedulerDlg::buildChoice()
{
    auto* choice = new QWidget;
    auto* grid = new QGridLayout(choice);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(buddyLabel(tr("F&requency"), frequency_), 0, 0);
    grid->addWidget(frequency_, 0, 1);
    grid->addWidget(buddyLabel(tr("Day of &Month"), day_), 1, 0);
    grid->addWidget(day_, 1, 1);
    grid->addWidget(buddyLabel(tr("Mon&th"), month_), 1, 2);
    grid->addWidget(month_, 1, 3);
    grid->addWidget(buddyLabel(tr("&Year"), year_), 1, 4);
    grid->addWidget(year_, 1, 5);
    grid->addWidget(buddyLabel(tr("Day of &Week"), weekday_), 2, 0);
    grid->addWidget(weekday_, 2, 1);
    grid->addWidget(buddyLabel(tr("T&ime"), hour_), 2, 2);
    auto* time = new QHBoxLayout;
    hour_->setAccessibleName(tr("Hour"));
    minute_->setAccessibleName(tr("Minute"));
    time->addWidget(hour_);
    time->addWidget(new QLabel(QStringLiteral(":")));
    time->addWidget(minute_);
    time->addStretch();
    grid->addLayout(time, 2, 3, 1, 3);

    grid->addWidget(scriptCheck_, 3, 0);
    scriptEdit_->setAccessibleName(tr("Script file"));
    grid->addWidget(scriptEdit_, 3, 1, 1, 4);
    grid->addWidget(browse_, 3, 5);
    grid->addWidget(buddyLabel(tr("FTP &Profile / File List"), link_), 4, 0);
    grid->addWidget(link_, 4, 1, 1, 5);
    for (const QString& file : LinkFile::linkFiles())
        link_->addItem(LinkFile::nameOf(file));
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(3, 1);

    connect(frequency_, &QComboBox::currentIndexChanged, this, &CSchedulerDlg::showFrequency);
    connect(scriptCheck_, &QCheckBox::toggled, this, &CSchedulerDlg::showFrequency);
    connect(browse_, &QPushButton::clicked, this, &CSchedulerDlg::browse);
    return choice;
}

QWidget* CSchedulerDlg::buildList()
{
    auto* box = new QWidget;
    auto* layout = new QVBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* actions = new QHBoxLayout;
    const std::pair<QString, void (CSchedulerDlg::*)()> buttons[]
        = { { tr("&Add"), &CSchedulerDlg::addEntry },
              { tr("&Delete"), &CSchedulerDlg::deleteEntries },
              { tr("&Switch On/Off"), &CSchedulerDlg::switchEntries },
              { tr("R&eset"), &CSchedulerDlg::resetChoice } };
    for (const auto& [text, slot] : buttons) {
        auto* button = new QPushButton(text);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, slot);
        actions->addWidget(button);
    }
    actions->addStretch();
    layout->addLayout(actions);

    list_->setHeaderLabels({ tr("Name"), tr("Frequency"), tr("Date"), tr("Time"), tr("State") });
    list_->setRootIsDecorated(false);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setAccessibleName(tr("Schedule entries"));
    list_->header()->setSectionResizeMode(Name, QHeaderView::Stretch);
    list_->header()->setStretchLastSection(false);
    layout->addWidget(buddyLabel(tr("Schedule e&ntries"), list_));
    layout->addWidget(list_, 1);
    return box;
}

std::vector<ScheduleEntry> CSchedulerDlg::entries() const
{
    std::vector<ScheduleEntry> rows;
    for (int i = 0; i < list_->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = list_->topLevelItem(i);
        ScheduleEntry entry;
        entry.name = row->text(Name);
        entry.frequency = row->text(Frequency);
        entry.date = row->text(Date);
        entry.time = row->text(Time);
        entry.state = row->text(State);
        rows.push_back(entry);
    }
    return rows;
}

int CSchedulerDlg::frequency() const
{
    return frequency_->currentData().toInt();
}

ScheduleChoice CSchedulerDlg::choice() const
{
    ScheduleChoice choice;
    choice.day = day_->currentData().toInt();
    choice.month = month_->currentIndex() + 1;
    choice.year = year_->value();
    choice.weekday = weekday_->currentIndex();
    choice.hour = hour_->currentData().toInt();
    choice.minute = minute_->currentData().toInt();
    if (frequency() == ids::kFrequencyToday) {
        const ScheduleChoice today = ScheduleChoice::at(clock_());
        choice.day = today.day;
        choice.month = today.month;
        choice.year = today.year;
    }
    return choice;
}

void CSchedulerDlg::addEntry()
{
    const bool script = scriptCheck_->isChecked();
    const QString name = script ? scriptEdit_->text().trimmed() : link_->currentText();
    if (name.isEmpty()) {
        refuse(StringTable::text(ids::kSelectProfile));
        return;
    }
    // Each word of a stored entry ends at a blank: the name would come back cut.
    if (name.contains(u' ')) {
        refuse(
            tr("\"%1\" holds a blank and cannot be scheduled: rename it without one.").arg(name));
        return;
    }
    if (script && !QFileInfo(name).isFile()) {
        refuse(tr("The script file \"%1\" does not exist.").arg(name));
        return;
    }
    const ScheduleChoice chosen = choice();
    if (chosen.inPast(frequency(), clock_())) {
        refuse(StringTable::text(ids::kScheduleInPast));
        return;
    }
    const ScheduleEntry entry = chosen.entry(name, frequency());
    if (const QString fault = ScheduleChoice::faultOf(entry); !fault.isEmpty()) {
        refuse(tr("This entry could never run: %1.").arg(fault));
        return;
    }
    addRow(entry);
    changed_ = true;
}

void CSchedulerDlg::deleteEntries()
{
    const QList<QTreeWidgetItem*> selected = list_->selectedItems();
    if (selected.isEmpty()) {
        refuse(StringTable::text(ids::kSelectScheduleEntry));
        return;
    }
    if (!notifier_.askOkCancel(windowTitle(), StringTable::text(ids::kConfirmDeleteScheduleEntry)))
        return;
    qDeleteAll(selected);
    changed_ = true;
}

void CSchedulerDlg::switchEntries()
{
    const QList<QTreeWidgetItem*> selected = list_->selectedItems();
    if (selected.isEmpty()) {
        refuse(StringTable::text(ids::kSelectScheduleEntry));
        return;
    }
    const QString on = StringTable::text(ids::kStateOn);
    for (QTreeWidgetItem* row : selected) {
        row->setText(State, row->text(State) == on ? StringTable::text(ids::kStateOff) : on);
        markRow(*row);
    }
    changed_ = true;
}

void CSchedulerDlg::resetChoice()
{
    const ScheduleChoice now = ScheduleChoice::at(clock_());
    day_->setCurrentIndex(now.day - 1);
    month_->setCurrentIndex(now.month - 1);
    year_->setValue(now.year);
    weekday_->setCurrentIndex(now.weekday);
    hour_->setCurrentIndex(now.hour);
    minute_->setCurrentIndex(now.minute);
}

void CSchedulerDlg::browse()
{
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Schedule Script File"), DataFolders::base(), tr("FTP scripts (*.cmd)"));
    if (path.isEmpty())
        return;
    scriptEdit_->setText(path);
    scriptCheck_->setChecked(true);
}

void CSchedulerDlg::accept()
{
    ScheduleStore::writeEntries(entries());
    changed_ = false;
    QDialog::accept();
}

void CSchedulerDlg::reject()
{
    if (changed_ && notifier_.askYesNo(StringTable::text(ids::kSchedulesChangedSave)))
        ScheduleStore::writeEntries(entries());
    changed_ = false;
    QDialog::reject();
}

void CSchedulerDlg::addRow(const ScheduleEntry& entry)
{
    auto* row = new QTreeWidgetItem(
        list_, { entry.name, entry.frequency, entry.date, entry.time, entry.state });
    markRow(*row);
}

void CSchedulerDlg::markRow(QTreeWidgetItem& row)
{
    ScheduleEntry entry;
    entry.name = row.text(Name);
    entry.frequency = row.text(Frequency);
    entry.date = row.text(Date);
    entry.time = row.text(Time);
    entry.state = row.text(State);
    const QString fault = ScheduleChoice::faultOf(entry);
    const bool runs = fault.isEmpty() && entry.state == StringTable::text(ids::kStateOn);
    // A row that will not run is greyed as disabled text is; the others keep the list's own
    // colour, whatever palette is in force.
    for (int column = 0; column < kListColumns; ++column) {
        row.setData(column, Qt::ForegroundRole,
            runs ? QVariant() : QVariant(palette().brush(QPalette::Disabled, QPalette::Text)));
        row.setToolTip(column, fault.isEmpty() ? QString() : tr("Never runs: %1").arg(fault));
    }
}

void CSchedulerDlg::showFrequency()
{
    const int chosen = frequency();
    for (const Uses& uses : kUses) {
        if (uses.frequency != chosen)
            continue;
        day_->setEnabled(uses.day);
        month_->setEnabled(uses.month);
        year_->setEnabled(uses.month && chosen == ids::kFrequencyOnce);
        weekday_->setEnabled(uses.weekday);
        hour_->setEnabled(uses.hour);
    }
    const bool script = scriptCheck_->isChecked();
    scriptEdit_->setEnabled(script);
    browse_->setEnabled(script);
    link_->setEnabled(!script);
}

void CSchedulerDlg::refuse(const QString& text)
{
    notifier_.showMessage(text, MessageIcon::Information);
}

void CSchedulerDlg::done(int result)
{
    StoredPlacement::save(*this, kPlacement);
    QDialog::done(result);
}

} // namespace zelto
