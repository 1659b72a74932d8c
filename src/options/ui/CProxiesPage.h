#pragma once

#include "options/ui/COptionsPage.h"

namespace zelto {

// "Proxies": how the program reaches the Internet, and the default FTP port.
class CProxiesPage final : public COptionsPage {
    Q_OBJECT
public:
    explicit CProxiesPage(QWidget* parent = nullptr);
};

} // namespace zelto
