#include "Tallyfox/Agent/Shortcut/ShortcutKeys.h"

#include <gmock/gmock.h>

namespace tallyfox {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr std::uint32_t altSymbol = 0xffe9;
constexpr std::uint32_t superSymbol = 0xffeb;
constexpr std::uint32_t numLockSymbol = 0xff7f;
constexpr std::uint32_t scrollLockSymbol = 0xff14;
constexpr std::uint32_t cyrillicI = 0x6c9;

/// B on key 56, Alt on Mod1, NumLock on Mod2, Super on Mod4.
Keyboard usualKeyboard()
{
    Keyboard keyboard;
    keyboard.keys = {{56, {{'b', 'B'}}},
                     {57, {{'n', 'N'}}},
                     {64, {{altSymbol}}},
                     {77, {{numLockSymbol}}},
                     {133, {{superSymbol}}},
                     {78, {{scrollLockSymbol}}},
                     {80, {}}};
    keyboard.modifiers = {{{50}, {66}, {37}, {64}, {77, 0}, {}, {0, 133}, {}}};
    return keyboard;
}

TEST(ShortcutKeys, modifiersAndLocksAreThoseOfTheKeyboard)
{
    const auto keys = findShortcutKeys(usualKeyboard());
    ASSERT_TRUE(keys);
    EXPECT_EQ(keys->modifiers, 0x48);
    EXPECT_EQ(keys->locks, 0x12);
    EXPECT_THAT(keys->keys, ElementsAre(56));
    EXPECT_THAT(keys->combinations(), UnorderedElementsAre(0x48, 0x4a, 0x58, 0x5a));
}

TEST(ShortcutKeys, scrollLockCountsWhereItIsAModifier)
{
    Keyboard keyboard = usualKeyboard();
    keyboard.modifiers.at(5) = {78};
    EXPECT_EQ(findShortcutKeys(keyboard)->locks, 0x32);
    EXPECT_EQ(findShortcutKeys(keyboard)->combinations().size(), 8U);
}

TEST(ShortcutKeys, lockOnTheModifierOfAltIsNotIgnored)
{
    Keyboard keyboard = usualKeyboard();
    keyboard.modifiers.at(4) = {};
    keyboard.modifiers.at(3) = {64, 77};
    EXPECT_EQ(findShortcutKeys(keyboard)->locks, 0x02);
}

TEST(ShortcutKeys, keyboardWithoutSuperOrAltHasNoShortcut)
{
    for (const unsigned modifier : {3U, 6U}) {
        Keyboard keyboard = usualKeyboard();
        keyboard.modifiers.at(modifier) = {};
        EXPECT_EQ(findShortcutKeys(keyboard), std::nullopt) << modifier;
    }
    EXPECT_EQ(findShortcutKeys(Keyboard{}), std::nullopt);
}

TEST(ShortcutKeys, superAndAltOnOneModifierHaveNoShortcut)
{
    Keyboard keyboard = usualKeyboard();
    keyboard.modifiers = {{{50}, {66}, {37}, {64, 133}, {77}, {}, {}, {}}};
    EXPECT_EQ(findShortcutKeys(keyboard), std::nullopt) << "Alt+B alone would be taken from every program";
}

TEST(ShortcutKeys, keysOfSuperAreThoseOfItsModifier)
{
    Keyboard keyboard = usualKeyboard();
    EXPECT_THAT(findSuperKeys(keyboard), ElementsAre(133));
    keyboard.keys[134] = {{0xffec}};
    EXPECT_THAT(findSuperKeys(keyboard), ElementsAre(133)) << "a key that is no modifier";
    keyboard.modifiers.at(5) = {134};
    EXPECT_THAT(findSuperKeys(keyboard), ElementsAre(134, 133));
    EXPECT_TRUE(findSuperKeys(Keyboard{}).empty());
}

TEST(ShortcutKeys, keyIsThatOfTheLayoutInUse)
{
    Keyboard keyboard = usualKeyboard();
    keyboard.keys[56] = {{'b', 'B'}, {'x', 'X'}};
    keyboard.keys[57] = {{'n', 'N'}, {'b', 'B'}};
    EXPECT_THAT(findShortcutKeys(keyboard)->keys, ElementsAre(56));
    keyboard.group = 1;
    EXPECT_THAT(findShortcutKeys(keyboard)->keys, ElementsAre(57));
}

TEST(ShortcutKeys, layoutWithoutTheLetterUsesTheKeyOfAnotherLayout)
{
    Keyboard keyboard = usualKeyboard();
    keyboard.keys[56] = {{'x', 'X'}, {cyrillicI}};
    keyboard.keys[57] = {{'b', 'B'}, {cyrillicI}};
    keyboard.group = 1;
    EXPECT_THAT(findShortcutKeys(keyboard)->keys, ElementsAre(57));
}

TEST(ShortcutKeys, keyboardWithoutTheLetterUsesTheUsualKey)
{
    Keyboard keyboard = usualKeyboard();
    keyboard.keys[56] = {{cyrillicI}};
    EXPECT_THAT(findShortcutKeys(keyboard)->keys, ElementsAre(56));
}

TEST(ShortcutKeys, severalKeysMayHaveTheLetter)
{
    Keyboard keyboard = usualKeyboard();
    keyboard.keys[57] = {{'b'}};
    EXPECT_THAT(findShortcutKeys(keyboard)->keys, ElementsAre(56, 57));
}

TEST(ShortcutKeys, matchLooksAtKeyAndModifiersOnly)
{
    const ShortcutKeys keys = *findShortcutKeys(usualKeyboard());
    EXPECT_TRUE(keys.match(56, 0x48));
    EXPECT_TRUE(keys.match(56, 0x5a)) << "locks";
    EXPECT_TRUE(keys.match(56, 0x2148)) << "a button, and the second layout";
    EXPECT_FALSE(keys.match(57, 0x48));
    EXPECT_FALSE(keys.match(56, 0x49)) << "Shift";
    EXPECT_FALSE(keys.match(56, 0x40));
    EXPECT_FALSE(keys.match(56, 0));
}

} // namespace
} // namespace tallyfox
