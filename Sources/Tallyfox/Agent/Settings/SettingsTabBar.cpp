#include "Tallyfox/Agent/Settings/SettingsTabBar.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QAccessible>
#include <QPainter>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr int tabHeight = 54;
constexpr int smallestTabWidth = 96;
constexpr int titlePadding = 14; ///< at each side
constexpr int gap = 2; ///< at each side of a tab
constexpr int symbolTop = 8;
constexpr int tabSymbolSide = 20;
constexpr int titleTop = 30;
constexpr double tabRadius = 8;

} // namespace

SettingsTabBar::SettingsTabBar(QWidget* parent)
    : QTabBar(parent)
{
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
    setFont(Theme::caption());
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QTabBar::currentChanged, this, &SettingsTabBar::announceChoice);
}

/// The toolkit tells of the focus only, which a tab chosen by its letter does not get.
void SettingsTabBar::announceChoice(int index)
{
    QAccessibleEvent chosen{this, QAccessible::Selection};
    chosen.setChild(index);
    QAccessible::updateAccessibility(&chosen);
}

void SettingsTabBar::addSymbolTab(Symbol symbol, const QString& title)
{
    m_symbols.push_back(symbol); // before the tab is there: adding it measures and draws it
    addTab(title);
}

void SettingsTabBar::setShowsMnemonics(bool shows)
{
    m_showsMnemonics = shows;
    update();
}

QSize SettingsTabBar::tabSizeHint(int index) const
{
    const int title = QFontMetrics{font()}.size(Qt::TextShowMnemonic, tabText(index)).width();
    return {std::max(title + 2 * titlePadding, smallestTabWidth), tabHeight};
}

QSize SettingsTabBar::minimumTabSizeHint(int index) const
{
    return tabSizeHint(index);
}

void SettingsTabBar::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    for (int index = 0; index < count(); ++index)
        paintTab(painter, index);
}

void SettingsTabBar::paintTab(QPainter& painter, int index) const
{
    const QRect frame = tabRect(index).adjusted(gap, 0, -gap, 0);
    const bool isCurrent = index == currentIndex();
    if (isCurrent) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::surfaceStrong());
        painter.drawRoundedRect(frame, tabRadius, tabRadius);
    }
    const QColor& color = isCurrent ? Theme::accent() : Theme::muted();
    const QRectF symbol(frame.left() + (frame.width() - tabSymbolSide) / 2.0, frame.top() + symbolTop, tabSymbolSide,
                        tabSymbolSide);
    drawSymbol(painter, m_symbols.at(static_cast<std::size_t>(index)), symbol, color);
    painter.setFont(font());
    painter.setPen(isCurrent ? Theme::ink() : Theme::muted());
    int flags = static_cast<int>(Qt::AlignHCenter | Qt::AlignTop) | Qt::TextShowMnemonic;
    if (!m_showsMnemonics)
        flags |= Qt::TextHideMnemonic;
    painter.drawText(frame.adjusted(0, titleTop, 0, 0), flags, tabText(index));
    if (isCurrent && showsFocus(*this))
        paintFocusRing(painter, frame, tabRadius);
}

} // namespace tallyfox
