#include "Tallyfox/Agent/Controls/CardButton.h"

#include "Tallyfox/Agent/Controls/FocusRing.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QChildEvent>
#include <QLayout>
#include <QPainter>

namespace tallyfox {

namespace {

/// Lies over the content, which paints its own background, and shows what the pointer and the keyboard do.
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
    // The content paints itself, and the veil what lies over it.
}

void CardButton::resizeEvent(QResizeEvent* event)
{
    QPushButton::resizeEvent(event);
    m_veil->setGeometry(rect());
}

} // namespace tallyfox
