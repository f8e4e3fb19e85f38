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
    /// For each key its groups, which are the user's layouts; a key that is the same in all of them has only one.
    std::map<std::uint8_t, std::vector<Group>> keys;
    /// The keys of Shift, Lock, Control and Mod1 to Mod5, in this order.
    std::array<std::vector<std::uint8_t>, 8> modifiers;
    std::uint8_t group = 0; ///< the layout in use
};

/// What an X server is asked for, and what its key events are compared with.
struct ShortcutKeys {
    std::uint16_t modifiers = 0; ///< the mask of Super and Alt
    std::uint16_t locks = 0; ///< the mask of CapsLock, NumLock and ScrollLock, which make no difference
    std::vector<std::uint8_t> keys; ///< those of B

    [[nodiscard]] bool match(std::uint8_t key, std::uint16_t state) const;
    /// The modifiers with each combination of locks.
    [[nodiscard]] std::vector<std::uint16_t> combinations() const;

    friend bool operator==(const ShortcutKeys&, const ShortcutKeys&) = default;
};

/// Nothing when the keyboard has no Super or no Alt, or has both on one modifier. A layout without a B, like the
/// Russian one, has it where the user's other layouts have it, or else where the key is on most keyboards.
std::optional<ShortcutKeys> shortcutKeys(const Keyboard& keyboard);

} // namespace tallyfox
