#include "Tallyfox/Agent/Desktop/Compositing.h"

#include <QGuiApplication>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace tallyfox {

namespace {

template <typename Reply> using ReplyPointer = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_atom_t atom(xcb_connection_t* connection, const QByteArray& name)
{
    const auto cookie = xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.constData());
    const ReplyPointer<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(connection, cookie, nullptr), &std::free};
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

bool desktopComposes()
{
    // The offscreen platform has this interface too, but no X server behind it.
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || QGuiApplication::platformName() != QStringLiteral("xcb"))
        return QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
    xcb_connection_t* connection = x11->connection();
    // A compositing manager owns this selection (EWMH). Qt's windows are all on the first X screen.
    const xcb_atom_t selection = atom(connection, QByteArrayLiteral("_NET_WM_CM_S0"));
    if (selection == XCB_ATOM_NONE)
        return false;
    const ReplyPointer<xcb_get_selection_owner_reply_t> owner{
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, selection), nullptr), &std::free};
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace tallyfox
