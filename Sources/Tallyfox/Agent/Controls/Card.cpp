#include "Tallyfox/Agent/Controls/Card.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QChildEvent>
#include <QLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int headlineSpacing = 8;

/// Covers the content, which paints its own background, to show hover, press and focus.
class Veil : public QWidget {
public:
    explicit Veil(const QPushButton& button, QWidget* parent)
        : QWidget(parent)
        , m_button(button)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter{this};
        painter.setRenderHint(QPainter::Antialiasing);
        if (m_button.isDown() || m_button.underMouse()) {
            painter.setBrush(Theme::withOpacity(Theme::accent(), m_button.isDown() ? 0.12 : 0.05));
            painter.setPen(Qt::NoPen);
            painter.drawRoundedRect(rect(), Theme::cardRadius, Theme::cardRadius);
        }
        if (showsFocus(m_button))
            paintFocusRing(painter, rect(), Theme::cardRadius);
    }

private:
    const QPushButton& m_button;
};

} // namespace

Card::Card(QWidget* parent)
    : QFrame(parent)
{ }

void Card::paint(QPainter& painter, const QRectF& frame)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Theme::surface());
    painter.setPen(QPen{Theme::withOpacity(Theme::line(), Theme::cardBorderOpacity), 1});
    // Centre the border on the outermost pixels.
    painter.drawRoundedRect(frame.adjusted(0.5, 0.5, -0.5, -0.5), Theme::cardRadius, Theme::cardRadius);
    painter.restore();
}

void Card::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    paint(painter, rect());
}

TitledCard::TitledCard(const QString& title, QWidget* parent)
    : Card(parent)
    , m_content(new QVBoxLayout{this})
{
    m_content->setContentsMargins(Theme::cardPadding, Theme::cardPadding, Theme::cardPadding, Theme::cardPadding);
    m_content->setSpacing(headlineSpacing);
    m_content->addWidget(new TextLabel{title, Theme::headline(), Theme::ink(), this});
}

QVBoxLayout& TitledCard::content() const
{
    return *m_content;
}

CardButton::CardButton(const QString& name, QWidget* parent)
    : QPushButton(parent)
{
    m_veil = new Veil{*this, this};
    QSizePolicy policy{QSizePolicy::Expanding, QSizePolicy::Minimum};
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(true); // the return key presses it as the space bar does
    setCursor(Qt::PointingHandCursor);
    setAccessibleName(name);
}

QSize CardButton::sizeHint() const
{
    return layout() ? layout()->totalSizeHint() : QPushButton::sizeHint();
}

QSize CardButton::minimumSizeHint() const
{
    return layout() ? layout()->totalMinimumSize() : QPushButton::minimumSizeHint();
}

bool CardButton::hasHeightForWidth() const
{
    return layout() && layout()->hasHeightForWidth();
}

int CardButton::heightForWidth(int width) const
{
    return hasHeightForWidth() ? layout()->totalHeightForWidth(width) : -1;
}

void CardButton::childEvent(QChildEvent* event)
{
    QPushButton::childEvent(event);
    if (event->added() && m_veil) // the first child is the veil itself
        m_veil->raise();
}

void CardButton::paintEvent(QPaintEvent* /*event*/)
{
    // The content and the veil paint everything.
}

void CardButton::resizeEvent(QResizeEvent* event)
{
    QPushButton::resizeEvent(event);
    m_veil->setGeometry(rect());
}

Divider::Divider(QWidget* parent, Qt::Orientation orientation)
    : QWidget(parent)
    , m_orientation(orientation)
{
    orientation == Qt::Horizontal ? setFixedHeight(1) : setFixedWidth(1);
}

void Divider::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    const PixelGrid grid{painter};
    const QRectF line = m_orientation == Qt::Horizontal ? QRectF{0, grid.y(0), double(width()), grid.thinLine()}
                                                        : QRectF{grid.x(0), 0, grid.thinLine(), double(height())};
    painter.fillRect(line, Theme::line());
}

} // namespace tallyfox
