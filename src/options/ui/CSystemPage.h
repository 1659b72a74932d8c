#pragma once

#include "options/ui/COptionsPage.h"

class QGridLayout;

namespace zelto {

// "System": the data, log and profile folders, overwriting, buffer sizes, the case of transferred
// file names and how file dates are shown.
class CSystemPage final : public COptionsPage {
    Q_OBJECT
public:
    explicit CSystemPage(QWidget* parent = nullptr);

private:
    void addCasing(QGridLayout& grid, int column, const QString& title, const char* key);
};

} // namespace zelto
