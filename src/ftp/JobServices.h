#pragma once

namespace zelto {

class LogSink;
class Notifier;
class SoundSink;
class TrayIndicator;

// What a transfer job reports to while it runs. Every member outlives the job and is safe to call
// from the job's worker thread.
struct JobServices {
    LogSink& log;
    SoundSink& sounds;
    TrayIndicator& tray;
    Notifier& notifier;
};

} // namespace zelto
