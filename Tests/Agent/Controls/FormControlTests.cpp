#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/Picker.h"
#include "Tallyfox/Agent/Controls/StepSlider.h"
#include "Tallyfox/Agent/Controls/ToggleSwitch.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

void turnWheel(QWidget& widget, QPoint angle)
{
    const QPointF middle = widget.rect().center();
    QWheelEvent event{middle,         widget.mapToGlobal(middle), {},   angle, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase,          false};
    QApplication::sendEvent(&widget, &event);
}

void sendMouse(QWidget& widget, QEvent::Type type, QPointF position, Qt::MouseButton button = Qt::LeftButton)
{
    const Qt::MouseButton changed = type == QEvent::MouseMove ? Qt::NoButton : button;
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
    QMouseEvent event{type, position, widget.mapToGlobal(position), changed, held, Qt::NoModifier};
    QApplication::sendEvent(&widget, &event);
}

TEST(ToggleSwitch, roleIsCheckBox)
{
    ToggleSwitch toggle;
    toggle.setAccessibleName(QStringLiteral("Notifications"));
    EXPECT_EQ(accessibleRole(toggle), QAccessible::CheckBox);
    EXPECT_EQ(accessibleName(toggle), QStringLiteral("Notifications"));
    EXPECT_FALSE(accessibleState(toggle).checked);
    toggle.showChecked(true);
    EXPECT_TRUE(accessibleState(toggle).checked);
}

TEST(ToggleSwitch, pointerSpaceBarAndScreenReaderToggleIt)
{
    ToggleSwitch toggle;
    std::vector<bool> values;
    QObject::connect(&toggle, &QCheckBox::toggled, &toggle, [&](bool isOn) { values.push_back(isOn); });
    toggle.resize(toggle.sizeHint());
    showActive(toggle);
    click(toggle, QPoint{1, 1});
    click(toggle, toggle.rect().bottomRight());
    pressKey(toggle, Qt::Key_Space);
    QAccessible::queryAccessibleInterface(&toggle)->actionInterface()->doAction(
        QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(values, (std::vector<bool>{true, false, true, false}));
}

TEST(ToggleSwitch, showCheckedEmitsNothing)
{
    ToggleSwitch toggle;
    QObject::connect(&toggle, &QCheckBox::toggled, &toggle, [](bool) { ADD_FAILURE(); });
    toggle.showChecked(true);
    EXPECT_TRUE(toggle.isChecked());
}

TEST(ToggleSwitch, onlyOnIsDrawnInTheAccent)
{
    ToggleSwitch toggle;
    toggle.resize(toggle.sizeHint());
    EXPECT_FALSE(shows(toggle, Theme::accent()));
    toggle.showChecked(true);
    EXPECT_TRUE(shows(toggle, Theme::accent()));
}

class StepSliderTest : public testing::Test {
protected:
    StepSliderTest()
    {
        m_slider.resize(240, m_slider.sizeHint().height());
        QObject::connect(&m_slider, &StepSlider::stepped, &m_slider, [this](int value) { m_steps.push_back(value); });
        m_slider.showValue(20);
        showActive(m_slider);
    }

    StepSlider m_slider{5, 95, 5};
    std::vector<int> m_steps;
};

TEST_F(StepSliderTest, keysMoveByStepsUpToTheEnds)
{
    for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Up, Qt::Key_Left, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_End,
                              Qt::Key_Right, Qt::Key_Home, Qt::Key_Left})
        pressKey(m_slider, key);
    EXPECT_EQ(m_steps, (std::vector<int>{25, 30, 25, 35, 25, 95, 5}));
}

TEST_F(StepSliderTest, wheelMovesAStepPerNotchAndAccumulatesSmallDeltas)
{
    turnWheel(m_slider, {0, 120});
    turnWheel(m_slider, {0, -240});
    for (int turn = 0; turn < 4; ++turn)
        turnWheel(m_slider, {0, 30});
    EXPECT_EQ(m_steps, (std::vector<int>{25, 15, 20}));
    turnWheel(m_slider, {0, -12'000});
    turnWheel(m_slider, {0, -120});
    EXPECT_EQ(m_slider.value(), 5);
}

TEST_F(StepSliderTest, dragSnapsToSteps)
{
    sendMouse(m_slider, QEvent::MouseButtonPress, {0, 10});
    for (int x = 0; x <= 240; ++x)
        sendMouse(m_slider, QEvent::MouseMove, QPointF(x, 10));
    sendMouse(m_slider, QEvent::MouseMove, {1000, 10});
    sendMouse(m_slider, QEvent::MouseButtonRelease, {1000, 10});
    std::vector<int> everyStep;
    for (int step = 5; step <= 95; step += 5)
        everyStep.push_back(step);
    EXPECT_EQ(m_steps, everyStep);
}

TEST_F(StepSliderTest, pressOnTheTrackMovesItThere)
{
    click(m_slider);
    EXPECT_EQ(m_steps, std::vector<int>{50});
    sendMouse(m_slider, QEvent::MouseMove, {0, 10}, Qt::NoButton);
    EXPECT_EQ(m_slider.value(), 50);
}

TEST_F(StepSliderTest, otherButtonsAndHoveringDoNotMoveIt)
{
    sendMouse(m_slider, QEvent::MouseButtonPress, {200, 10}, Qt::RightButton);
    sendMouse(m_slider, QEvent::MouseMove, {220, 10}, Qt::NoButton);
    EXPECT_TRUE(m_steps.empty());
}

TEST_F(StepSliderTest, minimumIsAtTheRightInRightToLeftLayout)
{
    m_slider.setLayoutDirection(Qt::RightToLeft);
    click(m_slider, QPoint{239, 10});
    EXPECT_EQ(m_slider.value(), 5);
    pressKey(m_slider, Qt::Key_Left);
    EXPECT_EQ(m_slider.value(), 10);
}

TEST_F(StepSliderTest, showValueSnapsToNearestStepAndEmitsNothing)
{
    const std::pair<double, int> cases[]{{22.4, 20}, {22.5, 25}, {5, 5}, {95, 95}, {-100, 5}, {1e9, 95}};
    for (const auto& [shown, value] : cases) {
        m_slider.showValue(shown);
        EXPECT_EQ(m_slider.value(), value) << shown;
    }
    EXPECT_TRUE(m_steps.empty());
}

TEST_F(StepSliderTest, valueSetByAScreenReaderSnapsToAStep)
{
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&m_slider);
    EXPECT_EQ(interface->role(), QAccessible::Slider);
    QAccessibleValueInterface* const value = interface->valueInterface();
    ASSERT_TRUE(value);
    EXPECT_EQ(value->currentValue().toInt(), 20);
    EXPECT_EQ(value->minimumValue().toInt(), 5);
    EXPECT_EQ(value->maximumValue().toInt(), 95);
    value->setCurrentValue(33);
    EXPECT_EQ(value->currentValue().toInt(), 35);
    EXPECT_EQ(m_steps, std::vector<int>{35});
}

TEST(Picker, wheelIsIgnoredWithoutFocus)
{
    QWidget window;
    Picker picker{&window};
    QWidget other{&window};
    other.setFocusPolicy(Qt::StrongFocus);
    picker.addItems({QStringLiteral("one"), QStringLiteral("two")});
    showActive(window);
    other.setFocus();
    turnWheel(picker, {0, -120});
    EXPECT_EQ(picker.currentIndex(), 0);
    picker.setFocus();
    turnWheel(picker, {0, -120});
    EXPECT_EQ(picker.currentIndex(), 1);
}

TEST(Picker, openListHasTheNameOfThePicker)
{
    Picker picker;
    picker.addItem(QStringLiteral("one"));
    picker.setAccessibleName(QStringLiteral("Number"));
    showActive(picker);
    picker.showPopup();
    EXPECT_EQ(accessibleName(*picker.view()), QStringLiteral("Number"));
    picker.hidePopup();
}

TEST(Picker, isAsWideAsItsWidestText)
{
    Picker picker;
    picker.addItem(QStringLiteral("short"));
    const int narrow = picker.sizeHint().width();
    picker.addItem(QStringLiteral("a much longer text than the first"));
    EXPECT_GT(picker.sizeHint().width(), narrow + 50);
}

} // namespace
} // namespace tallyfox::test
