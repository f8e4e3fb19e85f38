#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QApplication>
#include <QStyleFactory>

namespace tallyfox::Theme {

namespace {

QColor sRgb(float red, float green, float blue)
{
    return QColor::fromRgbF(red, green, blue);
}

} // namespace

const QColor& canvas()
{
    static const QColor color = sRgb(0.953F, 0.922F, 0.867F);
    return color;
}

const QColor& surface()
{
    static const QColor color = sRgb(0.984F, 0.969F, 0.941F);
    return color;
}

const QColor& surfaceStrong()
{
    static const QColor color = sRgb(0.91F, 0.851F, 0.784F);
    return color;
}

const QColor& ink()
{
    static const QColor color = sRgb(0.173F, 0.125F, 0.098F);
    return color;
}

const QColor& muted()
{
    static const QColor color = sRgb(0.463F, 0.408F, 0.365F);
    return color;
}

const QColor& line()
{
    static const QColor color = sRgb(0.847F, 0.78F, 0.702F);
    return color;
}

const QColor& accent()
{
    static const QColor color = sRgb(0.482F, 0.31F, 0.208F);
    return color;
}

const QColor& cream()
{
    static const QColor color = sRgb(0.973F, 0.937F, 0.886F);
    return color;
}

const QColor& claude()
{
    static const QColor color = sRgb(0.725F, 0.427F, 0.208F);
    return color;
}

const QColor& codex()
{
    return accent();
}

const QColor& success()
{
    static const QColor color = sRgb(0.38F, 0.447F, 0.286F);
    return color;
}

const QColor& warning()
{
    static const QColor color = sRgb(0.659F, 0.471F, 0.196F);
    return color;
}

QColor withOpacity(const QColor& color, double opacity)
{
    QColor result = color;
    result.setAlphaF(static_cast<float>(opacity));
    return result;
}

QPalette palette()
{
    QPalette palette{surfaceStrong(), canvas()};
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, ink());
    for (const auto role : {QPalette::Base, QPalette::ToolTipBase, QPalette::Button})
        palette.setColor(role, surface());
    palette.setColor(QPalette::AlternateBase, canvas());
    palette.setColor(QPalette::PlaceholderText, muted());
    palette.setColor(QPalette::Mid, line());
    palette.setColor(QPalette::Highlight, accent());
    palette.setColor(QPalette::HighlightedText, cream());
    palette.setColor(QPalette::Link, accent());
    palette.setColor(QPalette::LinkVisited, accent());
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, withOpacity(muted(), disabledOpacity));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, line());
    return palette;
}

QFont title2()
{
    return system(18, QFont::DemiBold);
}

QFont title3()
{
    return system(16, QFont::DemiBold);
}

QFont headline()
{
    return system(13, QFont::DemiBold);
}

QFont body()
{
    return system(13);
}

QFont caption()
{
    return system(11);
}

QFont caption2()
{
    return system(10);
}

QFont system(int pixelSize, QFont::Weight weight)
{
    QFont font = QApplication::font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

void apply(QApplication& application)
{
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QApplication::setPalette(palette());
    QApplication::setFont(body());
    application.setEffectEnabled(Qt::UI_AnimateTooltip, false);
}

} // namespace tallyfox::Theme
