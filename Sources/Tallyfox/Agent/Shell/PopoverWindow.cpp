#include "Tallyfox/Agent/Shell/PopoverWindow.h"

#include "Tallyfox/Agent/Desktop/Display.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace tallyfox {

namespace {

constexpr int fadeMilliseconds = 120;

/// How long after a button press has taken the focus away a panel may report the click.
constexpr qint64 clickReportMilliseconds = 400;

/// A Wayland client cannot place its windows, and may open popups only from a window of its own: there the popover is
/// an ordinary window that closes when another one gets the focus.
bool canPlaceItself()
{
    return !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

enum class Side { top, bottom, left, right };

/// Half the thickness that a panel which reserves no space may have.
constexpr int clearance = 24;
constexpr int maxPanelThickness = 2 * clearance;

/// How far `point` is from each side of `rect`, in the order of `Side`; negative outside.
std::array<int, 4> distances(const QPoint& point, const QRect& rect)
{
    return {point.y() - rect.top(), rect.bottom() - point.y(), point.x() - rect.left(), rect.right() - point.x()};
}

Side nearestSide(const QPoint& point, const QRect& rect)
{
    const auto all = distances(point, rect);
    return static_cast<Side>(std::min_element(all.begin(), all.end()) - all.begin());
}

/// The side of a panel whose space is not reserved, or not reported, as with several screens. Most panels are at the
/// top or the bottom, with the status items at the end: there a corner counts as top or bottom.
Side sideOfUnknownPanel(const QPoint& click, const QRect& screen)
{
    const auto all = distances(click, screen);
    for (const Side side : {Side::top, Side::bottom, Side::left, Side::right}) {
        if (all.at(static_cast<std::size_t>(side)) < maxPanelThickness)
            return side;
    }
    return nearestSide(click, screen);
}

QPoint clamped(const QPoint& position, const QRect& workArea, const QSize& size)
{
    const auto clamp = [](int value, int low, int high) { return std::max(low, std::min(value, high)); };
    return {clamp(position.x(), workArea.left(), workArea.right() + 1 - size.width()),
            clamp(position.y(), workArea.top(), workArea.bottom() + 1 - size.height())};
}

/// Beside the click, towards the middle of the screen.
QPoint beside(const QPoint& click, Side side, int distance, const QSize& size)
{
    switch (side) {
    case Side::top:
        return {click.x() - size.width() / 2, click.y() + distance};
    case Side::bottom:
        return {click.x() - size.width() / 2, click.y() + 1 - distance - size.height()};
    case Side::left:
        return {click.x() + distance, click.y() - size.height() / 2};
    case Side::right:
        return {click.x() + 1 - distance - size.width(), click.y() - size.height() / 2};
    }
    return click;
}

const QScreen& screenAt(const QPoint& position)
{
    const QScreen* screen = QGuiApplication::screenAt(position);
    return screen ? *screen : *QGuiApplication::primaryScreen();
}

QPoint positionFor(std::optional<QPoint> click, const QSize& size)
{
    const QScreen& screen = screenAt(click.value_or(QCursor::pos()));
    const ScreenArea area{screen.geometry(), screen.availableGeometry()};
    if (click && area.screen.contains(*click))
        return popoverPosition(*click, area, size);
    return popoverPosition(area, size).value_or(centredPosition(area, size));
}

} // namespace

PopoverWindow::PopoverWindow(QWidget* parent)
    : QWidget(parent, (canPlaceItself() ? Qt::Popup : Qt::Window) | Qt::FramelessWindowHint)
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
    m_fade.setDuration(fadeMilliseconds);
    m_fade.setStartValue(0.0);
    m_fade.setEndValue(1.0);
}

void PopoverWindow::open(std::optional<QPoint> click)
{
    m_sinceDeactivation.invalidate();
    m_isClickedOutside = false;
    m_click = click;
    move(positionFor(click, size()));
    const bool fades = desktopComposites();
    setWindowOpacity(fades ? 0 : 1);
    show();
    // A popup is on top and has the keyboard anyway. If it were activated, Qt would mistake the late event of an
    // earlier popup's closing for this one's loss of focus, and close it again.
    if (windowType() != Qt::Popup)
        activateWindow();
    // Showing a popup gives none of its widgets the focus, which is what screen readers follow.
    m_view->setFocus(Qt::PopupFocusReason);
    if (fades)
        m_fade.start();
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
    return m_sinceDeactivation.isValid() && m_sinceDeactivation.elapsed() < clickReportMilliseconds;
}

void PopoverWindow::mousePressEvent(QMouseEvent* event)
{
    m_isClickedOutside = windowType() == Qt::Popup && !rect().contains(event->position().toPoint());
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

bool PopoverWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate && windowType() != Qt::Popup) {
        m_sinceDeactivation.start();
        hide();
    }
    return QWidget::event(event);
}

void PopoverWindow::hideEvent(QHideEvent* event)
{
    m_fade.stop();
    QWidget::hideEvent(event);
}

QPoint popoverPosition(const QPoint& click, const ScreenArea& area, const QSize& size)
{
    const bool isOnReservedPanel = !area.workArea.contains(click);
    const Side side = isOnReservedPanel ? nearestSide(click, area.workArea) : sideOfUnknownPanel(click, area.screen);
    // The work area begins where the panel ends: clamping puts the popover against the panel.
    return clamped(beside(click, side, isOnReservedPanel ? 1 : clearance, size), area.workArea, size);
}

std::optional<QPoint> popoverPosition(const ScreenArea& area, const QSize& size)
{
    const std::array taken{area.workArea.top() - area.screen.top(), area.screen.bottom() - area.workArea.bottom(),
                           area.workArea.left() - area.screen.left(), area.screen.right() - area.workArea.right()};
    const auto* const most = std::max_element(taken.begin(), taken.end());
    if (*most <= 0)
        return std::nullopt;
    const bool isTop = static_cast<Side>(most - taken.begin()) == Side::top;
    const bool isLeft = static_cast<Side>(most - taken.begin()) == Side::left;
    return clamped(
        {isLeft ? area.workArea.left() : area.workArea.right(), isTop ? area.workArea.top() : area.workArea.bottom()},
        area.workArea, size);
}

QPoint centredPosition(const ScreenArea& area, const QSize& size)
{
    return clamped(area.workArea.center() - QPoint{size.width() / 2, size.height() / 2}, area.workArea, size);
}

} // namespace tallyfox
