#include "Tallyfox/Agent/Shell/PopoverWindow.h"

#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"
#include "Tallyfox/Agent/Desktop/Display.h"
#include "Tallyfox/Agent/Desktop/LayerShell.h"
#include "Tallyfox/Agent/Desktop/WindowManager.h"
#include "Tallyfox/Agent/Shell/ClickCatcher.h"
#include "Tallyfox/Agent/Shell/PopoverPosition.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <utility>
#include <xcb/xcb.h>

namespace tallyfox {

namespace {

using namespace std::chrono_literals;

constexpr int fadeMilliseconds = 120;

/// How long after a button press has taken the focus away a panel may report the click.
constexpr qint64 clickReportMilliseconds = 400;

/// Whoever holds a grab usually releases it with the button; a locked screen holds it for hours.
constexpr auto shortestGrabInterval = 20ms;
constexpr std::chrono::milliseconds longestGrabInterval = 2s;

/// How much later than the loss of an earlier opening's focus the focus of this one may come.
constexpr auto lateFocusTime = 300ms;

Qt::WindowFlags flagsFor(PopoverKind kind)
{
    switch (kind) {
    case PopoverKind::popup:
        return Qt::Popup | Qt::FramelessWindowHint;
    case PopoverKind::x11Window:
    case PopoverKind::waylandWindow:
    case PopoverKind::layerSurface:
        return Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;
    }
    return {};
}

QScreen& screenAt(std::optional<QPoint> position)
{
    QScreen* screen = position ? QGuiApplication::screenAt(*position) : nullptr;
    return screen ? *screen : *QGuiApplication::primaryScreen();
}

QPoint positionFor(std::optional<QPoint> click, const QSize& size)
{
    const QScreen& screen = screenAt(click ? click : pointerPosition());
    const ScreenArea area{screen.geometry(), screen.availableGeometry()};
    return click && area.screen.contains(*click) ? popoverPosition(*click, area, size) : popoverPosition(area, size);
}

/// Whether a grab would succeed. Qt's own cannot be asked: it is one of the input extension, and Qt ignores its
/// outcome.
bool isPointerFree(xcb_connection_t* connection, xcb_window_t window)
{
    const auto cookie = xcb_grab_pointer(connection, 1, window, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC,
                                         XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME);
    const XcbReply<xcb_grab_pointer_reply_t> reply{xcb_grab_pointer_reply(connection, cookie, nullptr)};
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME); // the server refuses one kind of grab while there is the other
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

} // namespace

PopoverKind popoverKind(const QString& platform, bool isWaylandSession, bool hasLayerShell)
{
    if (platform.startsWith(QStringLiteral("wayland")))
        return hasLayerShell ? PopoverKind::layerSurface : PopoverKind::waylandWindow;
    return platform == QStringLiteral("xcb") && isWaylandSession ? PopoverKind::x11Window : PopoverKind::popup;
}

PopoverWindow::PopoverWindow(PopoverKind kind, QWidget* parent)
    : QWidget(parent, flagsFor(kind))
    , m_kind(kind)
    , m_view(new PopoverView{PopoverTab::overview, this})
    , m_fade(this, "windowOpacity")
{
    setObjectName(QStringLiteral("popover"));
    setWindowTitle(QStringLiteral("Tallyfox"));
    setFixedSize(Theme::popoverWidth, Theme::popoverHeight);
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins({});
    layout->addWidget(m_view);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &PopoverWindow::stayOnScreen);
    m_grabRetries.setSingleShot(true);
    connect(&m_grabRetries, &QTimer::timeout, this, &PopoverWindow::holdGrabs);
    m_lateFocus.setSingleShot(true);
    m_lateFocus.setInterval(lateFocusTime);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &PopoverWindow::followFocus);
    connect(&m_lateFocus, &QTimer::timeout, this, &PopoverWindow::closeAfterFocusLoss);
    m_fade.setDuration(fadeMilliseconds);
    m_fade.setStartValue(0.0);
    m_fade.setEndValue(1.0);
}

PopoverWindow::~PopoverWindow() = default;

void PopoverWindow::open(std::optional<QPoint> click, const QByteArray& activationToken)
{
    m_sinceFocusLoss.invalidate();
    m_isClickedOutside = false;
    m_hasHadFocus = false;
    m_click = click;
    move(positionFor(m_click, size()));
    const bool fades = desktopComposites();
    setWindowOpacity(fades ? 0 : 1);
    if (m_kind == PopoverKind::popup)
        showPopup();
    else
        showWindow(activationToken);
    // Showing a popup gives none of its widgets the focus, which is what screen readers follow.
    m_view->setFocus(Qt::PopupFocusReason);
    if (fades)
        m_fade.start();
}

/// A popup is on top and has the keyboard anyway. If it were activated, Qt would mistake the late event of an earlier
/// popup's closing for this one's loss of focus, and close it again.
void PopoverWindow::showPopup()
{
    show();
    m_grabInterval = shortestGrabInterval;
    holdGrabs();
}

void PopoverWindow::showWindow(const QByteArray& activationToken)
{
    if (m_kind == PopoverKind::layerSurface)
        attachToPanel();
    setActivationToken(*this, activationToken);
    if (xcb_connection_t* connection = x11Connection())
        setWindowListed(connection, static_cast<std::uint32_t>(winId()), false, false);
    show();
    takeFocus(*this, activationToken);
}

void PopoverWindow::attachToPanel()
{
    // Later, because hiding the popover destroys the catcher.
    const auto hideLater = [this] { QMetaObject::invokeMethod(this, &QWidget::hide, Qt::QueuedConnection); };
    for (QScreen* each : QGuiApplication::screens()) {
        m_clickCatchers.push_back(std::make_unique<ClickCatcher>(*each, hideLater));
        m_clickCatchers.back()->show();
    }
    QScreen& screen = screenAt(m_click);
    setScreen(&screen);
    const PopoverAnchor anchor = popoverAnchor(m_click, screen.geometry(), size());
    makeLayerSurface(*this, LayerRole::popover, anchor.edges, anchor.margins);
}

/// Qt tries once, and does not notice when a panel still holds the pointer: then neither a click outside nor a key
/// would reach the popover.
void PopoverWindow::holdGrabs()
{
    xcb_connection_t* const connection = x11Connection();
    if (!connection)
        return;
    QWindow* const window = windowHandle();
    window->setMouseGrabEnabled(false);
    const bool holdsPointer =
        isPointerFree(connection, static_cast<xcb_window_t>(window->winId())) && window->setMouseGrabEnabled(true);
    if (holdsPointer && window->setKeyboardGrabEnabled(true))
        return;
    m_grabRetries.start(m_grabInterval);
    m_grabInterval = std::min(2 * m_grabInterval, longestGrabInterval);
}

void PopoverWindow::stayOnScreen()
{
    if (m_click && !QGuiApplication::screenAt(*m_click))
        m_click.reset();
    if (isVisible())
        move(positionFor(m_click, size()));
}

bool PopoverWindow::hasJustLostFocus() const
{
    return m_sinceFocusLoss.isValid() && m_sinceFocusLoss.elapsed() < clickReportMilliseconds;
}

void PopoverWindow::mousePressEvent(QMouseEvent* event)
{
    m_isClickedOutside = m_kind == PopoverKind::popup && !rect().contains(event->position().toPoint());
    if (!m_isClickedOutside)
        QWidget::mousePressEvent(event);
}

void PopoverWindow::mouseReleaseEvent(QMouseEvent* event)
{
    // Not at the press: the pointer's grab would end with the popup, so the panel would get the release, take it for a
    // click where it was over the status item, and open the popover again.
    if (std::exchange(m_isClickedOutside, false))
        hide();
    else
        QWidget::mouseReleaseEvent(event);
}

void PopoverWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Cancel))
        hide();
    else
        QWidget::keyPressEvent(event);
}

/// The events of widgets do not tell: when a window is closed and opened again at once, there are none, although it
/// loses the focus later. A popup is closed by Qt.
void PopoverWindow::followFocus(const QWindow* focused)
{
    if (m_kind == PopoverKind::popup || isHidden())
        return;
    const bool isFocused = focused && focused == windowHandle();
    if (isFocused)
        m_lateFocus.stop();
    else if (m_hasHadFocus)
        closeAfterFocusLoss();
    else
        m_lateFocus.start(); // the loss may be that of an earlier opening
    m_hasHadFocus = m_hasHadFocus || isFocused;
}

void PopoverWindow::closeAfterFocusLoss()
{
    if (m_kind == PopoverKind::waylandWindow || m_kind == PopoverKind::layerSurface)
        m_sinceFocusLoss.start();
    hide();
}

void PopoverWindow::hideEvent(QHideEvent* event)
{
    m_fade.stop();
    m_grabRetries.stop();
    m_lateFocus.stop();
    m_clickCatchers.clear();
    QWidget::hideEvent(event);
}

} // namespace tallyfox
