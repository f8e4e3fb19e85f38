#pragma once

#include <xcb/xcb.h>

namespace tallyfox::WindowListing {

/// Keeps an X11 window out of taskbar, switcher and pager, or lets it in. A shown window belongs to the window manager,
/// which is asked; a hidden one says it of itself, for the time when it is shown.
void setListed(xcb_connection_t& connection, xcb_window_t window, bool isListed, bool isShown);

} // namespace tallyfox::WindowListing
