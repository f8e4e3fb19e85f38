#pragma once

#include <QAccessible>
#include <QPoint>
#include <QString>
#include <Qt>

#include <optional>

class QWidget;

namespace tallyfox::test {

/// Shows `window` and waits until it is the active one, so that a widget of it can have the focus.
void showActive(QWidget& window);

/// Presses and releases the left button in the middle of `widget`, or at `position` in it.
void click(QWidget& widget, std::optional<QPoint> position = std::nullopt);

/// Presses and releases `key` in `widget`.
void pressKey(QWidget& widget, Qt::Key key);

/// What a screen reader is told about `widget`.
QString accessibleName(QWidget& widget);
QString accessibleDescription(QWidget& widget);
QString accessibleValue(QWidget& widget);
QAccessible::Role accessibleRole(QWidget& widget);
QAccessible::State accessibleState(QWidget& widget);

} // namespace tallyfox::test
