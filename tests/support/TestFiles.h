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

// Writes `bytes` to `path`, making the missing folders; a failed write fails the test.
void writeFile(const QString& path, const QByteArray& bytes);

// The bytes of the regular file at `path`, empty when there is none. A pipe is never opened: that
// would wait for a writer.
[[nodiscard]] QByteArray contents(const QString& path);

// Success when both files exist and hold the same bytes; otherwise says where they part.
[[nodiscard]] ::testing::AssertionResult sameBytes(const QString& a, const QString& b);

} // namespace zelto::test
