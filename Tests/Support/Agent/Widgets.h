#pragma once

#include "Tallyfox/Agent/Theme/Symbol.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QAccessible>
#include <QColor>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QStringList>
#include <Qt>

#include <initializer_list>
#include <optional>

class QWidget;

namespace tallyfox::test {

/// Shows `window` and waits until it is the active one, so that a widget of it can have the focus.
void showActive(QWidget& window);

/// Processes pending events, above all layout requests, which may cause further ones.
void settle();

/// Presses and releases the left button in the middle of `widget`, or at `position` in it.
void click(QWidget& widget, std::optional<QPoint> position = std::nullopt);

/// Presses and releases `key` in `widget`.
void pressKey(QWidget& widget, Qt::Key key);

/// Shows the tooltip at `position` of `widget`. If there is none, returns an earlier one, which stays for a moment.
QString tooltipAt(QWidget& widget, QPoint position);

/// The texts of a list, to compare with what a view shows.
QStringList textList(std::initializer_list<const char16_t*> texts);

/// What `widget` reports to screen readers.
QString accessibleName(QWidget& widget);
QString accessibleDescription(QWidget& widget);
QString accessibleValue(QWidget& widget);
QAccessible::Role accessibleRole(QWidget& widget);
QAccessible::State accessibleState(QWidget& widget);

/// `widget` as it looks on a screen of a scale, on the colour of cards.
QImage drawnOnCard(QWidget& widget, double scale = 1);
/// The colour of one logical pixel of `widget`, drawn on the popover's canvas.
QRgb pixelOf(QWidget& widget, QPoint position);
/// Whether any pixel of `widget` has exactly this colour.
bool shows(QWidget& widget, const QColor& color);
/// Whether `button` is drawn as a tool button at rest with this symbol.
bool showsSymbol(QWidget& button, Symbol symbol, const QColor& color = Theme::ink());
/// Whether two colours differ by no more than rounding does.
bool isNear(QRgb one, QRgb other);
/// What `color` at an opacity looks like on `background`.
QRgb over(const QColor& background, const QColor& color, double opacity);

} // namespace tallyfox::test
