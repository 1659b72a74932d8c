#pragma once

namespace zelto {

class SoundSink;

// The transfer sounds of one run of a transfer engine. Per batch (SOUNDS\TransferType exactly
// "BATCH", the default): silent per file, then one TransferOk when every file went, TransferFail
// otherwise. Per file (any other value): TransferOk or TransferFail after each file.
class TransferSounds final {
public:
    // Reads the choice once, at the start of the run.
    explicit TransferSounds(SoundSink& sounds);

    void fileDone(bool transferred);
    void runEnded();

private:
    SoundSink& sounds_;
    bool perBatch_;
    bool allTransferred_ = true;
};

} // namespace zelto
