#include "Tallyfox/Agent/Settings/ThresholdControl.h"

#include "Tallyfox/Agent/Controls/StepSlider.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <QHBoxLayout>

namespace tallyfox {

namespace {

constexpr int sliderWidth = 240;
constexpr int textWidth = 38;
constexpr int thresholdSpacing = 8;

} // namespace

QString thresholdText(double percent)
{
    return QString::number(static_cast<int>(percent)) + QLatin1Char{'%'};
}

ThresholdControl::ThresholdControl(const QString& name, QWidget* parent)
    : QWidget(parent)
    , m_slider(new StepSlider{smallestThreshold, largestThreshold, thresholdStep, this})
    , m_text(new TextLabel{Theme::body(), Theme::ink(), this})
{
    auto* const row = new QHBoxLayout{this};
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(thresholdSpacing);
    row->addWidget(m_slider);
    row->addWidget(m_text);
    m_slider->setFixedWidth(sliderWidth);
    m_slider->setAccessibleName(name);
    m_text->setFixedWidth(textWidth);
    m_text->setAlignment(Qt::AlignRight | Qt::AlignVCenter); // so that no digit pushes another
    setFocusProxy(m_slider);
    connect(m_slider, &StepSlider::stepped, this, &ThresholdControl::choose);
}

void ThresholdControl::setPercent(double percent)
{
    m_slider->showValue(percent);
    showText(percent);
}

void ThresholdControl::choose(int percent)
{
    showText(percent);
    Q_EMIT chosen(percent);
}

void ThresholdControl::showText(double percent)
{
    m_text->setText(thresholdText(percent));
    m_slider->setAccessibleDescription(m_text->text());
}

} // namespace tallyfox
