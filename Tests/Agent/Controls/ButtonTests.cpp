#include "Support/Agent/Widgets.h"
#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/PushButton.h"
#include "Tallyfox/Agent/Controls/ToolButton.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

int clicksOf(QPushButton& button)
{
    int clicks = 0;
    const auto connection = QObject::connect(&button, &QPushButton::clicked, [&clicks] { ++clicks; });
    click(button);
    pressKey(button, Qt::Key_Space);
    pressKey(button, Qt::Key_Return);
    QObject::disconnect(connection);
    return clicks;
}

TEST(ToolButton, isTwentyFourPixelsWideAndExposesItsHelp)
{
    ToolButton button{Symbol::gear, QStringLiteral("Settings")};
    EXPECT_EQ(button.size(), QSize(24, 24));
    EXPECT_EQ(button.toolTip(), QStringLiteral("Settings"));
    EXPECT_EQ(accessibleName(button), QStringLiteral("Settings"));
    EXPECT_EQ(accessibleRole(button), QAccessible::Button);
}

TEST(ToolButton, pointerSpaceBarAndReturnKeyPressIt)
{
    ToolButton button{Symbol::gear, QStringLiteral("Settings")};
    showActive(button);
    EXPECT_EQ(clicksOf(button), 3);
}

TEST(ToolButton, pressedButtonHasADarkerBackground)
{
    ToolButton button{Symbol::gear, QStringLiteral("Settings")};
    button.setDown(true);
    EXPECT_EQ(pixelOf(button, {12, 1}), Theme::line().rgb());
    button.setDown(false);
    EXPECT_NE(pixelOf(button, {12, 1}), Theme::line().rgb());
}

class KeepAwakeButton : public testing::Test {
protected:
    KeepAwakeButton()
    {
        QObject::connect(&button, &ToggleToolButton::toggleRequested, [this] { ++requests; });
    }

    ToggleToolButton button{{.off = Symbol::cupHot, .on = Symbol::cupHotFill}, QStringLiteral("Keep Mac Awake")};
    int requests = 0;
};

TEST_F(KeepAwakeButton, pressOnlyEmitsARequest)
{
    click(button);
    EXPECT_EQ(requests, 1);
    EXPECT_FALSE(accessibleState(button).checked);
    EXPECT_TRUE(showsSymbol(button, Symbol::cupHot));
}

TEST_F(KeepAwakeButton, toggleOfAScreenReaderOnlyEmitsARequest)
{
    button.toggle();
    EXPECT_EQ(requests, 1);
    EXPECT_FALSE(button.isChecked());
    button.setOn(true);
    button.toggle();
    EXPECT_EQ(requests, 2);
    EXPECT_TRUE(button.isChecked());
}

TEST_F(KeepAwakeButton, stateIsShownAndExposedWithoutARequest)
{
    button.setOn(true);
    EXPECT_TRUE(showsSymbol(button, Symbol::cupHotFill, Theme::accent()));
    EXPECT_TRUE(accessibleState(button).checkable);
    EXPECT_TRUE(accessibleState(button).checked);
    button.setOn(false);
    EXPECT_TRUE(showsSymbol(button, Symbol::cupHot));
    EXPECT_FALSE(accessibleState(button).checked);
    EXPECT_EQ(requests, 0);
}

TEST(PushButton, pointerSpaceBarAndReturnKeyPressIt)
{
    PushButton button{QStringLiteral("Refresh")};
    showActive(button);
    EXPECT_EQ(clicksOf(button), 3);
    EXPECT_EQ(accessibleName(button), QStringLiteral("Refresh"));
}

TEST(PushButton, prominentButtonIsFilledWithTheAccent)
{
    PushButton button{QStringLiteral("Allow"), ButtonStyle::borderedProminent};
    button.resize(button.sizeHint());
    EXPECT_EQ(pixelOf(button, {6, 13}), Theme::accent().rgb());
}

TEST(PushButton, borderedButtonHasABorder)
{
    PushButton button{QStringLiteral("Refresh"), ButtonStyle::bordered};
    button.resize(button.sizeHint());
    EXPECT_EQ(pixelOf(button, {0, 13}), Theme::line().rgb());
    EXPECT_EQ(pixelOf(button, {6, 13}), Theme::surface().rgb());
}

TEST(PushButton, symbolWidensTheButton)
{
    PushButton button{QStringLiteral("Refresh")};
    const int without = button.sizeHint().width();
    button.setSymbol(Symbol::arrowClockwise);
    EXPECT_EQ(button.sizeHint().width(), without + 20);
}

TEST(PushButton, pressedAndDisabledLookDifferent)
{
    for (const ButtonStyle style : {ButtonStyle::plain, ButtonStyle::bordered, ButtonStyle::borderedProminent}) {
        PushButton button{QStringLiteral("Refresh"), style};
        button.resize(button.sizeHint());
        const QImage atRest = button.grab().toImage();
        button.setDown(true);
        EXPECT_NE(button.grab().toImage(), atRest);
        button.setDown(false);
        button.setEnabled(false);
        EXPECT_NE(button.grab().toImage(), atRest);
    }
}

TEST(PushButton, focusIsVisibleInEveryStyle)
{
    for (const ButtonStyle style : {ButtonStyle::plain, ButtonStyle::bordered, ButtonStyle::borderedProminent}) {
        PushButton button{QStringLiteral("Refresh"), style};
        button.resize(button.sizeHint());
        showActive(button);
        button.setFocus();
        const QColor& ring = style == ButtonStyle::borderedProminent ? Theme::cream() : Theme::accent();
        const QPoint onRing{button.width() / 2, style == ButtonStyle::borderedProminent ? 3 : 1};
        EXPECT_NE(pixelOf(button, onRing), ring.rgb());
        button.setAttribute(Qt::WA_KeyboardFocusChange);
        EXPECT_EQ(pixelOf(button, onRing), ring.rgb());
    }
}

class CardButtonTest : public testing::Test {
protected:
    CardButtonTest()
    {
        auto* layout = new QVBoxLayout{&button};
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(card);
        card->setFixedHeight(50);
        button.resize(200, 50);
    }

    CardButton button{QStringLiteral("Open Token Dashboard")};
    Card* card = new Card{&button};
};

TEST_F(CardButtonTest, heightFollowsContent)
{
    EXPECT_EQ(button.sizeHint().height(), 50);
    card->setFixedHeight(70);
    EXPECT_EQ(button.sizeHint().height(), 70);
}

TEST_F(CardButtonTest, isOneNamedButton)
{
    EXPECT_EQ(accessibleName(button), QStringLiteral("Open Token Dashboard"));
    EXPECT_EQ(accessibleRole(button), QAccessible::Button);
}

TEST_F(CardButtonTest, pointerOnTheContentSpaceBarAndReturnKeyPressIt)
{
    showActive(button);
    EXPECT_EQ(clicksOf(button), 3);
    EXPECT_EQ(button.childAt(100, 25), card) << "the veil blocks the pointer";
}

TEST_F(CardButtonTest, pressIsVisibleOverContent)
{
    EXPECT_EQ(pixelOf(button, {100, 25}), Theme::surface().rgb());
    button.setDown(true);
    EXPECT_NE(pixelOf(button, {100, 25}), Theme::surface().rgb());
}

TEST_F(CardButtonTest, focusIsVisibleOverContent)
{
    showActive(button);
    button.setFocus();
    button.setAttribute(Qt::WA_KeyboardFocusChange);
    EXPECT_EQ(pixelOf(button, {100, 1}), Theme::accent().rgb());
}

} // namespace
} // namespace tallyfox::test
