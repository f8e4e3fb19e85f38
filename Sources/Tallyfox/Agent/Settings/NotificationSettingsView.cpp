#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"

#include "Tallyfox/Agent/Controls/ToggleSwitch.h"
#include "Tallyfox/Agent/Settings/ThresholdControl.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

namespace tallyfox {

NotificationSettingsView::NotificationSettingsView(QWidget* parent)
    : SettingsForm(parent)
    , m_notificationsEnabled(new ToggleSwitch{this})
    , m_newsNotifications(new ToggleSwitch{this})
{
    addUsageAlerts();
    addUpdates();
    endSections();
    setPreferences(Preferences{});
}

void NotificationSettingsView::addUsageAlerts()
{
    SettingsSection* const section = addSection(tr("Usage Alerts"));
    section->addRow(tr("Notifications"), m_notificationsEnabled);
    for (const Provider provider : allProviders)
        addThreshold(*section, provider);
    section->addCaptionRow(tr("You will be notified when remaining usage falls below the threshold."));
    connect(m_notificationsEnabled, &QCheckBox::toggled, this, &NotificationSettingsView::notificationsEnabledToggled);
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
    addSection(tr("Updates"))->addRow(tr("Service and model news"), m_newsNotifications);
    connect(m_newsNotifications, &QCheckBox::toggled, this, &NotificationSettingsView::newsNotificationsToggled);
}

void NotificationSettingsView::setPreferences(const Preferences& preferences)
{
    m_notificationsEnabled->showChecked(preferences.notificationsEnabled);
    for (const Provider provider : allProviders) {
        m_thresholds.at(static_cast<std::size_t>(provider))
            ->setPercent(preferences.*presentationOf(provider).threshold);
    }
    m_newsNotifications->showChecked(preferences.newsNotifications);
}

} // namespace tallyfox
