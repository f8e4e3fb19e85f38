#include "Tallyfox/Agent/Settings/SettingsWindow.h"

#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"
#include "Tallyfox/Agent/Desktop/WindowManager.h"
#include "Tallyfox/Agent/Settings/SettingsTabBar.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QAccessibleWidget>
#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QVBoxLayout>

namespace tallyfox {

namespace {

const QScreen& screenWithPointer()
{
    const QScreen* screen = QGuiApplication::screenAt(QCursor::pos());
    return screen ? *screen : *QGuiApplication::primaryScreen();
}

QAccessibleInterface* makeAccessible(const QString& /*className*/, QObject* object)
{
    if (auto* const bar = qobject_cast<SettingsTabBar*>(object))
        return makeAccessibleTabBar(*bar);
    if (auto* const window = qobject_cast<SettingsWindow*>(object))
        return new QAccessibleWidget{window, QAccessible::Window};
    return nullptr;
}

} // namespace

SettingsWindow::SettingsWindow(const QString& version, const SettingsServices& services)
    : QWidget(nullptr,
              Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
                  | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint)
    , m_view(new SettingsView{version, this})
    , m_controller(*m_view, services)
{
    setObjectName(QStringLiteral("settings"));
    setWindowTitle(tr("Tallyfox Settings"));
    setFixedSize(Theme::settingsWidth, Theme::settingsHeight);
    auto* layout = new QVBoxLayout{this};
    layout->setContentsMargins({});
    layout->addWidget(m_view);
    services.activationPolicy.addWindow(*this);
}

void SettingsWindow::setUsage(const UsageSnapshot& snapshot)
{
    m_view->setUsage(snapshot);
}

void SettingsWindow::bringToFront(const QByteArray& activationToken)
{
    if (!m_isPlaced) {
        move(screenWithPointer().availableGeometry().center() - rect().center());
        m_isPlaced = true;
    }
    setActivationToken(*this, activationToken);
    if (isMinimized())
        showNormal();
    show();
    takeFocus(*this, activationToken);
}

void installAccessibleSettings()
{
    QAccessible::installFactory(makeAccessible);
}

} // namespace tallyfox
