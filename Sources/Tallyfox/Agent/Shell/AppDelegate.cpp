#include "Tallyfox/Agent/Shell/AppDelegate.h"

#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"
#include "Tallyfox/Agent/Desktop/Display.h"
#include "Tallyfox/Agent/Desktop/LayerShell.h"
#include "Tallyfox/Agent/Desktop/LoginItem.h"
#include "Tallyfox/Agent/Desktop/NotificationCenter.h"
#include "Tallyfox/Agent/Desktop/WindowManager.h"
#include "Tallyfox/Agent/Settings/SettingsWindow.h"
#include "Tallyfox/Agent/Shell/StatusTexts.h"
#include "Tallyfox/Engine/System/StandardStreams.h"

#include <QGuiApplication>
#include <QLocale>

#include <chrono>
#include <utility>

namespace tallyfox {

AppDelegate::AppDelegate(AppDelegateEnvironment environment, QString version, QObject* parent)
    : QObject(parent)
    , m_environment(std::move(environment))
    , m_version(std::move(version))
    , m_store(m_environment.store)
    , m_caffeine(*m_environment.sleepInhibitor)
    , m_popover(popoverKind(QGuiApplication::platformName(), isWaylandSession(), hasLayerShell()))
{
    m_publicationTimer.setSingleShot(true);
    connect(&m_publicationTimer, &QTimer::timeout, this, &AppDelegate::publish);
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    configureStatusItem();
    configurePopover();
    registerGlobalShortcut();
    m_store.setRefreshInterval(m_environment.userDefaults.preferences().refreshMinutes);
    m_store.refresh();
}

void AppDelegate::configureStatusItem()
{
    m_statusItem = m_environment.makeStatusItem();
    const auto update = [this] { m_statusItem->setContent({.percent = m_store.combinedPercent()}); };
    connect(&m_store, &UsageStore::combinedPercentPublished, this, update);
    connect(m_statusItem.get(), &StatusItem::activated, this, &AppDelegate::activateStatusItem);
    connect(m_statusItem.get(), &StatusItem::chosen, this, &AppDelegate::handleChoice);
    connect(m_statusItem.get(), &StatusItem::activationTokenProvided, this, &AppDelegate::setActivationToken);
    connect(m_statusItem.get(), &StatusItem::unavailable, this, [this] {
        StandardStreams::writeDiagnostic(missingStatusAreaText(qgetenv("XDG_CURRENT_DESKTOP").toStdString()));
        Q_EMIT statusItemSettled();
    });
    connect(m_statusItem.get(), &StatusItem::shown, this, &AppDelegate::statusItemSettled);
    connect(&m_caffeine, &CaffeineController::isEnabledPublished, this, &AppDelegate::updateMenu);
    update();
    updateMenu();
}

void AppDelegate::updateMenu()
{
    m_statusItem->setMenu(
        {.figures = [this](bool isOpened) { return menuFigures(m_store.snapshot(), QLocale{}, isOpened); },
         .keepsAwake = m_caffeine.isEnabled()});
}

void AppDelegate::handleChoice(StatusMenuAction action)
{
    switch (action) {
    case StatusMenuAction::open:
        return showPopover();
    case StatusMenuAction::refresh:
        return m_store.refresh();
    case StatusMenuAction::settings:
        return showSettings();
    case StatusMenuAction::keepAwake:
        return m_caffeine.toggle();
    }
}

void AppDelegate::configurePopover()
{
    PopoverView& view = m_popover.view();
    connect(&view, &PopoverView::refreshRequested, &m_store, &UsageStore::refresh);
    connect(&view, &PopoverView::homeAccessRequested, &m_store, &UsageStore::requestHomeAccess);
    connect(&view, &PopoverView::settingsRequested, this, &AppDelegate::showSettings);
    connect(&view, &PopoverView::keepAwakeToggled, &m_caffeine, &CaffeineController::toggle);
    connect(&m_caffeine, &CaffeineController::isEnabledPublished, &view, &PopoverView::setKeepsAwake);

    connect(&m_store, &UsageStore::statesPublished, this, &AppDelegate::publishLater);
    connect(&m_store, &UsageStore::isRefreshingPublished, this, &AppDelegate::publishLater);
    connect(&m_store, &UsageStore::lastUpdatedPublished, this, &AppDelegate::publishLater);
    connect(&m_store, &UsageStore::hasHomeAccessPublished, this, &AppDelegate::publishLater);
}

void AppDelegate::registerGlobalShortcut()
{
    m_hotKey = m_environment.registerGlobalShortcut();
    connect(m_hotKey.get(), &GlobalShortcut::activated, this, &AppDelegate::togglePopover);
}

void AppDelegate::activateStatusItem(std::optional<QPoint> click)
{
    if (click)
        m_lastClick = click;
    if (!m_popover.hasJustLostFocus())
        togglePopover();
}

void AppDelegate::togglePopover()
{
    if (m_popover.isVisible())
        closePopover();
    else
        openPopover();
}

void AppDelegate::showPopover()
{
    if (!m_popover.isVisible())
        openPopover();
}

void AppDelegate::closePopover()
{
    m_popover.hide();
}

void AppDelegate::setActivationToken(const QByteArray& token)
{
    m_activationToken = isActivationToken(token) ? token : QByteArray{};
}

void AppDelegate::openPopover()
{
    m_popover.view().setUsage(m_store.snapshot());
    m_popover.open(m_lastClick, std::exchange(m_activationToken, {}));
    m_store.refresh();
}

void AppDelegate::showSettings()
{
    closePopover();
    if (!m_settingsWindow)
        createSettingsWindow();
    m_settingsWindow->setUsage(m_store.snapshot());
    m_settingsWindow->bringToFront(std::exchange(m_activationToken, {}));
}

void AppDelegate::createSettingsWindow()
{
    m_settingsWindow =
        std::make_unique<SettingsWindow>(m_version,
                                         SettingsServices{.userDefaults = m_environment.userDefaults,
                                                          .loginItem = *m_environment.loginItem,
                                                          .notificationCenter = *m_environment.notificationCenter,
                                                          .activationPolicy = *m_environment.activationPolicy,
                                                          .shortcut = *m_hotKey});
    const SettingsController& settings = m_settingsWindow->controller();
    connect(&settings, &SettingsController::refreshIntervalChanged, &m_store, &UsageStore::setRefreshInterval);
    connect(&settings, &SettingsController::refreshRequested, &m_store, &UsageStore::refresh);
    connect(&settings, &SettingsController::homeAccessRequested, &m_store, &UsageStore::requestHomeAccess);
}

void AppDelegate::publishLater()
{
    // The store publishes several values in a row: draw once, after the last.
    m_publicationTimer.start(std::chrono::milliseconds{0});
}

void AppDelegate::publish()
{
    updateMenu();
    if (!m_popover.isVisible() && !isSettingsVisible())
        return;
    const UsageSnapshot usage = m_store.snapshot();
    if (m_popover.isVisible())
        m_popover.view().setUsage(usage);
    if (isSettingsVisible())
        m_settingsWindow->setUsage(usage);
}

bool AppDelegate::isSettingsVisible() const
{
    return m_settingsWindow && m_settingsWindow->isVisible();
}

} // namespace tallyfox
