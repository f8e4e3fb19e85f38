#include "Tallyfox/Agent/Desktop/WindowManager.h"

#include "Tallyfox/Agent/Desktop/Display.h"

#include <QGuiApplication>
#include <QWidget>

#include <algorithm>
#include <xcb/xcb.h>

namespace tallyfox {

namespace {

constexpr qsizetype maxTokenLength = 256;

/// Puts a client message into the bytes that the server sends on.
std::array<char, 32> toEvent(const xcb_client_message_event_t& message)
{
    std::array<char, 32> event{};
    const auto* const begin = reinterpret_cast<const char*>(&message);
    std::copy(begin, begin + sizeof message, event.begin());
    return event;
}

/// Says, as the startup notification protocol wants it, that the window for this token is there. Until then the desktop
/// shows a busy pointer.
void endStartup(xcb_connection_t* connection, xcb_window_t window, xcb_window_t root, const QByteArray& token)
{
    QByteArray quoted = token;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + quoted + "\"" + '\0';
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = window;
    message.type = x11Atom(connection, "_NET_STARTUP_INFO_BEGIN");
    constexpr qsizetype chunk = sizeof message.data.data8;
    for (qsizetype at = 0; at < text.size(); at += chunk) {
        std::fill(std::begin(message.data.data8), std::end(message.data.data8), std::uint8_t{0});
        std::copy_n(text.begin() + at, std::min(chunk, text.size() - at), std::begin(message.data.data8));
        xcb_send_event(connection, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE, toEvent(message).data());
        message.type = x11Atom(connection, "_NET_STARTUP_INFO");
    }
    xcb_flush(connection);
}

/// The root window of the screen of `window`; none on failure.
xcb_window_t findRoot(xcb_connection_t* connection, xcb_window_t window)
{
    const XcbReply<xcb_get_geometry_reply_t> geometry{
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr)};
    return geometry ? geometry->root : xcb_window_t{XCB_WINDOW_NONE};
}

} // namespace

void askWindowManager(xcb_connection_t* connection, std::uint32_t window, const QByteArray& type,
                      const std::array<std::uint32_t, 5>& data)
{
    const xcb_window_t root = findRoot(connection, window);
    if (root == XCB_WINDOW_NONE)
        return;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = x11Atom(connection, type);
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(connection, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   toEvent(message).data());
    xcb_flush(connection);
}

QByteArray takeStartupToken()
{
    QByteArray token;
    for (const char* variable : {"DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"}) {
        if (const QByteArray value = qgetenv(variable); isActivationToken(value))
            token = value;
        qunsetenv(variable);
    }
    return token;
}

bool isActivationToken(const QByteArray& token)
{
    return !token.isEmpty() && token.size() <= maxTokenLength
        && std::all_of(token.begin(), token.end(), [](char each) { return each > ' ' && each <= '~'; });
}

void setActivationToken(QWidget& window, const QByteArray& token)
{
    const QByteArray valid = isActivationToken(token) ? token : QByteArray{};
    if (xcb_connection_t* connection = x11Connection()) {
        const auto id = static_cast<xcb_window_t>(window.winId());
        const xcb_atom_t property = x11Atom(connection, "_NET_STARTUP_ID");
        xcb_delete_property(connection, id, property); // the token of the last time is used up
        if (!valid.isEmpty()) {
            xcb_change_property(connection, XCB_PROP_MODE_REPLACE, id, property, x11Atom(connection, "UTF8_STRING"), 8,
                                static_cast<std::uint32_t>(valid.size()), valid.constData());
        }
    } else if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) {
        qputenv("XDG_ACTIVATION_TOKEN", valid); // where Qt takes it from when a window is activated
    }
}

void takeFocus(QWidget& window, const QByteArray& token)
{
    window.raise();
    window.activateWindow();
    // Qt adds the time of the last event that it has seen from the X server. A user of native Wayland windows causes
    // none, and desktops refuse the focus to a window whose user was last active before that of another one.
    constexpr std::uint32_t onBehalfOfTheUser = 2;
    xcb_connection_t* const connection = x11Connection();
    if (!connection)
        return;
    const auto id = static_cast<xcb_window_t>(window.winId());
    askWindowManager(connection, id, "_NET_ACTIVE_WINDOW",
                     {onBehalfOfTheUser, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0});
    if (isActivationToken(token))
        endStartup(connection, id, findRoot(connection, id), token);
}

} // namespace tallyfox
