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

} // namespace
} // namespace zelto
