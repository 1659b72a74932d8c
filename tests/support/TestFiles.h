#pragma once

#include <QByteArray>
#include <QString>

#include <gtest/gtest.h>

namespace zelto::test {

// `size` bytes of pseudo-random content, the same for the same seed on every machine.
[[nodiscard]] QByteArray makeBytes(qint64 size, quint64 seed);

// Writes makeBytes(size, seed) to `path` in pieces, so that a file of several GiB costs no memory.
// Makes the missing folders; false when the file cannot be written.
[[nodiscard]] bool makeFile(const QString& path, qint64 size, quint64 seed);

// Success when both files exist and hold the same bytes; otherwise says where they part.
[[nodiscard]] ::testing::AssertionResult sameBytes(const QString& a, const QString& b);

} // namespace zelto::test
