#include "Tallyfox/Agent/StatusItem/TrayManagerWatch.h"

#include "Tallyfox/Agent/Desktop/Display.h"

#include <QByteArray>
#include <QGuiApplication>

#include <cstdlib>
#include <xcb/xcb.h>

namespace tallyfox {

namespace {

QByteArray selectionName()
{
    int screen = 0;
    int display = 0;
    char* host = nullptr;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0)
        std::free(host);
    return QByteArrayLiteral("_NET_SYSTEM_TRAY_S") + QByteArray::number(screen);
}

/// Makes the server report the destruction of `window`; false when it is destroyed already.
bool selectDestroyNotify(xcb_connection_t* connection, xcb_window_t window)
{
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    const auto cookie = xcb_change_window_attributes_checked(connection, window, XCB_CW_EVENT_MASK, &mask);
    const XcbReply<xcb_generic_error_t> error{xcb_request_check(connection, cookie)};
    return !error;
}

} // namespace

TrayManagerWatch::TrayManagerWatch(QObject* parent)
    : QObject{parent}
    , m_connection{x11Connection()}
{
    if (m_connection == nullptr)
        return;
    m_changeTimer.setSingleShot(true);
    connect(&m_changeTimer, &QTimer::timeout, this, &TrayManagerWatch::managerChanged);
    m_selection = x11Atom(m_connection, selectionName());
    m_announcement = x11Atom(m_connection, QByteArrayLiteral("MANAGER"));
    qGuiApp->installNativeEventFilter(this); // removed by its destructor
    findManager();
}

void TrayManagerWatch::findManager()
{
    const auto cookie = xcb_get_selection_owner(m_connection, m_selection);
    const XcbReply<xcb_get_selection_owner_reply_t> reply{xcb_get_selection_owner_reply(m_connection, cookie, nullptr)};
    setManager(reply ? reply->owner : 0);
}

void TrayManagerWatch::setManager(quint32 window)
{
    if (window != 0 && !selectDestroyNotify(m_connection, window))
        window = 0;
    if (window == m_manager)
        return;
    m_manager = window;
    m_changeTimer.start();
}

/// Trays announce themselves to the root window, whose messages Qt selects anyway.
bool TrayManagerWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    const int type = event->response_type & 0x7f;
    if (type == XCB_CLIENT_MESSAGE) {
        const auto* announcement = static_cast<const xcb_client_message_event_t*>(message);
        if (announcement->type == m_announcement && announcement->data.data32[1] == m_selection)
            findManager();
    } else if (type == XCB_DESTROY_NOTIFY
               && static_cast<const xcb_destroy_notify_event_t*>(message)->window == m_manager) {
        findManager();
    }
    return false;
}

} // namespace tallyfox
