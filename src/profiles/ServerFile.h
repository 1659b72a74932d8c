#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace zelto {

// The text files of an older release that begin with the line "FTP_SERVER_FILE": ".sts" (site
// profiles) and ".fls" (full paths of a file list).
class ServerFile final {
public:
    ServerFile() = delete;

    // What follows the header line (after its first line feed; empty when it has none), or
    // nothing when the file cannot be read or does not begin with the header word. Only the word
    // is compared, so a header line ending in a carriage return passes. The file is text: a NUL
    // byte ends it, as it ends the text for any reader of C strings.
    [[nodiscard]] static std::optional<QByteArray> body(const QString& file);
};

} // namespace zelto
