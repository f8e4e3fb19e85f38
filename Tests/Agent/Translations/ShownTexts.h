#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace tallyfox::test {

/// What a person or a screen reader finds in `window`, which is shown: the texts of all visible widgets, their hints,
/// the choices of their lists, and the names and descriptions of the accessibility tree.
std::vector<QString> shownTexts(const QWidget& window);

/// What is wrong with the places of `window`'s visible widgets, in words: texts that are cut off and not told under the
/// pointer either, widgets that reach out of their parents or lie on their siblings.
std::vector<QString> misplacements(QWidget& window);

/// The texts that end in an ellipsis.
std::vector<QString> elidedTexts(const QWidget& window);

} // namespace tallyfox::test
