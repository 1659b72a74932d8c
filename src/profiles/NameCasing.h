#pragma once

#include <QString>

namespace zelto {

// A remote name in the letter case that FileCasingPut asks for: "UPPER_CASE", "LOWER_CASE", and
// any other value leaves the name as it is.
[[nodiscard]] QString casedName(const QString& name, const QString& casing);

} // namespace zelto
