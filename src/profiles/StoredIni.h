#pragma once

#include "platform/IniDocument.h"

#include <QString>

#include <vector>

namespace zelto {

// A stored .ini file parsed once, for readers that take many values at a time (a file list of
// thousands of entries), read with the rules of the private-profile calls: a missing file or key
// gives the fallback, a value comes back cut to the caller's buffer size less one.
class StoredIni final {
public:
    explicit StoredIni(const QString& file);

    [[nodiscard]] QString text(
        const QString& section, const QString& key, const QString& fallback, int bufferSize) const;
    [[nodiscard]] int integer(const QString& section, const QString& key, int fallback) const;
    // The leading decimal number of the value, as a C library's conversion to long reads it
    // ("12 kB" is 12, "x" is 0), 64-bit and clamped at its limits.
    [[nodiscard]] qint64 number(
        const QString& section, const QString& key, const QString& fallback) const;
    // The numbers n from 1 to `count` whose section "<prefix>n" exists, in ascending order. A
    // missing section is left out, and a damaged count costs nothing: the file's own sections are
    // what is walked, never the count.
    [[nodiscard]] std::vector<int> numberedSections(const QString& prefix, int count) const;

private:
    IniDocument document_;
};

} // namespace zelto
