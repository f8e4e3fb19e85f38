#include "Tallyfox/Agent/Shell/PopoverWindow.h"

#include "Tallyfox/Agent/Desktop/Display.h"
#include "Tallyfox/Agent/Shell/PopoverPlacement.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QScreen>
#include <QVBoxLayout>

#include <utility>

namespace tallyfox {

namespace {

constexpr int fadeMilliseconds = 120;

/// How long after the press of a button, which takes the focus away, a panel may take to report the click.
constexpr qint64 clickMilliseconds = 400;

/// A Wayland client cannot say where its window goes, and may open popups only from a window of its own: there the
/// popover is an ordinary window that closes when another one gets the focus.
bool canPlaceItself()
{
    return !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
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
    // A popup is on top and has the keyboard as it is. Activating it makes the toolkit take the late news of an earlier
    // popup's end for the loss of this one's focus, and close it again.
    if (windowType() != Qt::Popup)
        activateWindow();
    // A popup gets the keyboard, but no widget in it the focus, by itself. Screen readers follow the focus.
    m_view->setFocus(Qt::PopupFocusReason);
    if (fades)
        m_fade.start();
    Q_EMIT opened();
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
    return m_sinceDeactivation.isValid() && m_sinceDeactivation.elapsed() < clickMilliseconds;
}

void PopoverWindow::mousePressEvent(QMouseEvent* event)
{
    m_isClickedOutside = windowType() == Qt::Popup && !rect().contains(event->position().toPoint());
    if (!m_isClickedOutside)
        QWidget::mousePressEvent(event);
}

void PopoverWindow::mouseReleaseEvent(QMouseEvent* event)
{
    // Until here the pointer was the popup's. A popup that closes at the press leaves the release to the panel, and
    // where that was over the status item, the panel takes it for a click on the item, which would open the popover
    // again.
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
    Q_EMIT closed();
}

} // namespace tallyfox
