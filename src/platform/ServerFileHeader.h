#pragma once

// The first line of the system's own text files (log files, and the server files of an older
// release): this word, then a line feed. Readers compare the word only.
namespace zelto {

inline constexpr char kServerFileHeader[] = "FTP_SERVER_FILE";

} // namespace zelto
