#include "LineEndConverter.h"

#include <cstring>

namespace zelto {
namespace {

// Room for the worst case is made once; the unused tail is cut off at the end of the call.
char* grow(QByteArray& out, qsizetype extra)
{
    const qsizetype start = out.size();
    out.resize(start + extra);
    return out.data() + start;
}

char* copy(char* to, const char* from, qsizetype size)
{
    std::memcpy(to, from, static_cast<std::size_t>(size));
    return to + size;
}

void cut(QByteArray& out, const char* end)
{
    out.resize(end - out.constData());
}

} // namespace

void LineEndConverter::toWire(QByteArrayView chunk, QByteArray& out)
{
    if (chunk.isEmpty())
        return;
    const char* const first = chunk.data();
    const char* const last = first + chunk.size();
    char* to = grow(out, 2 * chunk.size());
    for (const char* from = first; from < last;) {
        const auto* lf = static_cast<const char*>(
            std::memchr(from, '\n', static_cast<std::size_t>(last - from)));
        if (!lf) {
            to = copy(to, from, last - from);
            break;
        }
        to = copy(to, from, lf - from);
        const bool crBefore = lf > first ? lf[-1] == '\r' : lastWasCr_;
        if (!crBefore)
            *to++ = '\r';
        *to++ = '\n';
        from = lf + 1;
    }
    lastWasCr_ = last[-1] == '\r';
    cut(out, to);
}

void LineEndConverter::fromWire(QByteArrayView chunk, QByteArray& out)
{
    if (chunk.isEmpty())
        return;
    const char* from = chunk.data();
    const char* const last = from + chunk.size();
    char* to = grow(out, chunk.size() + 1);
    if (pendingCr_) {
        pendingCr_ = false;
        if (*from != '\n')
            *to++ = '\r';
    }
    while (from < last) {
        const auto* cr = static_cast<const char*>(
            std::memchr(from, '\r', static_cast<std::size_t>(last - from)));
        if (!cr) {
            to = copy(to, from, last - from);
            break;
        }
        to = copy(to, from, cr - from);
        if (cr + 1 == last) {
            pendingCr_ = true;
            break;
        }
        if (cr[1] != '\n')
            *to++ = '\r';
        from = cr + 1;
    }
    cut(out, to);
}

void LineEndConverter::finish(QByteArray& out)
{
    if (pendingCr_) {
        pendingCr_ = false;
        out.append('\r');
    }
}

} // namespace zelto
