#include "platform/Paths.h"

#include <gtest/gtest.h>

namespace zelto {
namespace {

TEST(Paths, JoinAddsASeparatorOnlyWhenMissing)
{
    const struct {
        const char* left;
        const char* right;
        const char* joined;
    } cases[] = {
        { "/data", "Links", "/data/Links" },
        { "/data/", "Links", "/data/Links" },
        { "C:\\Data\\", "Links", "C:\\Data\\Links" }, // a stored Windows path keeps its separator
        { "", "Links", "Links" },
    };
    for (const auto& c : cases)
        EXPECT_EQ(joinPath(QString::fromUtf8(c.left), QString::fromUtf8(c.right)),
            QString::fromUtf8(c.joined))
            << c.left;
}

} // namespace
} // namespace zelto
