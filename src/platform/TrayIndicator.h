#pragma once

namespace zelto {

enum class TrayState { Idle = 0, Busy = 1, Sending = 2 };

// The tray icon's picture of what the program is doing; the main frame implements it, a run
// without a window ignores it. Called from worker threads.
class TrayIndicator {
public:
    virtual ~TrayIndicator() = default;
    virtual void setState(TrayState state) = 0;
};

} // namespace zelto
