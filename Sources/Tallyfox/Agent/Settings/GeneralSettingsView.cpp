#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"

#include "Tallyfox/Agent/Controls/Picker.h"

#include <QShowEvent>
#include <QSignalBlocker>

namespace tallyfox {

GeneralSettingsView::GeneralSettingsView(QWidget* parent)
    : SettingsForm(parent)
    , m_refreshInterval(new Picker{this})
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
    addToggle(section, tr("Launch at Login"), &Preferences::launchAtLogin);
    addToggle(section, tr("Show Dock Icon"), &Preferences::showDockIcon);
    section->addValueRow(tr("Global Shortcut"), QStringLiteral(u"\u2325\u2318B"));
}

void GeneralSettingsView::addAppearance()
{
    SettingsSection* const section = addSection(tr("Appearance"));
    section->addValueRow(tr("Theme"), tr("Tallyfox Warm"));
    addToggle(section, tr("Show Account Emails"), &Preferences::showAccountEmails);
    addToggle(section, tr("Ranking Privacy"), &Preferences::rankingPrivate);
}

void GeneralSettingsView::setPreferences(const Preferences& preferences)
{
    showMinutes(preferences.refreshMinutes);
    showToggles(preferences);
}

/// An interval that is not among the choices, from a file edited by hand, is shown as the placeholder.
void GeneralSettingsView::showMinutes(std::int64_t minutes)
{
    const QSignalBlocker blocker{m_refreshInterval};
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
