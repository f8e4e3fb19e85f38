#include "Tallyfox/Agent/Theme/Symbol.h"

#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

QImage drawn(Symbol symbol, double scale = 1)
{
    QImage image{QSize(32, 24) * scale, QImage::Format_ARGB32_Premultiplied};
    image.setDevicePixelRatio(scale);
    image.fill(Qt::white);
    QPainter painter{&image};
    drawSymbol(painter, symbol, {0, 0, 32, 24}, Qt::blue);
    return image;
}

/// The smallest rectangle with all pixels that are not white.
QRect inkOf(const QImage& image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != qRgb(255, 255, 255))
                ink |= QRect{x, y, 1, 1};
        }
    }
    return ink;
}

class EverySymbol : public testing::TestWithParam<int> { };

TEST_P(EverySymbol, isDrawnInItsColourCentredInTheFrame)
{
    const QImage image = drawn(static_cast<Symbol>(GetParam()));
    const QRect ink = inkOf(image);
    EXPECT_GT(ink.width(), 8);
    EXPECT_GE(ink.left(), 4);
    EXPECT_LE(ink.right(), 27);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            EXPECT_EQ(qBlue(image.pixel(x, y)), 255) << "neither blue nor white at " << x << ", " << y;
    }
}

INSTANTIATE_TEST_SUITE_P(All, EverySymbol, testing::Range(0, static_cast<int>(Symbol::wind) + 1));

TEST(DrawSymbol, isSharpAtScaleTwo)
{
    const QRect once = inkOf(drawn(Symbol::gear));
    const QRect twice = inkOf(drawn(Symbol::gear, 2));
    EXPECT_NEAR(twice.width(), 2 * once.width(), 2);
}

TEST(DrawSymbol, emptyFrameDrawsNothing)
{
    QImage image{8, 8, QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::white);
    QPainter painter{&image};
    drawSymbol(painter, Symbol::gear, {2, 2, 0, 0}, Qt::blue);
    EXPECT_TRUE(inkOf(image).isEmpty());
}

} // namespace
} // namespace tallyfox::test
