#include "Tallyfox/Agent/Settings/SettingsView.h"

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Settings/AboutSettingsView.h"
#include "Tallyfox/Agent/Settings/AccountSettingsView.h"
#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"
#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"
#include "Tallyfox/Agent/Settings/SettingsTabBar.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int tabBarPadding = 6; ///< above and below

} // namespace

SettingsView::SettingsView(const QString& version, QWidget* parent)
    : QWidget(parent)
    , m_tabs(new SettingsTabBar{this})
    , m_forms(new QStackedWidget{this})
    , m_general(new GeneralSettingsView{m_forms})
    , m_accounts(new AccountSettingsView{m_forms})
    , m_notifications(new NotificationSettingsView{m_forms})
{
    setMinimumSize(Theme::settingsWidth, Theme::settingsHeight);
    setPalette(Theme::palette());
    setAutoFillBackground(true);
    auto* const column = new QVBoxLayout{this};
    column->setContentsMargins(0, tabBarPadding, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_tabs, 0, Qt::AlignHCenter);
    column->addSpacing(tabBarPadding);
    column->addWidget(new Divider{this});
    column->addWidget(m_forms, 1);
    addTabs(version);
}

void SettingsView::addTabs(const QString& version)
{
    const auto add = [this](Symbol symbol, const QString& title, QWidget* form) {
        m_tabs->addSymbolTab(symbol, title);
        m_forms->addWidget(form);
    };
    m_tabs->setAccessibleName(tr("Settings"));
    add(Symbol::gear, tr("&General"), m_general);
    add(Symbol::personCircle, tr("&Accounts"), m_accounts);
    add(Symbol::bell, tr("&Notifications"), m_notifications);
    add(Symbol::infoCircle, tr("A&bout"), new AboutSettingsView{version, m_forms});
    connect(m_tabs, &QTabBar::currentChanged, m_forms, &QStackedWidget::setCurrentIndex);
}

void SettingsView::setPreferences(const Preferences& preferences)
{
    m_general->setPreferences(preferences);
    m_notifications->setPreferences(preferences);
}

void SettingsView::setUsage(const UsageSnapshot& snapshot)
{
    m_accounts->setUsage(snapshot);
}

GeneralSettingsView& SettingsView::general() const
{
    return *m_general;
}

AccountSettingsView& SettingsView::accounts() const
{
    return *m_accounts;
}

NotificationSettingsView& SettingsView::notifications() const
{
    return *m_notifications;
}

void SettingsView::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Alt)
        m_tabs->setShowsMnemonics(true);
    QWidget::keyPressEvent(event);
}

void SettingsView::keyReleaseEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Alt)
        m_tabs->setShowsMnemonics(false);
    QWidget::keyReleaseEvent(event);
}

/// A key that is let go while another window has the focus is never heard of.
void SettingsView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange)
        m_tabs->setShowsMnemonics(false);
}

} // namespace tallyfox
