#include "Tallyfox/Agent/Controls/OverlayScrollArea.h"

#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionSlider>

namespace tallyfox {

namespace {

constexpr int barWidth = 10;
constexpr int thumbInset = 3;

class SlimScrollBar : public QScrollBar {
public:
    explicit SlimScrollBar(QWidget* parent)
        : QScrollBar(Qt::Vertical, parent)
    {
        setAttribute(Qt::WA_Hover);
        setAttribute(Qt::WA_OpaquePaintEvent, false); // the content shows through
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QStyleOptionSlider option;
        initStyleOption(&option);
        const QRectF thumb = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
        const bool isHot = isSliderDown() || underMouse();
        QPainter painter{this};
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Theme::withOpacity(Theme::muted(), isHot ? 0.8 : 0.4));
        painter.setPen(Qt::NoPen);
        const QRectF slim = thumb.adjusted(thumbInset, thumbInset, -thumbInset, -thumbInset);
        painter.drawRoundedRect(slim, slim.width() / 2, slim.width() / 2);
    }
};

} // namespace

OverlayScrollArea::OverlayScrollArea(QWidget* parent)
    : QScrollArea(parent)
    , m_slimBar(new SlimScrollBar{this})
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus); // its content takes the focus and is scrolled into view
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_slimBar->setAccessibleName(tr("Scroll"));
    const QScrollBar* bar = verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, &OverlayScrollArea::followRange);
    connect(bar, &QScrollBar::valueChanged, m_slimBar, &QScrollBar::setValue);
    connect(m_slimBar, &QScrollBar::valueChanged, bar, &QScrollBar::setValue);
    followRange();
}

void OverlayScrollArea::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    const QRect frame{width() - barWidth, 0, barWidth, height()};
    m_slimBar->setGeometry(QStyle::visualRect(layoutDirection(), rect(), frame));
}

void OverlayScrollArea::followRange()
{
    const QScrollBar* bar = verticalScrollBar();
    m_slimBar->setRange(bar->minimum(), bar->maximum());
    m_slimBar->setPageStep(bar->pageStep());
    m_slimBar->setSingleStep(bar->singleStep());
    m_slimBar->setVisible(bar->maximum() > bar->minimum());
}

} // namespace tallyfox
