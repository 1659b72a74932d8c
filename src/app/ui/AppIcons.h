#pragma once

#include "platform/TrayIndicator.h"

#include <QIcon>

namespace zelto {

// The program's pictures, drawn here so that they need no files beside the program.
class AppIcons final {
public:
    AppIcons() = delete;

    // The program's mark (res/zelto.svg); where no SVG reader is installed, the same shapes are
    // painted.
    [[nodiscard]] static QIcon application();
    // The tray's picture of a state: the mark alone while idle, with a coloured badge while work
    // is under way (amber: connecting or receiving, green: sending).
    [[nodiscard]] static QIcon tray(TrayState state);
};

} // namespace zelto
