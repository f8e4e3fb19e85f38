#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

TEST(Theme, coloursAreThoseOfThePalette)
{
    EXPECT_EQ(Theme::canvas().name(), QStringLiteral("#f3ebdd"));
    EXPECT_EQ(Theme::surface().name(), QStringLiteral("#fbf7f0"));
    EXPECT_EQ(Theme::surfaceStrong().name(), QStringLiteral("#e8d9c8"));
    EXPECT_EQ(Theme::ink().name(), QStringLiteral("#2c2019"));
    EXPECT_EQ(Theme::muted().name(), QStringLiteral("#76685d"));
    EXPECT_EQ(Theme::line().name(), QStringLiteral("#d8c7b3"));
    EXPECT_EQ(Theme::accent().name(), QStringLiteral("#7b4f35"));
    EXPECT_EQ(Theme::cream().name(), QStringLiteral("#f8efe2"));
    EXPECT_EQ(Theme::claude().name(), QStringLiteral("#b96d35"));
    EXPECT_EQ(Theme::success().name(), QStringLiteral("#617249"));
    EXPECT_EQ(Theme::warning().name(), QStringLiteral("#a87832"));
}

TEST(Theme, codexIsTheAccent)
{
    EXPECT_EQ(&Theme::codex(), &Theme::accent());
}

TEST(Theme, withOpacityKeepsTheColour)
{
    const QColor half = Theme::withOpacity(Theme::claude(), 0.5);
    EXPECT_EQ(half.rgb(), Theme::claude().rgb());
    EXPECT_NEAR(half.alphaF(), 0.5, 0.001);
}

} // namespace
} // namespace tallyfox::test
