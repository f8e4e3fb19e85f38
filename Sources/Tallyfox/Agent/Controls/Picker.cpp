#include "Tallyfox/Agent/Controls/Picker.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QAbstractItemView>
#include <QPainter>
#include <QStyle>
#include <QWheelEvent>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr int textPadding = 10;
constexpr int arrowsWidth = 20; ///< at the far side

} // namespace

Picker::Picker(QWidget* parent)
    : QComboBox(parent)
{
    setFont(Theme::body());
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Picker::sizeHint() const
{
    const QFontMetrics metrics{font()};
    int widest = metrics.horizontalAdvance(placeholderText());
    for (int index = 0; index < count(); ++index)
        widest = std::max(widest, metrics.horizontalAdvance(itemText(index)));
    return {widest + 2 * textPadding + arrowsWidth, Theme::controlHeight};
}

QSize Picker::minimumSizeHint() const
{
    return sizeHint();
}

void Picker::showPopup()
{
    view()->setAccessibleName(accessibleName());
    QComboBox::showPopup();
}

void Picker::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}

void Picker::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen{Theme::line(), 1});
    painter.setBrush(underMouse() ? Theme::canvas() : Theme::surface());
    painter.drawRoundedRect(QRectF{rect()}.adjusted(0.5, 0.5, -0.5, -0.5), Theme::controlRadius, Theme::controlRadius);
    const auto placed = [this](const QRect& part) { return QStyle::visualRect(layoutDirection(), rect(), part); };
    paintArrows(painter, placed({width() - arrowsWidth - 4, 0, arrowsWidth, height()}));
    painter.setFont(font());
    painter.setPen(Theme::ink());
    // At whole pixels, like labels, so that the baseline matches the label of the row.
    const int top = (height() - fontMetrics().height()) / 2;
    const QRect place = placed({textPadding, top, width() - textPadding - arrowsWidth, fontMetrics().height()});
    const QString shown = currentIndex() < 0 ? placeholderText() : currentText();
    painter.drawText(place, Qt::AlignTop | Qt::TextSingleLine, shown);
    if (showsFocus(*this))
        paintFocusRing(painter, rect(), Theme::controlRadius);
}

void Picker::paintArrows(QPainter& painter, const QRect& frame) const
{
    constexpr double half = 3.5; // of an arrow's width
    constexpr double gap = 2.5; // from the middle to each arrow
    const QPointF center = QRectF{frame}.center();
    painter.save();
    painter.setPen(QPen{Theme::accent(), 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin});
    for (const double direction : {-1.0, 1.0}) {
        const double base = center.y() + direction * gap;
        painter.drawPolyline(
            QPolygonF{{center.x() - half, base}, {center.x(), base + direction * half}, {center.x() + half, base}});
    }
    painter.restore();
}

} // namespace tallyfox
