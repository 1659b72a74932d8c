#pragma once

#include <QDialog>
#include <QStringList>

class QDialogButtonBox;
class QLineEdit;
class QSortFilterProxyModel;
class QStandardItemModel;
class QTreeView;

namespace zelto {

// "Add Site...": the stored site profiles by folder and name, with their servers, narrowed by a
// filter; several can be chosen at once. From the filter, Down goes into the list and Return
// takes the one profile left. With no profiles at all it says how to make one and, when
// `offerNewSite`, offers "New site..." (the dialog then ends, and newSiteWanted() says so).
class CSiteChooser final : public QDialog {
    Q_OBJECT
public:
    // `profiles` are profile files under `root`; each is shown by its path below the root.
    CSiteChooser(const QStringList& profiles, const QString& root, bool offerNewSite = false,
        QWidget* parent = nullptr);

    // The profiles chosen, in the order shown.
    [[nodiscard]] QStringList chosen() const;
    [[nodiscard]] bool newSiteWanted() const { return newSiteWanted_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void updateOk();

    QLineEdit* filter_;
    QStandardItemModel* profiles_;
    QSortFilterProxyModel* shown_;
    QTreeView* list_;
    QDialogButtonBox* buttons_;
    bool newSiteWanted_ = false;
};

} // namespace zelto
