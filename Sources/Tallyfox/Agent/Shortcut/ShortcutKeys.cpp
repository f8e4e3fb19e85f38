#include "Tallyfox/Agent/Shortcut/ShortcutKeys.h"

#include <algorithm>
#include <iterator>

namespace tallyfox {

namespace {

constexpr std::uint32_t letterB = 'b';
constexpr std::uint32_t superLeft = 0xffeb;
constexpr std::uint32_t superRight = 0xffec;
constexpr std::uint32_t altLeft = 0xffe9;
constexpr std::uint32_t altRight = 0xffea;
constexpr std::uint32_t numLock = 0xff7f;
constexpr std::uint32_t scrollLock = 0xff14;
constexpr std::uint16_t capsLockMask = 1U << 1U; ///< the same in every keyboard
constexpr unsigned firstNamelessModifier = 3; ///< Mod1; Shift, Lock and Control come before it
constexpr std::uint16_t allModifiers = 0xff; ///< of an event's state, which also holds buttons and the group
constexpr std::uint8_t usualKeyOfB = 56; ///< the fifth key in the lowest row of letters

bool hasSymbol(const std::vector<Keyboard::Group>& groups, std::uint32_t symbol)
{
    return std::any_of(groups.begin(), groups.end(), [&](const Keyboard::Group& levels) {
        return std::find(levels.begin(), levels.end(), symbol) != levels.end();
    });
}

/// Whether one of the groups of `key` has either symbol.
bool isKeyOf(const Keyboard& keyboard, std::uint8_t key, std::uint32_t symbol, std::uint32_t other)
{
    const auto found = keyboard.keys.find(key);
    return found != keyboard.keys.end() && (hasSymbol(found->second, symbol) || hasSymbol(found->second, other));
}

/// The mask of the first modifier with a key for either symbol; 0 without one.
std::uint16_t findModifier(const Keyboard& keyboard, std::uint32_t symbol, std::uint32_t other)
{
    for (unsigned index = firstNamelessModifier; index < keyboard.modifiers.size(); ++index) {
        for (const std::uint8_t key : keyboard.modifiers.at(index)) {
            if (isKeyOf(keyboard, key, symbol, other))
                return static_cast<std::uint16_t>(1U << index);
        }
    }
    return 0;
}

bool isB(const Keyboard::Group& levels)
{
    return !levels.empty() && levels.front() == letterB;
}

template <typename Condition> std::vector<std::uint8_t> findKeys(const Keyboard& keyboard, const Condition& condition)
{
    std::vector<std::uint8_t> found;
    for (const auto& [key, groups] : keyboard.keys) {
        if (!groups.empty() && condition(groups))
            found.push_back(key);
    }
    return found;
}

std::vector<std::uint8_t> findKeysOfB(const Keyboard& keyboard)
{
    using Groups = std::vector<Keyboard::Group>;
    std::vector<std::uint8_t> found =
        findKeys(keyboard, [&](const Groups& groups) { return isB(groups.at(keyboard.group % groups.size())); });
    if (found.empty()) {
        found = findKeys(keyboard, [](const Groups& groups) { return std::any_of(groups.begin(), groups.end(), isB); });
    }
    return found.empty() ? std::vector<std::uint8_t>{usualKeyOfB} : found;
}

} // namespace

bool ShortcutKeys::match(std::uint8_t key, std::uint16_t state) const
{
    return (state & allModifiers & ~locks) == modifiers && std::find(keys.begin(), keys.end(), key) != keys.end();
}

std::vector<std::uint16_t> ShortcutKeys::combinations() const
{
    std::vector<std::uint16_t> all;
    for (unsigned part = locks; part != 0; part = (part - 1) & locks) // every subset but the empty one, once
        all.push_back(static_cast<std::uint16_t>(modifiers | part));
    all.push_back(modifiers);
    return all;
}

std::vector<std::uint8_t> findSuperKeys(const Keyboard& keyboard)
{
    std::vector<std::uint8_t> found;
    for (const std::vector<std::uint8_t>& modifier : keyboard.modifiers) {
        std::copy_if(modifier.begin(), modifier.end(), std::back_inserter(found),
                     [&](std::uint8_t key) { return isKeyOf(keyboard, key, superLeft, superRight); });
    }
    return found;
}

std::optional<ShortcutKeys> findShortcutKeys(const Keyboard& keyboard)
{
    const std::uint16_t super = findModifier(keyboard, superLeft, superRight);
    const std::uint16_t alt = findModifier(keyboard, altLeft, altRight);
    if (super == 0 || alt == 0 || super == alt)
        return std::nullopt;
    const auto modifiers = static_cast<std::uint16_t>(super | alt);
    const unsigned locks =
        capsLockMask | findModifier(keyboard, numLock, numLock) | findModifier(keyboard, scrollLock, scrollLock);
    return ShortcutKeys{modifiers, static_cast<std::uint16_t>(locks & ~unsigned{modifiers}), findKeysOfB(keyboard)};
}

} // namespace tallyfox
