#pragma once

#include <QString>

namespace zelto {

// Files and folders that can hold a password are readable and writable by their owner alone.
// Returns false when the permissions could not be set (a missing path, say).
bool restrictToOwner(const QString& path);

} // namespace zelto
