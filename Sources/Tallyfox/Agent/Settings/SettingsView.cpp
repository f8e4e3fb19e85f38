#include "Tallyfox/Agent/Settings/SettingsView.h"

#include "Tallyfox/Agent/Controls/Card.h"
#include "Tallyfox/Agent/Controls/SymbolView.h"
#include "Tallyfox/Agent/Settings/AccountSettingsView.h"
#include "Tallyfox/Agent/Settings/GeneralSettingsView.h"
#include "Tallyfox/Agent/Settings/NotificationSettingsView.h"
#include "Tallyfox/Agent/Settings/SettingsTabBar.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

constexpr int tabBarPadding = 6; ///< above and below
constexpr int aboutSpacing = 14;
constexpr int aboutLineSpacing = 3;

/// The "About" tab: the program's name and version, and what it promises.
class AboutSettingsView : public SettingsForm {
    Q_DECLARE_TR_FUNCTIONS(AboutSettingsView)

public:
    /// An empty `version` is shown as "0.1.0".
    AboutSettingsView(const QString& version, QWidget* parent)
        : SettingsForm(parent)
    {
        addHeader(version.isEmpty() ? QStringLiteral("0.1.0") : version);
        addPrivacy();
        endSections();
    }

private:
    void addHeader(const QString& version)
    {
        SettingsSection* const section = addSection(QString{});
        auto* const header = new QWidget{section};
        auto* const row = new QHBoxLayout{header};
        row->setContentsMargins(0, 4, 0, 4);
        row->setSpacing(aboutSpacing);
        row->addWidget(new IconTile{IconTile::logo, Symbol::barChartFill, Theme::cream(), Theme::accent(), header});
        auto* const texts = new QVBoxLayout;
        texts->setSpacing(aboutLineSpacing);
        texts->addStretch();
        texts->addWidget(new TextLabel{QStringLiteral("Tallyfox"), Theme::title2(), Theme::ink(), header});
        texts->addWidget(new TextLabel{tr("Version %1").arg(version), Theme::body(), Theme::muted(), header});
        texts->addStretch();
        row->addLayout(texts);
        section->insertWideRow(0, header);
    }

    void addPrivacy()
    {
        SettingsSection* const section = addSection(tr("Privacy"));
        section->addValueRow(tr("Processing"), tr("100% Local"));
        section->addValueRow(tr("Raw transcripts"), tr("Never stored"));
        section->addValueRow(tr("Provider credentials"), tr("Never read"));
    }
};

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

/// The release of a key is not reported while another window has the focus.
void SettingsView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange)
        m_tabs->setShowsMnemonics(false);
}

} // namespace tallyfox
