#pragma once

#include "scheduler/ScheduleChoice.h"
#include "scheduler/ScheduleEntry.h"

#include <QDateTime>
#include <QDialog>

#include <functional>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTreeWidget;
class QTreeWidgetItem;

namespace zelto {

class Notifier;

// The scheduler's configurator: the schedule entries as a list of their five words, new entries
// made from a frequency, a date and a time for a link or a command script, entries switched on
// and off or deleted. Nothing is stored until OK (or Yes to Cancel's question); then the whole list
// replaces the stored entries. Entries whose words the scheduler cannot use are listed as they
// stand, marked, and kept.
class CSchedulerDlg final : public QDialog {
    Q_OBJECT
public:
    using Clock = std::function<QDateTime()>;

    explicit CSchedulerDlg(
        Notifier& notifier, Clock clock = &QDateTime::currentDateTime, QWidget* parent = nullptr);

    // The controls, for the keyboard's tests.
    [[nodiscard]] QComboBox* frequencyBox() const { return frequency_; }
    [[nodiscard]] QComboBox* dayBox() const { return day_; }
    [[nodiscard]] QComboBox* monthBox() const { return month_; }
    [[nodiscard]] QSpinBox* yearBox() const { return year_; }
    [[nodiscard]] QComboBox* weekdayBox() const { return weekday_; }
    [[nodiscard]] QComboBox* hourBox() const { return hour_; }
    [[nodiscard]] QComboBox* minuteBox() const { return minute_; }
    [[nodiscard]] QCheckBox* scriptCheck() const { return scriptCheck_; }
    [[nodiscard]] QLineEdit* scriptEdit() const { return scriptEdit_; }
    [[nodiscard]] QComboBox* linkBox() const { return link_; }
    [[nodiscard]] QTreeWidget* list() const { return list_; }
    // The rows as they would be stored.
    [[nodiscard]] std::vector<ScheduleEntry> entries() const;
    // The frequency chosen, as its string id.
    [[nodiscard]] int frequency() const;

public Q_SLOTS:
    void addEntry();
    void deleteEntries();
    // The selected entries' state: "On" becomes "Off", anything else "On".
    void switchEntries();
    // The date and time back to now.
    void resetChoice();
    void browse();
    void accept() override;
    void reject() override;

protected:
    // Keeps the place and size the window is closed at.
    void done(int result) override;

private:
    QWidget* buildChoice();
    QWidget* buildList();
    void addRow(const ScheduleEntry& entry);
    void markRow(QTreeWidgetItem& row);
    void showFrequency();
    void refuse(const QString& text);
    [[nodiscard]] ScheduleChoice choice() const;

    Notifier& notifier_;
    Clock clock_;
    QComboBox* frequency_;
    QComboBox* day_;
    QComboBox* month_;
    QSpinBox* year_;
    QComboBox* weekday_;
    QComboBox* hour_;
    QComboBox* minute_;
    QCheckBox* scriptCheck_;
    QLineEdit* scriptEdit_;
    QPushButton* browse_;
    QComboBox* link_;
    QTreeWidget* list_;
    // Set by Add, Delete and a switch; Cancel then asks whether to save.
    bool changed_ = false;
};

} // namespace zelto
