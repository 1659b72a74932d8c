#pragma once

#include <QSplitter>

namespace zelto {

// A splitter of two panes whose sizes live in the settings under its name ("Dimensions\<name>"):
// a row height "Row<n>" and a column width "Col<n>" for each row and column, with "NumRows" and
// "NumCols". Side by side it is one row of two columns, stacked two rows of one column.
class StoredSplitter final : public QSplitter {
    Q_OBJECT
public:
    StoredSplitter(const QString& name, Qt::Orientation orientation, QWidget* parent = nullptr);

    [[nodiscard]] QString name() const { return name_; }

    // Takes the stored sizes of the panes (50 when absent, at least 10); the splitter shares its
    // length out in their proportions.
    void restoreSizes();
    // Writes every row height and column width. A splitter that was never shown has no sizes of
    // its own yet, so it leaves the stored ones alone.
    void saveSizes() const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] QList<int> scaledToFit(QList<int> sizes) const;

    QString name_;
    bool shown_ = false;
    QList<int> restored_;
};

} // namespace zelto
