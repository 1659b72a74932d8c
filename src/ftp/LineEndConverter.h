#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace zelto {

// Line-end conversion of a text-mode transfer, applied to a stream chunk by chunk. A line end
// split across two chunks ("\r" last in one, "\n" first in the next) is handled, so the output
// does not depend on where the chunks were cut. Use one object per file and per direction.
//
// Output is appended to the caller's buffer, which grows at most once per call; to reuse a buffer
// between chunks empty it with resize(0), which keeps its capacity (clear() frees it).
class LineEndConverter final {
public:
    // Local to wire: every "\n" becomes "\r\n"; a "\r\n" already there stays as it is.
    void toWire(QByteArrayView chunk, QByteArray& out);

    // Wire to local: "\r\n" becomes "\n"; a "\r" not followed by "\n" is kept. A "\r" that ends a
    // chunk is held back until the next chunk (or finish()) shows what follows it.
    void fromWire(QByteArrayView chunk, QByteArray& out);

    // End of the stream: writes a "\r" that fromWire still holds back.
    void finish(QByteArray& out);

private:
    bool lastWasCr_ = false; // toWire: the last byte seen was "\r"
    bool pendingCr_ = false; // fromWire: a "\r" is held back
};

} // namespace zelto
