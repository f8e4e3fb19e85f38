#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"
#include "Tallyfox/Agent/StatusItem/StatusNotifierItem.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QColor>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>
#include <utility>
#include <vector>

namespace tallyfox::test {
namespace {

TEST(StatusIconNumber, hasThreeCharactersAtMost)
{
    using Limits = std::numeric_limits<std::int64_t>;
    const std::vector<std::pair<std::optional<std::int64_t>, const char*>> numbers{
        {std::nullopt, ""},     {0, "0"},   {42, "42"},   {100, "100"}, {999, "999"},         {1000, "99+"},
        {Limits::max(), "99+"}, {-5, "-5"}, {-99, "-99"}, {-100, "<0"}, {Limits::min(), "<0"}};
    for (const auto& [percent, number] : numbers)
        EXPECT_EQ(StatusIconPainter::number(percent), QString::fromLatin1(number));
}

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// As the accessibility guidelines define it: 1 to 21.
double contrast(const QColor& one, const QColor& other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// The pixels of `image` that are nearer to the digits' colour than to the tile's.
QRect digits(const QImage& image)
{
    QRect found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (pixel.alpha() == 255 && contrast(pixel, Theme::cream()) < contrast(pixel, Theme::accent()))
                found |= QRect{x, y, 1, 1};
        }
    }
    return found;
}

class StatusIcon : public testing::TestWithParam<int> { };

TEST_P(StatusIcon, isASquareTileWithRoundCorners)
{
    const int side = GetParam();
    for (const QString& number : {QString{}, QStringLiteral("42")}) {
        const QImage image = StatusIconPainter::image(number, side);
        EXPECT_EQ(image.size(), QSize(side, side));
        EXPECT_LT(image.pixelColor(0, 0).alpha(), 128);
        EXPECT_EQ(image.pixel(side / 2, 0), Theme::accent().rgb());
    }
}

TEST_P(StatusIcon, numbersFillTheTileAndAreNotCutOff)
{
    const int side = GetParam();
    for (const char* number : {"0", "7", "42", "88", "100", "999", "99+", "-99"}) {
        const QRect box = digits(StatusIconPainter::image(QString::fromLatin1(number), side));
        EXPECT_GE(box.left(), 1) << number;
        EXPECT_LE(box.right(), side - 2) << number;
        EXPECT_GE(box.height(), side * 0.6) << number;
        EXPECT_LE(box.height(), side * 0.75) << number;
        EXPECT_NEAR(box.center().x(), (side - 1) / 2.0, side * 0.08) << number;
    }
}

TEST_P(StatusIcon, everyPercentageLooksDifferent)
{
    std::set<QByteArray> pictures;
    for (int percent = 0; percent <= 100; ++percent)
        pictures.insert(statusNotifierPixmap(StatusIconPainter::image(QString::number(percent), GetParam())).argb);
    pictures.insert(statusNotifierPixmap(StatusIconPainter::image({}, GetParam())).argb);
    EXPECT_EQ(pictures.size(), 102U);
}

TEST_P(StatusIcon, isAmongTheSizesOfTheIcon)
{
    EXPECT_EQ(StatusIconPainter::icon(QStringLiteral("42"))
                  .pixmap(GetParam())
                  .toImage()
                  .convertToFormat(QImage::Format_ARGB32_Premultiplied),
              StatusIconPainter::image(QStringLiteral("42"), GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Sides, StatusIcon, testing::ValuesIn(StatusIconPainter::sides));

TEST(StatusIconColors, canBeReadOnDarkAndLightPanels)
{
    EXPECT_GT(contrast(Theme::cream(), Theme::accent()), 4.5);
    EXPECT_GT(contrast(Theme::accent(), QColor{0x22, 0x22, 0x22}), 2);
    EXPECT_GT(contrast(Theme::accent(), QColor{0xee, 0xee, 0xee}), 4.5);
}

TEST(StatusNotifierPixmap, isUnpremultipliedArgbInNetworkByteOrder)
{
    QImage image{2, 2, QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    image.setPixelColor(0, 0, QColor{1, 2, 3});
    image.setPixelColor(1, 0, QColor{255, 0, 0, 128});
    const StatusNotifierPixmap pixmap = statusNotifierPixmap(image);
    EXPECT_EQ(pixmap.width, 2);
    EXPECT_EQ(pixmap.height, 2);
    EXPECT_EQ(pixmap.argb.toHex(' '), QByteArray{"ff 01 02 03 80 ff 00 00 00 00 00 00 00 00 00 00"});
}

TEST(StatusNotifierPixmap, emptyImageIsAnEmptyPixmap)
{
    EXPECT_EQ(statusNotifierPixmap(QImage{}), StatusNotifierPixmap{});
}

} // namespace
} // namespace tallyfox::test
