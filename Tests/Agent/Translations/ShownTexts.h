#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace tallyfox::test {

/// All texts that a user or a screen reader finds in the visible `window`: texts and tooltips of all visible widgets,
/// the choices of their lists, and the names and descriptions of the accessibility tree.
std::vector<QString> shownTexts(const QWidget& window);

/// Describes layout faults of the visible widgets of `window`: clipped texts without a tooltip, widgets that extend
/// beyond their parents or overlap their siblings.
std::vector<QString> misplacements(QWidget& window);

/// The elided texts.
std::vector<QString> elidedTexts(const QWidget& window);

} // namespace tallyfox::test
