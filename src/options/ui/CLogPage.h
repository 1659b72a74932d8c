#pragma once

#include "options/ui/COptionsPage.h"

class QCheckBox;
class QLineEdit;

namespace zelto {

// "Log": where log records go, which the log view shows, the log file's name and the stamps.
class CLogPage final : public COptionsPage {
    Q_OBJECT
public:
    explicit CLogPage(QWidget* parent = nullptr);

protected:
    void loaded() override;

private:
    QCheckBox* toFile_ = nullptr;
    QCheckBox* append_ = nullptr;
    QLineEdit* fileName_ = nullptr;
};

} // namespace zelto
