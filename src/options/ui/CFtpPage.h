#pragma once

#include "options/ui/COptionsPage.h"

namespace zelto {

// "FTP": the anonymous password, retries and time-outs, caching and passive mode.
class CFtpPage final : public COptionsPage {
    Q_OBJECT
public:
    explicit CFtpPage(QWidget* parent = nullptr);
};

} // namespace zelto
