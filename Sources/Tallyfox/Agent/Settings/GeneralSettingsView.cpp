#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"

#include "Tallyfox/Agent/Controls/Picker.h"
#include "Tallyfox/Agent/Controls/PushButton.h"

#include <QLayout>
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
    addShortcut(section);
}

void GeneralSettingsView::addShortcut(SettingsSection* section)
{
    m_shortcut = section->addValueRow(tr("Global Shortcut"), QStringLiteral(u"\u2325\u2318B"));
    QWidget* const row = m_shortcut->parentWidget();
    m_shortcutRequest = new PushButton{tr("Set Up…"), ButtonStyle::bordered, row};
    m_shortcutRequest->setAccessibleName(tr("Set Up Global Shortcut…"));
    row->layout()->addWidget(m_shortcutRequest);
    row->layout()->setAlignment(m_shortcutRequest, Qt::AlignRight | Qt::AlignVCenter);
    connect(m_shortcutRequest, &PushButton::clicked, this, &GeneralSettingsView::shortcutRequested);
    setShortcutState(ShortcutState::inForce);
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

void GeneralSettingsView::setShortcutState(ShortcutState state)
{
    const QString help = state == ShortcutState::inForce
        ? QString{}
        : tr("The shortcut is not in force on this desktop.\nBind the command “%1” to keys in its settings instead.")
              .arg(QStringLiteral("tallyfox --toggle"));
    m_shortcut->setAccessibleDescription(help);
    m_shortcut->parentWidget()->setToolTip(help);
    m_shortcutRequest->setVisible(state == ShortcutState::onRequest);
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
