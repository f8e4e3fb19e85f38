#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"

#include "Tallyfox/Agent/Controls/ToggleSwitch.h"
#include "Tallyfox/Agent/Settings/ThresholdControl.h"
#include "Tallyfox/Agent/Theme/ProviderPresentation.h"

namespace tallyfox {

namespace {

QString thresholdTitle(Provider provider)
{
    const std::string_view title = providerTitle(provider);
    return NotificationSettingsView::tr("%1 threshold")
        .arg(QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())));
}

} // namespace

NotificationSettingsView::NotificationSettingsView(QWidget* parent)
    : SettingsForm(parent)
    , m_notificationsEnabled(new ToggleSwitch{this})
    , m_claudeThreshold(new ThresholdControl{thresholdTitle(Provider::claude), this})
    , m_codexThreshold(new ThresholdControl{thresholdTitle(Provider::codex), this})
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
    section->addRow(thresholdTitle(Provider::claude), m_claudeThreshold);
    section->addRow(thresholdTitle(Provider::codex), m_codexThreshold);
    section->addCaptionRow(tr("You will be notified when remaining usage falls below the threshold."));
    connect(m_notificationsEnabled, &QCheckBox::toggled, this, &NotificationSettingsView::notificationsEnabledToggled);
    connect(m_claudeThreshold, &ThresholdControl::chosen, this, &NotificationSettingsView::claudeThresholdChosen);
    connect(m_codexThreshold, &ThresholdControl::chosen, this, &NotificationSettingsView::codexThresholdChosen);
}

void NotificationSettingsView::addUpdates()
{
    addSection(tr("Updates"))->addRow(tr("Service and model news"), m_newsNotifications);
    connect(m_newsNotifications, &QCheckBox::toggled, this, &NotificationSettingsView::newsNotificationsToggled);
}

void NotificationSettingsView::setPreferences(const Preferences& preferences)
{
    m_notificationsEnabled->showChecked(preferences.notificationsEnabled);
    m_claudeThreshold->setPercent(preferences.claudeThreshold);
    m_codexThreshold->setPercent(preferences.codexThreshold);
    m_newsNotifications->showChecked(preferences.newsNotifications);
}

} // namespace tallyfox
