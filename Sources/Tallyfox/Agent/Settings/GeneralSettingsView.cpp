#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"

#include "Tallyfox/Agent/Controls/Picker.h"
#include "Tallyfox/Agent/Controls/ToggleSwitch.h"

#include <QShowEvent>
#include <QSignalBlocker>

namespace tallyfox {

GeneralSettingsView::GeneralSettingsView(QWidget* parent)
    : SettingsForm(parent)
    , m_refreshInterval(new Picker{this})
    , m_launchAtLogin(new ToggleSwitch{this})
    , m_showDockIcon(new ToggleSwitch{this})
    , m_showAccountEmails(new ToggleSwitch{this})
    , m_rankingPrivate(new ToggleSwitch{this})
{
    addUsage();
    addAppAccess();
    addAppearance();
    endSections();
    setPreferences(Preferences{});
}

void GeneralSettingsView::addUsage()
{
    m_refreshInterval->addItem(tr("1 minute"), 1);
    m_refreshInterval->addItem(tr("5 minutes"), 5);
    m_refreshInterval->addItem(tr("15 minutes"), 15);
    m_refreshInterval->addItem(tr("30 minutes"), 30);
    addSection(tr("Usage"))->addRow(tr("Refresh interval"), m_refreshInterval);
    connect(m_refreshInterval, &QComboBox::currentIndexChanged, this,
            [this] { Q_EMIT refreshMinutesChosen(m_refreshInterval->currentData().toLongLong()); });
}

void GeneralSettingsView::addAppAccess()
{
    SettingsSection* const section = addSection(tr("App Access"));
    section->addRow(tr("Launch at Login"), m_launchAtLogin);
    section->addRow(tr("Show Dock Icon"), m_showDockIcon);
    section->addValueRow(tr("Global Shortcut"), QStringLiteral(u"\u2325\u2318B"));
    connect(m_launchAtLogin, &QCheckBox::toggled, this, &GeneralSettingsView::launchAtLoginToggled);
    connect(m_showDockIcon, &QCheckBox::toggled, this, &GeneralSettingsView::showDockIconToggled);
}

void GeneralSettingsView::addAppearance()
{
    SettingsSection* const section = addSection(tr("Appearance"));
    section->addValueRow(tr("Theme"), tr("Tallyfox Warm"));
    section->addRow(tr("Show Account Emails"), m_showAccountEmails);
    section->addRow(tr("Ranking Privacy"), m_rankingPrivate);
    connect(m_showAccountEmails, &QCheckBox::toggled, this, &GeneralSettingsView::showAccountEmailsToggled);
    connect(m_rankingPrivate, &QCheckBox::toggled, this, &GeneralSettingsView::rankingPrivateToggled);
}

void GeneralSettingsView::setPreferences(const Preferences& preferences)
{
    showMinutes(preferences.refreshMinutes);
    m_launchAtLogin->showChecked(preferences.launchAtLogin);
    m_showDockIcon->showChecked(preferences.showDockIcon);
    m_showAccountEmails->showChecked(preferences.showAccountEmails);
    m_rankingPrivate->showChecked(preferences.rankingPrivate);
}

/// An interval that is none of the choices, from a file edited by hand, shows in their place and chooses none.
void GeneralSettingsView::showMinutes(std::int64_t minutes)
{
    const QSignalBlocker silence{m_refreshInterval};
    const int index = m_refreshInterval->findData(QVariant::fromValue<qlonglong>(minutes));
    m_refreshInterval->setPlaceholderText(index < 0 ? tr("%1 minutes").arg(minutes) : QString{});
    m_refreshInterval->setCurrentIndex(index);
}

void GeneralSettingsView::showEvent(QShowEvent* event)
{
    SettingsForm::showEvent(event);
    if (!event->spontaneous())
        Q_EMIT appeared();
}

} // namespace tallyfox
