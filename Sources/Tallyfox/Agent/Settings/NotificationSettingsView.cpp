#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"

#include "Tallyfox/Agent/Settings/ThresholdControl.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

namespace tallyfox {

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
