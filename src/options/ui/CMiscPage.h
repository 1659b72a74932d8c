#pragma once

#include "options/ui/COptionsPage.h"

class QGroupBox;

namespace zelto {

// "Misc": the screens' split, drag and drop, double clicks in the browsers, remote folders and
// what happens to files after a transfer.
class CMiscPage final : public COptionsPage {
    Q_OBJECT
public:
    explicit CMiscPage(QWidget* parent = nullptr);

private:
    // A group of radio buttons, one per text, bound to `key` with `words`.
    QGroupBox* choiceGroup(const QString& title, const QStringList& texts, const QStringList& words,
        const char* key, int otherwise = 0);
};

} // namespace zelto
