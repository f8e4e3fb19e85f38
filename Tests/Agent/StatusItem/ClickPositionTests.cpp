#include "Tallyfox/Agent/StatusItem/ClickPosition.h"

#include <gtest/gtest.h>

#include <limits>

namespace tallyfox::test {
namespace {

struct ClickCase {
    const char* what;
    QPoint reported;
    std::optional<QPoint> pointer;
    std::vector<ScaledScreen> screens;
    std::optional<QPoint> position;
};

void PrintTo(const ClickCase& click, std::ostream* out)
{
    *out << click.what;
}

class ClickPosition : public testing::TestWithParam<ClickCase> { };

TEST_P(ClickPosition, isTheOneToBelieve)
{
    const ClickCase& click = GetParam();
    const std::optional<QPoint> position = clickPosition(click.reported, click.pointer, click.screens);
    ASSERT_EQ(position.has_value(), click.position.has_value());
    if (position) {
        EXPECT_EQ(position->x(), click.position->x());
        EXPECT_EQ(position->y(), click.position->y());
    }
}

const std::vector<ScaledScreen> plain{{QRect{0, 0, 1920, 1080}, 1}};
const std::vector<ScaledScreen> doubled{{QRect{0, 0, 960, 540}, 2}};
const std::vector<ScaledScreen> mixed{{QRect{0, 0, 1920, 1080}, 1}, {QRect{1920, 0, 1536, 864}, 1.25}};
constexpr int least = std::numeric_limits<int>::min();
constexpr int most = std::numeric_limits<int>::max();

INSTANTIATE_TEST_SUITE_P(
    Reports, ClickPosition,
    testing::Values(
        ClickCase{"the pointer itself", {1800, 10}, QPoint{1800, 10}, plain, QPoint{1800, 10}},
        ClickCase{"the icon's corner", {1790, 0}, QPoint{1800, 10}, plain, QPoint{1790, 0}},
        ClickCase{"inside of the panel", {30, 10}, QPoint{1800, 10}, plain, QPoint{1800, 10}},
        ClickCase{"zeros", {0, 0}, QPoint{1800, 1070}, plain, QPoint{1800, 1070}},
        ClickCase{"off every screen", {5000, 10}, QPoint{1800, 10}, plain, QPoint{1800, 10}},
        ClickCase{"device pixels", {1800, 20}, QPoint{900, 10}, doubled, QPoint{900, 10}},
        ClickCase{"logical pixels", {900, 10}, QPoint{900, 10}, doubled, QPoint{900, 10}},
        ClickCase{"device pixels of a second screen", {1920 + 1250, 25}, QPoint{2920, 20}, mixed, QPoint{2920, 20}},
        ClickCase{"least numbers", {least, least}, QPoint{1800, 10}, plain, QPoint{1800, 10}},
        ClickCase{"greatest numbers", {most, most}, QPoint{1800, 10}, doubled, QPoint{1800, 10}},
        ClickCase{"no screens", {1800, 10}, QPoint{1800, 10}, {}, QPoint{1800, 10}},
        ClickCase{"no pointer", {1800, 10}, std::nullopt, plain, QPoint{1800, 10}},
        ClickCase{"no pointer, device pixels", {1800, 20}, std::nullopt, doubled, QPoint{900, 10}},
        ClickCase{"no pointer, zeros", {0, 0}, std::nullopt, plain, std::nullopt},
        ClickCase{"no pointer, off every screen", {5000, 10}, std::nullopt, plain, std::nullopt},
        ClickCase{"no pointer, least numbers", {least, most}, std::nullopt, mixed, std::nullopt}));

} // namespace
} // namespace tallyfox::test
