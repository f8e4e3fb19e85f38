#include "Support/Agent/Widgets.h"

#include "Support/SpinUntil.h"
#include "Tallyfox/Agent/Controls/ToolButton.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QApplication>
#include <QHelpEvent>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QToolTip>
#include <QWidget>

#include <cmath>
#include <cstdlib>

namespace tallyfox::test {

namespace {

void sendMouse(QWidget& widget, QEvent::Type type, QPoint position, Qt::MouseButtons held)
{
    QMouseEvent event{type, position, widget.mapToGlobal(position), Qt::LeftButton, held, Qt::NoModifier};
    QApplication::sendEvent(&widget, &event);
}

QImage drawn(QWidget& widget)
{
    QImage image{widget.size(), QImage::Format_RGB32};
    image.fill(Theme::canvas());
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
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
    spinUntil([&window] { return window.isActiveWindow(); });
}

void settle()
{
    constexpr int rounds = 4; // a child's layout, its parent's, and the scroll area's
    for (int round = 0; round < rounds; ++round)
        QApplication::sendPostedEvents();
}

void click(QWidget& widget, std::optional<QPoint> position)
{
    const QPoint point = position.value_or(widget.rect().center());
    const QPointer<QWidget> target{&widget};
    sendMouse(widget, QEvent::MouseButtonPress, point, Qt::LeftButton);
    if (target)
        sendMouse(widget, QEvent::MouseButtonRelease, point, Qt::NoButton);
}

void pressKey(QWidget& widget, Qt::Key key)
{
    const QPointer<QWidget> target{&widget}; // the key may destroy the widget
    QKeyEvent press{QEvent::KeyPress, key, Qt::NoModifier};
    QApplication::sendEvent(target, &press);
    QKeyEvent release{QEvent::KeyRelease, key, Qt::NoModifier};
    if (target)
        QApplication::sendEvent(target, &release);
}

QString tooltipAt(QWidget& widget, QPoint position)
{
    QHelpEvent event{QEvent::ToolTip, position, widget.mapToGlobal(position)};
    QApplication::sendEvent(&widget, &event);
    return QToolTip::text();
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

QStringList textList(std::initializer_list<const char16_t*> texts)
{
    QStringList result;
    for (const char16_t* text : texts)
        result << QString::fromUtf16(text);
    return result;
}

QImage drawnOnCard(QWidget& widget, double scale)
{
    QImage image{(QSizeF{widget.size()} * scale).toSize(), QImage::Format_RGB32};
    image.setDevicePixelRatio(scale);
    image.fill(Theme::surface());
    QPainter painter{&image};
    widget.render(&painter, {}, {}, QWidget::DrawChildren);
    return image;
}

QRgb pixelOf(QWidget& widget, QPoint position)
{
    return drawn(widget).pixel(position);
}

bool shows(QWidget& widget, const QColor& color)
{
    const QImage image = drawn(widget);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == color.rgb())
                return true;
        }
    }
    return false;
}

bool showsSymbol(QWidget& button, Symbol symbol, const QColor& color)
{
    ToolButton expected{symbol, {}};
    expected.setSymbol(symbol, color);
    return drawn(button) == drawn(expected);
}

bool isNear(QRgb one, QRgb other)
{
    const auto near = [](int a, int b) { return std::abs(a - b) <= 2; };
    return near(qRed(one), qRed(other)) && near(qGreen(one), qGreen(other)) && near(qBlue(one), qBlue(other));
}

QRgb over(const QColor& background, const QColor& color, double opacity)
{
    const auto mix = [opacity](int under, int above) {
        return static_cast<int>(std::lround(under + (above - under) * opacity));
    };
    return qRgb(mix(background.red(), color.red()), mix(background.green(), color.green()),
                mix(background.blue(), color.blue()));
}

} // namespace tallyfox::test
