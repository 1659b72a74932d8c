#pragma once

#include "ftp/JobSite.h"

#include <QDialog>

class QCheckBox;
class QLineEdit;
class QSpinBox;

namespace zelto {

// Asks where to connect the remote browser: host, user, password, port, the folder to start in,
// and anonymous (which fills in the anonymous login and locks it). Filled from the values of the
// last quick connect that succeeded.
class CQuickConnectDlg final : public QDialog {
    Q_OBJECT
public:
    explicit CQuickConnectDlg(QWidget* parent = nullptr);

    [[nodiscard]] JobSite site() const;
    void setSite(const JobSite& site);

private:
    void setAnonymous(bool anonymous);

    QLineEdit* host_;
    QLineEdit* user_;
    QLineEdit* password_;
    QSpinBox* port_;
    QLineEdit* folder_;
    QCheckBox* anonymous_;
};

} // namespace zelto
