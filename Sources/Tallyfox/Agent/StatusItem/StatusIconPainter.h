#pragma once

#include <QIcon>
#include <QImage>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>

/// The status item's icon, painted by the program itself: a tile in the accent colour, which stands out on dark and on
/// light panels alike, with the number in it. Many panels show no text beside an icon, and do not report that.
namespace tallyfox::StatusIconPainter {

/// The sizes of icons that panels ask for, in pixels.
inline constexpr std::array sides{16, 22, 24, 32, 48};

/// How a percentage is painted: without the percent sign, which leaves room for two digits that can be read at 16
/// pixels. Three characters at most: "99+" stands for more than 999, "<0" for less than -99. Empty without a
/// percentage.
QString number(std::optional<std::int64_t> percent);

/// The icon with that number; with the program's symbol when it is empty. `side` is in pixels, at least 1.
QImage image(const QString& number, int side);

/// The same in all `sides`.
QIcon icon(const QString& number);

} // namespace tallyfox::StatusIconPainter
