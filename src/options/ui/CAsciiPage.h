#pragma once

#include "options/ui/COptionsPage.h"

namespace zelto {

// "Ascii Transfer Settings": the extensions of the files that Automatic mode sends as text.
class CAsciiPage final : public COptionsPage {
    Q_OBJECT
public:
    explicit CAsciiPage(QWidget* parent = nullptr);
};

} // namespace zelto
