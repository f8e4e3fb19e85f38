#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"

#include "Tallyfox/Agent/Controls/StepSlider.h"
#include "Tallyfox/Agent/Controls/TextLabel.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"

#include <QHBoxLayout>

namespace tallyfox {

namespace {

constexpr int sliderWidth = 240;
constexpr int percentWidth = 38;
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
    m_text->setFixedWidth(percentWidth);
    m_text->setAlignment(Qt::AlignRight | Qt::AlignVCenter); // so that the digits stay in place
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

NotificationSettingsView::NotificationSettingsView(QWidget* parent)
    : SettingsForm(parent)
{
    addUsageAlerts();
    addUpdates();
    endSections();
    setPreferences(Preferences{});
}

void NotificationSettingsView::addUsageAlerts()
{
    SettingsSection* const section = addSection(tr("Usage Alerts"));
    addToggle(section, tr("Notifications"), &Preferences::notificationsEnabled);
    for (const Provider provider : allProviders)
        addThreshold(*section, provider);
    section->addCaptionRow(tr("You will be notified when remaining usage falls below the threshold."));
}

void NotificationSettingsView::addThreshold(SettingsSection& section, Provider provider)
{
    const QString title = tr("%1 threshold").arg(providerTitle(provider));
    auto* const threshold = new ThresholdControl{title, this};
    m_thresholds.at(static_cast<std::size_t>(provider)) = threshold;
    section.addRow(title, threshold);
    connect(threshold, &ThresholdControl::chosen, this,
            [this, provider](double percent) { Q_EMIT thresholdChosen(provider, percent); });
}

void NotificationSettingsView::addUpdates()
{
    addToggle(addSection(tr("Updates")), tr("Service and model news"), &Preferences::newsNotifications);
}

void NotificationSettingsView::setPreferences(const Preferences& preferences)
{
    showToggles(preferences);
    for (const Provider provider : allProviders) {
        m_thresholds.at(static_cast<std::size_t>(provider))
            ->setPercent(preferences.*presentationOf(provider).threshold);
    }
}

} // namespace tallyfox
