#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/SegmentedPicker.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QRadioButton>
#include <QToolTip>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

QStringList tabLabels()
{
    return {QStringLiteral("Overview"), QStringLiteral("Dashboard"), QStringLiteral("Ranking"),
            QStringLiteral("Services")};
}

/// A visible picker as wide as in the popover; its first segment has the focus.
class SegmentedPickerTest : public testing::Test {
protected:
    SegmentedPickerTest()
    {
        QObject::connect(&picker, &SegmentedPicker::currentIndexChanged,
                         [this](int index) { changes.push_back(index); });
        picker.setFixedWidth(396);
        showActive(picker);
        segments().front()->setFocus();
    }

    [[nodiscard]] QList<QRadioButton*> segments() const
    {
        return picker.findChildren<QRadioButton*>();
    }

    SegmentedPicker picker{QStringLiteral("View"), tabLabels()};
    std::vector<int> changes;
};

TEST_F(SegmentedPickerTest, firstSegmentIsSelectedInitially)
{
    EXPECT_EQ(picker.currentIndex(), 0);
    EXPECT_TRUE(segments().front()->isChecked());
}

TEST_F(SegmentedPickerTest, clickSelectsASegmentAndEmits)
{
    click(*segments().at(2), QPoint{3, 3});
    EXPECT_EQ(picker.currentIndex(), 2);
    EXPECT_EQ(changes, std::vector{2});
}

TEST_F(SegmentedPickerTest, clickOnSelectedSegmentEmitsNothing)
{
    click(*segments().at(0));
    EXPECT_EQ(picker.currentIndex(), 0);
    EXPECT_TRUE(changes.empty());
}

TEST_F(SegmentedPickerTest, indexSetTwiceEmitsOnce)
{
    picker.setCurrentIndex(3);
    picker.setCurrentIndex(3);
    EXPECT_EQ(picker.currentIndex(), 3);
    EXPECT_EQ(changes, std::vector{3});
}

TEST_F(SegmentedPickerTest, indexOutOfRangeIsIgnored)
{
    picker.setCurrentIndex(4);
    picker.setCurrentIndex(-1);
    EXPECT_EQ(picker.currentIndex(), 0);
    EXPECT_TRUE(changes.empty());
}

TEST_F(SegmentedPickerTest, arrowKeysSelectTheNeighbour)
{
    pressKey(*segments().at(0), Qt::Key_Right);
    EXPECT_EQ(picker.currentIndex(), 1);
    EXPECT_TRUE(segments().at(1)->hasFocus());
    pressKey(*segments().at(1), Qt::Key_Left);
    EXPECT_EQ(picker.currentIndex(), 0);
    EXPECT_EQ(changes, (std::vector{1, 0}));
}

TEST_F(SegmentedPickerTest, onlySelectedSegmentIsATabStop)
{
    picker.setCurrentIndex(2);
    for (const QRadioButton* segment : segments())
        EXPECT_EQ((segment->focusPolicy() & Qt::TabFocus) != 0, segment->isChecked()) << qPrintable(segment->text());
}

TEST_F(SegmentedPickerTest, exposesANamedGroupOfRadioButtons)
{
    picker.setCurrentIndex(1);
    EXPECT_EQ(accessibleName(picker), QStringLiteral("View"));
    EXPECT_EQ(accessibleRole(picker), QAccessible::Grouping);
    for (int index = 0; index < segments().size(); ++index) {
        QRadioButton& segment = *segments().at(index);
        EXPECT_EQ(accessibleName(segment), tabLabels().at(index));
        EXPECT_EQ(accessibleRole(segment), QAccessible::RadioButton);
        EXPECT_EQ(accessibleState(segment).checked, index == 1);
    }
}

TEST_F(SegmentedPickerTest, segmentsShareTheWidthEqually)
{
    for (const int width : {396, 397, 398, 399}) {
        picker.setFixedWidth(width);
        for (const QRadioButton* segment : segments())
            EXPECT_NEAR(segment->width(), (width - 4) / 4, 1) << width;
        EXPECT_EQ(segments().back()->geometry().right(), width - 3);
    }
}

TEST_F(SegmentedPickerTest, onlySelectedSegmentIsRaised)
{
    const QImage image = picker.grab().toImage();
    const auto inside = [&](int index) {
        return image.pixel(segments().at(index)->geometry().topLeft() + QPoint{9, 4});
    };
    EXPECT_EQ(inside(0), Theme::surface().rgb());
    EXPECT_EQ(inside(3), Theme::surfaceStrong().rgb());
}

TEST(SegmentedPicker, labelsFiftyPercentLongerAreNotElided)
{
    QStringList labels = tabLabels();
    for (QString& label : labels)
        label += label.left(label.size() / 2);
    SegmentedPicker picker{QStringLiteral("View"), labels};
    picker.setFixedWidth(396);
    picker.show();
    for (const QRadioButton* segment : picker.findChildren<QRadioButton*>()) {
        EXPECT_GE(segment->width(), QFontMetrics{segment->font()}.horizontalAdvance(segment->text()) + 8);
        EXPECT_GE(segment->font().pixelSize(), 9);
    }
}

TEST(SegmentedPicker, elidedLabelHasATooltip)
{
    SegmentedPicker picker{QStringLiteral("View"),
                           {QStringLiteral("A label that no segment has room for"), QStringLiteral("Short")}};
    picker.resize(160, 28);
    picker.show();
    const auto segments = picker.findChildren<QRadioButton*>();
    EXPECT_EQ(tooltipAt(*segments.at(0), {5, 5}), segments.at(0)->text());
    EXPECT_NE(tooltipAt(*segments.at(1), {5, 5}), segments.at(1)->text()) << "the whole text is visible";
    QToolTip::hideText();
}

TEST(SegmentedPicker, firstSegmentIsAtTheRightInRightToLeftLayout)
{
    SegmentedPicker picker{QStringLiteral("View"), tabLabels()};
    picker.setFixedWidth(396);
    picker.setLayoutDirection(Qt::RightToLeft);
    picker.show();
    const QList<QRadioButton*> segments = picker.findChildren<QRadioButton*>();
    EXPECT_GT(segments.front()->x(), segments.back()->x());
}

TEST(SegmentedPicker, focusRingAppearsForKeyboardOnly)
{
    SegmentedPicker picker{QStringLiteral("View"), tabLabels()};
    picker.setFixedWidth(396);
    showActive(picker);
    QRadioButton& first = *picker.findChildren<QRadioButton*>().front();
    first.setFocus();
    const QPoint edge{first.width() / 2, 1};
    EXPECT_NE(first.grab().toImage().pixel(edge), Theme::accent().rgb());
    picker.setAttribute(Qt::WA_KeyboardFocusChange);
    EXPECT_EQ(first.grab().toImage().pixel(edge), Theme::accent().rgb());
}

} // namespace
} // namespace tallyfox::test
