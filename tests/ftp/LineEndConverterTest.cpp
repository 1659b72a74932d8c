#include "ftp/LineEndConverter.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace zelto {
namespace {

enum class Way { ToWire, FromWire };

QByteArray convert(Way way, const std::vector<QByteArray>& chunks)
{
    LineEndConverter converter;
    QByteArray out;
    for (const auto& chunk : chunks) {
        if (way == Way::ToWire)
            converter.toWire(chunk, out);
        else
            converter.fromWire(chunk, out);
    }
    converter.finish(out);
    return out;
}

TEST(LineEndConverter, ConvertsAcrossChunkBoundaries)
{
    const struct {
        Way way;
        std::vector<QByteArray> chunks;
        QByteArray expected;
    } cases[] = {
        { Way::ToWire, { "a\nb\n" }, "a\r\nb\r\n" },
        { Way::ToWire, { "a\r\nb" }, "a\r\nb" }, // not doubled
        { Way::ToWire, { "a\r", "\nb" }, "a\r\nb" }, // not doubled across the cut
        { Way::ToWire, { "a\r", "", "\nb" }, "a\r\nb" }, // an empty chunk keeps the state
        { Way::ToWire, { "a", "\n", "\n" }, "a\r\n\r\n" },
        { Way::ToWire, { "\n" }, "\r\n" },
        { Way::ToWire, { "a\rb" }, "a\rb" },
        { Way::ToWire, { "a\r", "b\n" }, "a\rb\r\n" },
        { Way::FromWire, { "a\r\nb\r\n" }, "a\nb\n" },
        { Way::FromWire, { "a\r", "\nb" }, "a\nb" },
        { Way::FromWire, { "a\r", "", "\nb" }, "a\nb" },
        { Way::FromWire, { "a\rb" }, "a\rb" }, // a lone CR stays
        { Way::FromWire, { "a\r", "b" }, "a\rb" },
        { Way::FromWire, { "a\r" }, "a\r" }, // held back, then written at the end
        { Way::FromWire, { "\r", "\r", "\n" }, "\r\n" },
        { Way::FromWire, { "a\nb" }, "a\nb" },
        { Way::FromWire, {}, "" },
    };
    for (const auto& c : cases) {
        EXPECT_EQ(convert(c.way, c.chunks), c.expected)
            << (c.way == Way::ToWire ? "to wire: " : "from wire: ") << c.chunks.size()
            << " chunks, expected " << c.expected.toPercentEncoding().toStdString();
    }
}

TEST(LineEndConverter, EveryCutGivesTheWholeResultAndRoundTrips)
{
    const QByteArray local("line one\nline two\r\n\r\rlone\r\n\n\rend\r");
    const QByteArray wire = convert(Way::ToWire, { local });
    const QByteArray back = convert(Way::FromWire, { wire });
    for (qsizetype cut = 0; cut <= local.size(); ++cut)
        EXPECT_EQ(convert(Way::ToWire, { local.left(cut), local.mid(cut) }), wire) << cut;
    for (qsizetype cut = 0; cut <= wire.size(); ++cut)
        EXPECT_EQ(convert(Way::FromWire, { wire.left(cut), wire.mid(cut) }), back) << cut;

    // Byte by byte, through one reused buffer, as a pump with a tiny block would do.
    LineEndConverter toWire;
    QByteArray piece;
    QByteArray joined;
    for (const char byte : local) {
        piece.resize(0);
        toWire.toWire(QByteArrayView(&byte, 1), piece);
        joined += piece;
    }
    EXPECT_EQ(joined, wire);

    // Text written locally with bare line feeds comes back as it was.
    const QByteArray unix("a\nb\n\nlast");
    EXPECT_EQ(convert(Way::FromWire, { convert(Way::ToWire, { unix }) }), unix);
}

TEST(LineEndConverter, AppendsToWhatTheBufferHolds)
{
    LineEndConverter converter;
    QByteArray out("kept");
    converter.toWire("x\n", out);
    EXPECT_EQ(out, QByteArray("keptx\r\n"));
    converter.fromWire("y\r\n", out);
    EXPECT_EQ(out, QByteArray("keptx\r\ny\n"));
}

} // namespace
} // namespace zelto
