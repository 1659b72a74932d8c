#pragma once

#include <QString>

namespace zelto {

// The company and application keys under which settings and data live ("Pellmoor", "Zelto").
void applyApplicationIdentity();

[[nodiscard]] QString versionText();

} // namespace zelto
