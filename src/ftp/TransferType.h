#pragma once

#include <QString>

namespace zelto {

// How a file crosses the wire; the values are the ones stored and passed around by the engines.
enum class TransferType { Text = 1, Binary = 2 };

// The transfer type of a file. With `honourSetting`, the FTP option TransferType decides when it
// is "BINARY" or "TEXT"; otherwise, and for any other value, the file's extension decides: text
// when it is one of the comma-separated TextExtensions (compared ignoring case, items not
// trimmed), binary when the list is unset or the name has no dot. The extension is everything
// after the FIRST dot of the name (a.tar.gz has "tar.gz"). A path may be passed: only its last
// part (after the last "/" or "\") is the name, so a dot in a folder name never counts.
[[nodiscard]] TransferType transferTypeFor(const QString& fileName, bool honourSetting);

} // namespace zelto
