#pragma once

#include <QString>

namespace zelto {

// The texts of --help and --version, and where this user's settings and data live.
class ProgramInfo final {
public:
    ProgramInfo() = delete;

    [[nodiscard]] static QString usage();
    [[nodiscard]] static QString versionLine();
    [[nodiscard]] static QString locations();
};

} // namespace zelto
