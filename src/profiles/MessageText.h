#pragma once

#include <QString>

#include <initializer_list>

namespace zelto {

// The string table's text of `id` with each "%s" filled in turn by the next of `values`. A value
// that itself holds "%s" is not filled again.
[[nodiscard]] QString messageText(int id, std::initializer_list<QString> values);

} // namespace zelto
