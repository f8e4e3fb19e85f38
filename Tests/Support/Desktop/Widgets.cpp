#include "Support/Desktop/Widgets.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

#include <chrono>

namespace tallyfox::test {

namespace {

void sendMouse(QWidget& widget, QEvent::Type type, QPoint position, Qt::MouseButtons held)
{
    QMouseEvent event{type, position, widget.mapToGlobal(position), Qt::LeftButton, held, Qt::NoModifier};
    QApplication::sendEvent(&widget, &event);
}

QAccessibleInterface& interfaceOf(QWidget& widget)
{
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&widget);
    Q_ASSERT(interface); // every widget has one
    return *interface;
}

} // namespace

void showActive(QWidget& window)
{
    window.show();
    window.activateWindow();
    const auto hangGuard = std::chrono::steady_clock::now() + std::chrono::seconds{60};
    while (!window.isActiveWindow() && std::chrono::steady_clock::now() < hangGuard)
        QApplication::processEvents(); // the test is the outermost loop here
}

void click(QWidget& widget, std::optional<QPoint> position)
{
    const QPoint point = position.value_or(widget.rect().center());
    sendMouse(widget, QEvent::MouseButtonPress, point, Qt::LeftButton);
    sendMouse(widget, QEvent::MouseButtonRelease, point, Qt::NoButton);
}

void pressKey(QWidget& widget, Qt::Key key)
{
    QKeyEvent press{QEvent::KeyPress, key, Qt::NoModifier};
    QApplication::sendEvent(&widget, &press);
    QKeyEvent release{QEvent::KeyRelease, key, Qt::NoModifier};
    QApplication::sendEvent(&widget, &release);
}

QString accessibleName(QWidget& widget)
{
    return interfaceOf(widget).text(QAccessible::Name);
}

QString accessibleDescription(QWidget& widget)
{
    return interfaceOf(widget).text(QAccessible::Description);
}

QString accessibleValue(QWidget& widget)
{
    return interfaceOf(widget).text(QAccessible::Value);
}

QAccessible::Role accessibleRole(QWidget& widget)
{
    return interfaceOf(widget).role();
}

QAccessible::State accessibleState(QWidget& widget)
{
    return interfaceOf(widget).state();
}

} // namespace tallyfox::test
