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

TEST_P(ClickPosition, isTheMostPlausibleOne)
{
    const ClickCase& click = GetParam();
    const std::optional<QPoint> position = clickPosition(click.reported, click.pointer, click.screens);
    ASSERT_EQ(position.has_value(), click.position.has_value());
    if (position) {
        EXPECT_EQ(position->x(), click.position->x());
        EXPECT_EQ(position->y(), click.position->y());
    }
}

/// A screen on which no panel is known.
ScaledScreen bare(const QRect& logical, double scale = 1)
{
    return {logical, logical, scale};
}

const QRect hd{0, 0, 1920, 1080};
const QRect right{1920, 0, 1280, 1024};
const std::vector<ScaledScreen> plain{bare(hd)};
const std::vector<ScaledScreen> doubled{bare({0, 0, 960, 540}, 2)};
const std::vector<ScaledScreen> mixed{bare(hd), bare({1920, 0, 1536, 864}, 1.25)};
const std::vector<ScaledScreen> topPanel{{hd, {0, 28, 1920, 1052}}};
const std::vector<ScaledScreen> bottomPanel{{hd, {0, 0, 1920, 1036}}};
const std::vector<ScaledScreen> leftPanel{{hd, {48, 0, 1872, 1080}}};
const std::vector<ScaledScreen> rightPanel{{hd, {0, 0, 1872, 1080}}};
const std::vector<ScaledScreen> panelOnTheSecond{bare(hd), {right, {1920, 0, 1280, 980}}};
const std::vector<ScaledScreen> doubledBottomPanel{{{0, 0, 1920, 1080}, {0, 0, 1920, 1036}, 2}};
const std::vector<ScaledScreen> fractionalTopPanel{{{0, 0, 1536, 864}, {0, 30, 1536, 834}, 1.25}};
constexpr auto unknown = std::nullopt;
constexpr int least = std::numeric_limits<int>::min();
constexpr int most = std::numeric_limits<int>::max();

INSTANTIATE_TEST_SUITE_P(
    WithAPointer, ClickPosition,
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
        ClickCase{"greatest numbers", {most, most}, QPoint{900, 10}, doubled, QPoint{900, 10}},
        ClickCase{"an item in the corner", {10, 5}, QPoint{12, 8}, topPanel, QPoint{10, 5}},
        ClickCase{"chosen by keys, the pointer elsewhere", {1790, 0}, QPoint{900, 500}, topPanel, QPoint{1790, 0}},
        ClickCase{"chosen by keys, item-local", {8, 14}, QPoint{900, 500}, topPanel, unknown},
        ClickCase{"on a screen that was removed", {2500, 10}, QPoint{2500, 10}, plain, unknown},
        ClickCase{"no screens", {1800, 10}, QPoint{1800, 10}, {}, unknown}));

INSTANTIATE_TEST_SUITE_P(
    WithoutAPointer, ClickPosition,
    testing::Values(
        ClickCase{"logical pixels", {1800, 10}, unknown, plain, QPoint{1800, 10}},
        ClickCase{"device pixels", {1800, 20}, unknown, doubled, QPoint{900, 10}},
        ClickCase{"zeros", {0, 0}, unknown, plain, unknown}, ClickCase{"item-local", {8, 14}, unknown, plain, unknown},
        ClickCase{"item-local, in the strip of the panel", {8, 14}, unknown, topPanel, unknown},
        ClickCase{"item-local, beside the panel", {8, 14}, unknown, leftPanel, unknown},
        ClickCase{"panel-local, on the side without a panel", {1800, 14}, unknown, bottomPanel, unknown},
        ClickCase{"in the middle", {900, 500}, unknown, plain, unknown},
        ClickCase{"in the middle, beside a panel", {900, 500}, unknown, topPanel, unknown},
        ClickCase{"on the panel at the top", {1800, 14}, unknown, topPanel, QPoint{1800, 14}},
        ClickCase{"at the end of a panel at the bottom", {1919, 1079}, unknown, bottomPanel, QPoint{1919, 1079}},
        ClickCase{"on the panel on the left", {20, 1000}, unknown, leftPanel, QPoint{20, 1000}},
        ClickCase{"on the panel on the right", {1900, 1000}, unknown, rightPanel, QPoint{1900, 1000}},
        ClickCase{"on a thick panel that reserves less", {1800, 1020}, unknown, bottomPanel, QPoint{1800, 1020}},
        ClickCase{"on the panel of the second screen", {3000, 1000}, unknown, panelOnTheSecond, QPoint{3000, 1000}},
        ClickCase{"between the screens", {2500, 1040}, unknown, panelOnTheSecond, unknown},
        ClickCase{"logical pixels, which are in the middle as device pixels",
                  {1800, 1060},
                  unknown,
                  doubledBottomPanel,
                  QPoint{1800, 1060}},
        ClickCase{"device pixels at 200 %", {3600, 2120}, unknown, doubledBottomPanel, QPoint{1800, 1060}},
        ClickCase{"device pixels at 125 %", {1900, 20}, unknown, fractionalTopPanel, QPoint{1520, 16}},
        ClickCase{"on a screen that was removed", {2500, 10}, unknown, plain, unknown},
        ClickCase{"off every screen", {5000, 10}, unknown, plain, unknown},
        ClickCase{"least numbers", {least, most}, unknown, mixed, unknown},
        ClickCase{"no screens", {1800, 10}, unknown, {}, unknown}));

} // namespace
} // namespace tallyfox::test
