#include "ftp/LineEndConverter.h"

#include <gtest/gtest.h>

#include <tuple>
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
    // Direction, the chunks handed in, what comes out.
    const std::tuple<Way, std::vector<QByteArray>, QByteArray> cases[] = {
        { Way::ToWire, { "a\nb\n" }, "a\r\nb\r\n" },
        { Way::ToWire, { "a\r\nb" }, "a\r\nb" },
        { Way::ToWire, { "a\r", "", "\nb" }, "a\r\nb" }, // an empty chunk keeps the state
        { Way::ToWire, { "a", "\n", "\n" }, "a\r\n\r\n" },
        { Way::ToWire, { "a\rb" }, "a\rb" },
        { Way::ToWire, { "a\r", "b\n" }, "a\rb\r\n" },
        { Way::FromWire, { "a\r\nb\r\n" }, "a\nb\n" },
        { Way::FromWire, { "a\r", "\nb" }, "a\nb" },
        { Way::FromWire, { "a\r", "", "\nb" }, "a\nb" },
        { Way::FromWire, { "a\r", "b" }, "a\rb" },
        { Way::FromWire, { "a\r" }, "a\r" }, // held back, then written at the end
        { Way::FromWire, { "\r", "\r", "\n" }, "\r\n" },
        { Way::FromWire, { "a\nb" }, "a\nb" },
        { Way::FromWire, {}, "" },
    };
    for (const auto& [way, chunks, expected] : cases) {
        EXPECT_EQ(convert(way, chunks), expected)
            << (way == Way::ToWire ? "to wire: " : "from wire: ") << chunks.size()
            << " chunks, expected " << expected.toPercentEncoding().toStdString();
    }
}

} // namespace
} // namespace zelto
