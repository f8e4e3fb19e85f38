#include "Tallyfox/Agent/StatusItem/ClickPosition.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>

namespace tallyfox {

namespace {

constexpr int iconLength = 64; // logical pixels; panels are rarely thicker

std::optional<QPoint> fromDevicePixels(QPoint position, const std::vector<ScaledScreen>& screens)
{
    for (const ScaledScreen& screen : screens) {
        const QPoint origin = screen.logical.topLeft();
        const QRect inPixels{origin, (QSizeF{screen.logical.size()} * screen.scale).toSize()};
        if (inPixels.contains(position))
            return origin + (QPointF{position - origin} / screen.scale).toPoint();
    }
    return std::nullopt;
}

/// Any panel's numbers may come here: none overflows.
bool isNear(QPoint position, QPoint pointer)
{
    const QPoint reach{iconLength, iconLength};
    return QRect{pointer - reach, pointer + reach}.contains(position);
}

/// A client of a Wayland compositor, through its X server too, knows the pointer only over its own windows.
std::optional<QPoint> knownPointer()
{
    const bool isX11 = QGuiApplication::platformName() == QStringLiteral("xcb");
    return isX11 && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ? std::optional{QCursor::pos()} : std::nullopt;
}

} // namespace

std::optional<QPoint> clickPosition(QPoint reported, std::optional<QPoint> pointer,
                                    const std::vector<ScaledScreen>& screens)
{
    const std::optional<QPoint> logical = fromDevicePixels(reported, screens);
    if (!pointer)
        return reported.isNull() ? std::nullopt : logical;
    if (logical && isNear(*logical, *pointer))
        return logical;
    return isNear(reported, *pointer) ? reported : *pointer;
}

std::optional<QPoint> clickPosition(QPoint reported)
{
    std::vector<ScaledScreen> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens.push_back({screen->geometry(), screen->devicePixelRatio()});
    return clickPosition(reported, knownPointer(), screens);
}

} // namespace tallyfox
