#pragma once

#include <QString>

namespace zelto {

// Joins stored paths the way the data files expect: a separator is added only when the left part
// does not already end in one. Either separator counts, since stored paths may come from Windows.
[[nodiscard]] bool endsWithSeparator(const QString& path);
[[nodiscard]] QString joinPath(const QString& left, const QString& right);

} // namespace zelto
