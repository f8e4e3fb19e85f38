#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/Metric.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QToolTip>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

QString longText()
{
    return QStringLiteral("The history of this provider could not be read as a whole, and what was read is old");
}

QString joined(const QStringList& lines)
{
    return lines.join(QLatin1Char{' '});
}

TEST(FittedLines, textThatFitsIsOneLine)
{
    const QString text = QStringLiteral("Local metadata");
    EXPECT_EQ(fittedLines(text, Theme::body(), 400, 1), QStringList{text});
    EXPECT_EQ(fittedLines(text, Theme::body(), 400, 3), QStringList{text});
}

TEST(FittedLines, textWrapsBetweenWords)
{
    const QStringList lines = fittedLines(longText(), Theme::body(), 200, 9);
    EXPECT_GT(lines.size(), 2);
    EXPECT_EQ(joined(lines), longText());
    for (const QString& line : lines)
        EXPECT_LE(QFontMetrics{Theme::body()}.horizontalAdvance(line), 200);
}

TEST(FittedLines, textBeyondTheLastLineIsElided)
{
    const QStringList lines = fittedLines(longText(), Theme::body(), 200, 2);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines.back().endsWith(QChar{0x2026}));
    EXPECT_LE(QFontMetrics{Theme::body()}.horizontalAdvance(lines.back()), 200);
}

TEST(FittedLines, emptyTextHasNoLines)
{
    EXPECT_TRUE(fittedLines({}, Theme::body(), 200, 2).isEmpty());
}

TEST(FittedLines, longWordIsElidedInsteadOfBroken)
{
    const int width = QFontMetrics{Theme::body()}.horizontalAdvance(QStringLiteral("Observe"));
    const QStringList lines = fittedLines(QStringLiteral("Observed from afar"), Theme::body(), width, 3);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines.front().startsWith(QStringLiteral("Obs")));
    EXPECT_TRUE(lines.front().endsWith(QChar{0x2026}));
}

TEST(FittedLines, zeroWidthTerminates)
{
    EXPECT_EQ(fittedLines(longText(), Theme::body(), 0, 3).size(), 1);
}

TEST(TextLabel, textThatFitsIsNotElided)
{
    TextLabel label{QStringLiteral("Today"), Theme::body(), Theme::ink()};
    label.resize(label.sizeHint());
    EXPECT_FALSE(label.isElided());
}

TEST(TextLabel, textWithoutSpaceForAnEllipsisIsElided)
{
    TextLabel label{QStringLiteral("Today"), Theme::body(), Theme::ink()};
    label.resize(2, label.sizeHint().height());
    EXPECT_TRUE(label.isElided());
}

TEST(TextLabel, textEndingInAnEllipsisIsNotElided)
{
    TextLabel label{QString{QStringLiteral("Wait") + QChar{0x2026}}, Theme::body(), Theme::ink()};
    label.resize(label.sizeHint());
    EXPECT_FALSE(label.isElided());
}

TEST(TextLabel, elidedTextIsCompleteInTooltipAndAccessibleName)
{
    TextLabel label{longText(), Theme::body(), Theme::ink()};
    label.resize(120, label.sizeHint().height());
    label.show();
    EXPECT_TRUE(label.isElided());
    EXPECT_EQ(tooltipAt(label, {5, 5}), longText());
    EXPECT_EQ(accessibleName(label), longText());
    EXPECT_EQ(accessibleRole(label), QAccessible::StaticText);
    QToolTip::hideText();
}

TEST(TextLabel, heightGrowsUpToTheMaximumOfLines)
{
    TextLabel label{longText(), Theme::body(), Theme::ink()};
    const int line = label.sizeHint().height();
    label.setMaximumLines(2);
    EXPECT_EQ(label.heightForWidth(label.sizeHint().width()), line);
    EXPECT_EQ(label.heightForWidth(400), 2 * line);
    EXPECT_EQ(label.heightForWidth(100), 2 * line);
}

TEST(TextLabel, textIsDrawnInItsColourAndMarkupIsLiteral)
{
    TextLabel label{QStringLiteral("<b>I</b>"), Theme::system(40, QFont::Bold), Theme::claude()};
    label.resize(label.sizeHint());
    EXPECT_TRUE(shows(label, Theme::claude()));
    label.setColor(Theme::success());
    EXPECT_TRUE(shows(label, Theme::success()));
    EXPECT_EQ(accessibleName(label), QStringLiteral("<b>I</b>"));
}

TEST(Badge, textHasPaddingAndAFaintBackground)
{
    Badge badge{QStringLiteral("Stale"), Theme::claude()};
    const QFontMetricsF metrics{badge.font()};
    EXPECT_EQ(badge.font().pixelSize(), Theme::caption2().pixelSize());
    EXPECT_EQ(badge.font().weight(), QFont::Medium);
    EXPECT_NEAR(badge.sizeHint().width(), metrics.horizontalAdvance(badge.text()) + 12, 1);
    EXPECT_NEAR(badge.sizeHint().height(), metrics.height() + 6, 1);
    badge.resize(badge.sizeHint());
    EXPECT_TRUE(isNear(pixelOf(badge, {3, badge.height() / 2}), over(Theme::canvas(), Theme::claude(), 0.1)));
}

TEST(IconTile, symbolIsDrawnOnARoundedTile)
{
    IconTile tile{IconTile::small, Symbol::barChartFill, Theme::cream(), Theme::accent()};
    EXPECT_EQ(tile.size(), QSize(28, 28));
    EXPECT_EQ(pixelOf(tile, {14, 2}), Theme::accent().rgb());
    EXPECT_EQ(pixelOf(tile, {0, 0}), Theme::canvas().rgb()) << "the corners are not round";
    EXPECT_TRUE(shows(tile, Theme::cream()));
}

TEST(ColumnWidths, columnsAreEqualIfAllFit)
{
    EXPECT_EQ(columnWidths({50, 20, 100}, 300), (std::vector{100, 100, 100}));
}

TEST(ColumnWidths, wideColumnGetsUnusedSpaceOfOthers)
{
    EXPECT_EQ(columnWidths({50, 20, 170}, 300), (std::vector{70, 40, 190}));
}

TEST(ColumnWidths, onlyWideColumnsAreCutIfSpaceIsShort)
{
    EXPECT_EQ(columnWidths({50, 20, 900}, 300), (std::vector{50, 20, 230}));
    EXPECT_EQ(columnWidths({900, 20, 900}, 300), (std::vector{140, 20, 140}));
}

TEST(ColumnWidths, noColumnsNeedNoWidth)
{
    EXPECT_TRUE(columnWidths({}, 300).empty());
}

TEST(MetricRow, longValueIsElidedAndExposedInFull)
{
    MetricRow row{3};
    row.setMetric(0, QStringLiteral("Today"), QStringLiteral("123456.8M"));
    row.setMetric(1, QStringLiteral("Source"), longText());
    row.setMetric(2, QStringLiteral("Confidence"), QStringLiteral("Observed"));
    row.resize(370, row.sizeHint().height());
    row.show();
    settle();
    const auto labels = row.findChildren<TextLabel*>(); // of each metric, the title and the value
    ASSERT_EQ(labels.size(), 6);
    EXPECT_FALSE(labels[1]->isElided());
    EXPECT_TRUE(labels[3]->isElided());
    EXPECT_FALSE(labels[5]->isElided());
    EXPECT_LE(row.findChildren<Metric*>().at(2)->geometry().right(), 369);
    EXPECT_EQ(labels[3]->text(), longText());
}

TEST(MetricRow, changedTextRelayoutsColumns)
{
    MetricRow row{2};
    row.setMetric(0, QStringLiteral("Today"), QStringLiteral("1"));
    row.setMetric(1, QStringLiteral("Source"), QStringLiteral("2"));
    row.resize(210, row.sizeHint().height());
    row.show();
    const Metric& second = *row.findChildren<Metric*>().at(1);
    EXPECT_EQ(second.x(), 110);
    row.setMetric(1, QStringLiteral("Source"), QStringLiteral("Showing last successful"));
    settle();
    EXPECT_LT(second.x(), 110);
}

} // namespace
} // namespace tallyfox::test
