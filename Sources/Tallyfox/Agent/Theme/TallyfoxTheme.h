#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

class QApplication;

/// The look of the program: the palette, fonts and measures of all views. Colours are opaque sRGB and independent of
/// the desktop's theme. Lengths are in logical pixels.
namespace tallyfox::Theme {

const QColor& canvas(); ///< background of the popover
const QColor& surface(); ///< background of cards
const QColor& surfaceStrong(); ///< stronger fills: tracks, pressed areas
const QColor& ink(); ///< default text
const QColor& muted(); ///< secondary text
const QColor& line(); ///< borders and separators
const QColor& accent(); ///< tint, logo tile, active controls
const QColor& cream(); ///< symbols on accent tiles
const QColor& claude(); ///< series colour of Claude
const QColor& codex(); ///< series colour of Codex: `accent()` itself
const QColor& success(); ///< good, healthy
const QColor& warning();

/// `color` at an opacity between 0 and 1.
QColor withOpacity(const QColor& color, double opacity);

/// The same colours as a QPalette, for the controls that Qt draws.
QPalette palette();

QFont title2(); ///< semibold
QFont title3(); ///< semibold
QFont headline(); ///< semibold
QFont body();
QFont caption();
QFont caption2(); ///< the smallest
/// The desktop's font family at any size (logical pixels) and weight.
QFont system(int pixelSize, QFont::Weight weight = QFont::Normal);

inline constexpr int popoverWidth = 420;
inline constexpr int popoverHeight = 680;
inline constexpr int settingsWidth = 900;
inline constexpr int settingsHeight = 480;
inline constexpr int tabPadding = 12; ///< around a tab's content
inline constexpr int tabSpacing = 12; ///< between the parts of a tab
inline constexpr int cardPadding = 13;
inline constexpr int cardRadius = 8;
inline constexpr double cardBorderOpacity = 0.9;
inline constexpr int controlHeight = 26; ///< of buttons and pickers
inline constexpr double controlRadius = 6;
inline constexpr int tileSize = 28; ///< side of an icon tile
inline constexpr int tileRadius = 7;
inline constexpr double tileOpacity = 0.12; ///< of a provider's colour behind its icon
inline constexpr double badgeOpacity = 0.1; ///< of a badge's colour behind its text
inline constexpr double disabledOpacity = 0.7; ///< of the muted colour where a control is disabled

/// Sets the application's style, palette and font, independent of the desktop's settings.
void apply(QApplication& application);

} // namespace tallyfox::Theme
