#pragma once

#include "Tallyfox/Agent/Shortcut/ShortcutKeys.h"

#include <xcb/xcb.h>

namespace tallyfox {

/// The keyboard of an X server. It is read through the XKB extension, which alone knows the user's layouts apart; every
/// server of this century has it.
class X11Keyboard {
public:
    explicit X11Keyboard(xcb_connection_t* connection);

    /// The keyboard as it is now; the server's answers are waited for. Without keys when the server has no XKB.
    [[nodiscard]] Keyboard read() const;

    /// Whether an event says that a keyboard which has been read is another now: a layout or a device has changed, or
    /// the user has gone from one layout to the next.
    [[nodiscard]] bool tellsOfChange(const xcb_generic_event_t& event, const Keyboard& before) const;

private:
    xcb_connection_t* m_connection;
    std::uint8_t m_eventCode = 0; ///< of the extension; 0 without it
};

} // namespace tallyfox
