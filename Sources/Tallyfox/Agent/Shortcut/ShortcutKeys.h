#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace tallyfox {

/// A keyboard as an X server describes it.
struct Keyboard {
    using Group = std::vector<std::uint32_t>; ///< keysyms, one for each level
    /// The groups of each key, one for each of the user's layouts; a key that is the same in all of them has only one.
    std::map<std::uint8_t, std::vector<Group>> keys;
    /// The keys of Shift, Lock, Control and Mod1 to Mod5, in this order.
    std::array<std::vector<std::uint8_t>, 8> modifiers;
    std::uint8_t group = 0; ///< the layout in use
};

/// What to grab from an X server, and to compare its key events with.
struct ShortcutKeys {
    std::uint16_t modifiers = 0; ///< the mask of Super and Alt
    std::uint16_t locks = 0; ///< the mask of CapsLock, NumLock and ScrollLock, which are ignored
    std::vector<std::uint8_t> keys; ///< those of B

    [[nodiscard]] bool match(std::uint8_t key, std::uint16_t state) const;
    /// The masks to grab: the modifiers with each combination of locks.
    [[nodiscard]] std::vector<std::uint16_t> combinations() const;

    friend bool operator==(const ShortcutKeys&, const ShortcutKeys&) = default;
};

/// The keys of Super that are modifiers of a keyboard.
std::vector<std::uint8_t> findSuperKeys(const Keyboard& keyboard);

/// Super+Alt+B on a keyboard. Nothing without Super or Alt, or with both on one modifier. In a layout without a B, like
/// the Russian one, the key is where another of the user's layouts has it, or else where most keyboards have it.
std::optional<ShortcutKeys> findShortcutKeys(const Keyboard& keyboard);

} // namespace tallyfox
