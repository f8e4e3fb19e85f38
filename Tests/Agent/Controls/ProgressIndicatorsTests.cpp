#include "Support/Agent/Widgets.h"
#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Controls/ProgressIndicators.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QAbstractEventDispatcher>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

/// The filled pixels of a bar that is 100 wide and shows `percent`.
int filledPixels(double percent, Qt::LayoutDirection direction = Qt::LeftToRight)
{
    UsageBar bar{Theme::codex()};
    bar.setLayoutDirection(direction);
    bar.resize(100, bar.sizeHint().height());
    bar.setUsedPercent(percent);
    const QImage image = bar.grab().toImage();
    int filled = 0;
    for (int x = 0; x < image.width(); ++x)
        filled += image.pixel(x, 3) == Theme::codex().rgb() ? 1 : 0;
    return filled;
}

TEST(UsageBar, fillsUpWithThePercentage)
{
    EXPECT_EQ(filledPixels(0), 0);
    EXPECT_NEAR(filledPixels(42.5), 42, 1);
    EXPECT_NEAR(filledPixels(100), 100, 2); // the ends are round
}

TEST(UsageBar, percentageIsClamped)
{
    EXPECT_EQ(filledPixels(-5), 0);
    EXPECT_EQ(filledPixels(104.6), filledPixels(100));
}

TEST(UsageBar, fillsFromTheRightInRightToLeftLayout)
{
    EXPECT_NEAR(filledPixels(42.5, Qt::RightToLeft), 42, 1);
    UsageBar bar{Theme::codex()};
    bar.setLayoutDirection(Qt::RightToLeft);
    bar.resize(100, 6);
    bar.setUsedPercent(40);
    EXPECT_EQ(pixelOf(bar, {90, 3}), Theme::codex().rgb());
    EXPECT_EQ(pixelOf(bar, {10, 3}), Theme::surfaceStrong().rgb());
}

TEST(UsageBar, exposesNameAndWholePercents)
{
    UsageBar bar{Theme::codex()};
    bar.setAccessibleName(QStringLiteral("Codex usage"));
    bar.setUsedPercent(42.5);
    EXPECT_EQ(accessibleRole(bar), QAccessible::ProgressBar);
    EXPECT_EQ(accessibleName(bar), QStringLiteral("Codex usage"));
    EXPECT_EQ(accessibleValue(bar), QStringLiteral("43"));
}

bool hasTimer(QObject& object)
{
    return !QAbstractEventDispatcher::instance()->registeredTimers(&object).isEmpty();
}

TEST(ActivityIndicator, timerRunsOnlyWhileVisible)
{
    QWidget window;
    ActivityIndicator indicator{QStringLiteral("Refreshing"), &window};
    EXPECT_FALSE(hasTimer(indicator));
    window.show();
    EXPECT_TRUE(hasTimer(indicator));
    indicator.hide();
    EXPECT_FALSE(hasTimer(indicator));
    indicator.show();
    window.hide();
    EXPECT_FALSE(hasTimer(indicator)) << "a timer runs in a hidden window";
}

TEST(ActivityIndicator, looksDifferentAfterAStep)
{
    ActivityIndicator indicator{QStringLiteral("Refreshing")};
    indicator.show();
    const QImage before = indicator.grab().toImage();
    EXPECT_TRUE(spinUntil([&] { return indicator.grab().toImage() != before; }));
}

TEST(ActivityIndicator, exposesItsName)
{
    ActivityIndicator indicator{QStringLiteral("Refreshing")};
    EXPECT_EQ(accessibleRole(indicator), QAccessible::ProgressBar);
    EXPECT_EQ(accessibleName(indicator), QStringLiteral("Refreshing"));
}

} // namespace
} // namespace tallyfox::test
