#include "Tallyfox/Agent/Controls/SegmentedPicker.h"

#include "Tallyfox/Agent/Controls/Painting.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QHelpEvent>
#include <QPainter>
#include <QRadioButton>
#include <QStyle>
#include <QToolTip>

#include <algorithm>

namespace tallyfox {

namespace {

constexpr int rowHeight = 28;
constexpr int trackInset = 2; ///< between the track's edge and the segments
constexpr int labelPadding = 4; ///< least space beside a label
constexpr int comfortablePadding = 12;
constexpr int largestLabel = 13; ///< pixels
constexpr int smallestLabel = 9;
constexpr double trackRadius = 7;
constexpr double segmentRadius = trackRadius - trackInset;

QFont labelFont(int pixelSize)
{
    return Theme::system(pixelSize, QFont::Medium);
}

/// A radio button that looks like a segment, which brings the group's keyboard handling and the accessible role.
class Segment : public QRadioButton {
public:
    using QRadioButton::QRadioButton;

protected:
    /// The whole segment is clickable, not only the area of the style's radio button.
    [[nodiscard]] bool hitButton(const QPoint& position) const override
    {
        return rect().contains(position);
    }

    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::ToolTip || elidedText() == text())
            return QRadioButton::event(event);
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
        return true;
    }

    void enterEvent(QEnterEvent* event) override
    {
        QRadioButton::enterEvent(event);
        update();
    }

    void leaveEvent(QEvent* event) override
    {
        QRadioButton::leaveEvent(event);
        update();
    }

    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter{this};
        painter.setRenderHint(QPainter::Antialiasing);
        if (isChecked())
            paintRaised(painter);
        else if (isDown() || underMouse())
            paintHovered(painter);
        painter.setFont(font());
        painter.setPen(isEnabled() ? Theme::ink() : Theme::withOpacity(Theme::muted(), Theme::disabledOpacity));
        painter.drawText(rect(), Qt::AlignCenter, elidedText());
        if (showsFocus(*this))
            paintFocusRing(painter, rect(), segmentRadius);
    }

private:
    [[nodiscard]] QString elidedText() const
    {
        return QFontMetrics{font()}.elidedText(text(), Qt::ElideRight, width());
    }

    void paintRaised(QPainter& painter) const
    {
        painter.setBrush(Theme::surface());
        painter.setPen(QPen{Theme::line(), 1});
        painter.drawRoundedRect(QRectF{rect()}.adjusted(0.5, 0.5, -0.5, -0.5), segmentRadius, segmentRadius);
    }

    void paintHovered(QPainter& painter) const
    {
        painter.setBrush(Theme::withOpacity(Theme::line(), isDown() ? 0.8 : 0.5));
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(rect(), segmentRadius, segmentRadius);
    }
};

int widestLabel(const std::vector<QRadioButton*>& segments, const QFont& font)
{
    const QFontMetrics metrics{font};
    int widest = 0;
    for (const QRadioButton* segment : segments)
        widest = std::max(widest, metrics.horizontalAdvance(segment->text()));
    return widest;
}

/// The largest size at which all labels fit: the same for all, or the row would look uneven.
int fittingLabel(const std::vector<QRadioButton*>& segments, int width)
{
    int pixelSize = largestLabel;
    while (pixelSize > smallestLabel && widestLabel(segments, labelFont(pixelSize)) > width)
        --pixelSize;
    return pixelSize;
}

} // namespace

SegmentedPicker::SegmentedPicker(const QString& title, const QStringList& labels, QWidget* parent)
    : QGroupBox(title, parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    for (int index = 0; index < labels.size(); ++index) {
        auto* segment = new Segment{labels.at(index), this};
        segment->setChecked(index == 0);
        connect(segment, &QRadioButton::toggled, this, [this, index](bool isChecked) {
            if (isChecked)
                select(index);
        });
        m_segments.push_back(segment);
    }
    updateTabStop();
}

int SegmentedPicker::currentIndex() const
{
    return m_currentIndex;
}

void SegmentedPicker::setCurrentIndex(int index)
{
    if (index >= 0 && index < static_cast<int>(m_segments.size()))
        m_segments[static_cast<std::size_t>(index)]->setChecked(true);
}

void SegmentedPicker::select(int index)
{
    m_currentIndex = index;
    updateTabStop();
    Q_EMIT currentIndexChanged(index);
}

/// Qt moves the tab stop with the focus only, not when the index is set by a call.
void SegmentedPicker::updateTabStop()
{
    for (QRadioButton* segment : m_segments)
        segment->setFocusPolicy(segment->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}

QSize SegmentedPicker::sizeHint() const
{
    const int segment = widestLabel(m_segments, labelFont(largestLabel)) + 2 * comfortablePadding;
    return {static_cast<int>(m_segments.size()) * segment + 2 * trackInset, rowHeight};
}

QSize SegmentedPicker::minimumSizeHint() const
{
    const int segment = widestLabel(m_segments, labelFont(smallestLabel)) + 2 * labelPadding;
    return {static_cast<int>(m_segments.size()) * segment + 2 * trackInset, rowHeight};
}

void SegmentedPicker::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Theme::surfaceStrong());
    painter.setPen(Qt::NoPen);
    painter.drawRoundedRect(rect(), trackRadius, trackRadius);
}

void SegmentedPicker::resizeEvent(QResizeEvent* /*event*/)
{
    layOutSegments();
}

void SegmentedPicker::changeEvent(QEvent* event)
{
    QGroupBox::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        layOutSegments();
}

/// Equal widths; the first segments get the pixels that the division leaves over.
void SegmentedPicker::layOutSegments()
{
    const QRect track = rect().adjusted(trackInset, trackInset, -trackInset, -trackInset);
    const int count = static_cast<int>(m_segments.size());
    const QFont font = labelFont(fittingLabel(m_segments, track.width() / std::max(count, 1) - 2 * labelPadding));
    int left = track.left();
    for (int index = 0; index < count; ++index) {
        const int width = track.width() / count + (index < track.width() % count ? 1 : 0);
        const QRect frame{left, track.top(), width, track.height()};
        QRadioButton* segment = m_segments[static_cast<std::size_t>(index)];
        segment->setFont(font);
        segment->setGeometry(QStyle::visualRect(layoutDirection(), rect(), frame));
        left += width;
    }
}

} // namespace tallyfox
