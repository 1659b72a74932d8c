#pragma once

#include <QIcon>

namespace zelto {

// The tool bar's own icons, drawn as shapes at whatever size and scale they are shown, so that
// they stay sharp at any display scale and take the palette's colours (light or dark). Each one
// differs from the others at a glance.
class ToolIcons final {
public:
    enum class Kind {
        StandardFtp, // the local machine beside a server
        RemoteFtp, // two servers
        MultiplePut, // one source fanning out to several sites
        SendParallel, // arrows side by side
        SendSerial, // sites one after another
        Statistics, // a bar chart
    };

    ToolIcons() = delete;

    [[nodiscard]] static QIcon icon(Kind kind);
};

} // namespace zelto
