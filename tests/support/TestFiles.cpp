#include "TestFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>

namespace zelto::test {

namespace {

constexpr qint64 kPieceSize = 64 * 1024; // a multiple of 8: pieces join into one stream

// splitmix64: tiny, fast, and the same on every platform, unlike the standard distributions.
class ByteStream final {
public:
    explicit ByteStream(quint64 seed) : state_(seed) { }

    void fill(char* out, qint64 size)
    {
        for (qint64 i = 0; i < size; i += 8) {
            auto word = next();
            for (qint64 j = i; j < std::min(size, i + 8); ++j, word >>= 8)
                out[j] = char(word & 0xff);
        }
    }

private:
    quint64 next()
    {
        auto z = (state_ += 0x9e3779b97f4a7c15ULL);
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }

    quint64 state_;
};

} // namespace

QByteArray makeBytes(qint64 size, quint64 seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    ByteStream(seed).fill(bytes.data(), size);
    return bytes;
}

bool makeFile(const QString& path, qint64 size, quint64 seed)
{
    if (!QDir().mkpath(QFileInfo(path).absolutePath()))
        return false;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    ByteStream stream(seed);
    QByteArray piece(kPieceSize, Qt::Uninitialized);
    for (qint64 left = size; left > 0; left -= kPieceSize) {
        const auto n = std::min(left, kPieceSize);
        stream.fill(piece.data(), n);
        if (file.write(piece.constData(), n) != n)
            return false;
    }
    return file.commit();
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        ADD_FAILURE() << "cannot write " << path.toStdString();
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.readAll()
                                                                      : QByteArray();
}

::testing::AssertionResult sameBytes(const QString& a, const QString& b)
{
    for (const QString& path : { a, b }) {
        if (!QFileInfo(path).isFile())
            return ::testing::AssertionFailure() << "cannot read " << path.toStdString();
    }
    const QByteArray bytesA = contents(a);
    const QByteArray bytesB = contents(b);
    if (bytesA == bytesB)
        return ::testing::AssertionSuccess();
    const auto at = std::mismatch(bytesA.begin(), bytesA.end(), bytesB.begin(), bytesB.end());
    return ::testing::AssertionFailure()
        << a.toStdString() << " (" << bytesA.size() << " bytes) and " << b.toStdString() << " ("
        << bytesB.size() << " bytes) differ at byte " << at.first - bytesA.begin();
}

} // namespace zelto::test
