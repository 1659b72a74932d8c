#pragma once

#include <QDialog>

class QLabel;
class QTreeWidget;

namespace zelto {

class RunSummary;

// The report of a run to several sites that has ended: a row per site (Site, Sent, Failed, Bytes,
// Time) and a closing line. Never modal, so that the frame and other runs go on beside it; Escape
// closes it, and Copy puts its rows on the clipboard as tab-separated text.
class CRunSummaryDlg final : public QDialog {
    Q_OBJECT
public:
    enum Column { Site, Sent, Failed, Bytes, Time, ColumnCount };

    CRunSummaryDlg(const RunSummary& summary, QWidget* anchor);

    // Shows the report of `summary` over `anchor` and raises it; it goes when it is closed.
    static CRunSummaryDlg* open(const RunSummary& summary, QWidget* anchor);

    [[nodiscard]] QTreeWidget* table() const { return table_; }

public Q_SLOTS:
    void done(int result) override;

private:
    void fill(const RunSummary& summary);
    void copy() const;

    QTreeWidget* table_;
    QLabel* closing_;
    QString copyText_;
};

} // namespace zelto
