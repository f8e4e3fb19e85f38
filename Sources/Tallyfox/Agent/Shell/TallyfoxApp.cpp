#include "Tallyfox/Agent/Shell/TallyfoxApp.h"

#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/Controls/AccessibleElements.h"
#include "Tallyfox/Agent/Desktop/ActivationPolicy.h"
#include "Tallyfox/Agent/Desktop/Display.h"
#include "Tallyfox/Agent/Desktop/FolderPicker.h"
#include "Tallyfox/Agent/Desktop/LoginItem.h"
#include "Tallyfox/Agent/Desktop/NotificationCenter.h"
#include "Tallyfox/Agent/Desktop/WindowManager.h"
#include "Tallyfox/Agent/Instance/SingleInstance.h"
#include "Tallyfox/Agent/Settings/SettingsWindow.h"
#include "Tallyfox/Agent/Shell/AppDelegate.h"
#include "Tallyfox/Agent/StatusItem/StatusIconPainter.h"
#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"
#include "Tallyfox/Agent/Theme/Translations.h"
#include "Tallyfox/Engine/Preferences/UserDefaults.h"
#include "Tallyfox/Engine/Store/StoreEnvironment.h"
#include "Tallyfox/Engine/System/StandardStreams.h"
#include "Tallyfox/Engine/System/SystemPaths.h"
#include "Tallyfox/Engine/System/TerminationSignals.h"

#include <QApplication>
#include <QDBusConnection>
#include <QLocale>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tallyfox {

namespace {

QString applicationId()
{
    return QStringLiteral("org.tallyfox.tallyfox");
}

ExitStatus fail(const std::string& message, ExitStatus status = ExitStatus::failure)
{
    StandardStreams::writeDiagnostic(message);
    return status;
}

/// For the time in which the toolkit opens the display: where it cannot, it would abort, and tell users to reinstall.
void endWithoutDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*message*/)
{
    if (type != QtFatalMsg)
        return;
    const std::string platform = qgetenv("QT_QPA_PLATFORM").toStdString();
    std::_Exit(
        static_cast<int>(fail("cannot open the display: the Qt platform '" + platform + "' does not work here")));
}

/// Must be called before the first window is created. Closing the last window does not end the program.
void setApplicationMetadata()
{
    QCoreApplication::setApplicationName(QStringLiteral("Tallyfox"));
    QCoreApplication::setApplicationVersion(QStringLiteral(TALLYFOX_VERSION));
    QGuiApplication::setDesktopFileName(applicationId());
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

AppDelegateEnvironment makeEnvironment(StoreEnvironment store)
{
    AppDelegateEnvironment environment;
    environment.store = std::move(store);
    environment.sleepInhibitor = makeSleepInhibitor();
    environment.makeStatusItem = [] { return makeStatusItem(applicationId()); };
    environment.registerGlobalShortcut = [defaults = UserDefaults{UserDefaults::standardPath()}] {
        return registerGlobalShortcut(defaults);
    };
    environment.loginItem = makeLoginItem(commandPath(), applicationId().toStdString());
    environment.notificationCenter = makeNotificationCenter(QDBusConnection::sessionBus());
    environment.activationPolicy = makeActivationPolicySwitch();
    environment.userDefaults = UserDefaults{UserDefaults::standardPath()};
    return environment;
}

void handle(AppDelegate& delegate, AgentAction action)
{
    switch (action) {
    case AgentAction::show:
        return delegate.showPopover();
    case AgentAction::toggle:
        return delegate.togglePopover();
    case AgentAction::settings:
        return delegate.showSettings();
    }
}

} // namespace

TallyfoxApp::TallyfoxApp(int& argc, char** argv)
    : m_argc(argc)
    , m_argv(argv)
{ }

ExitStatus TallyfoxApp::run()
{
    StandardStreams::silenceToolkit();
    m_activationToken = takeStartupToken();
    const std::vector<std::string_view> arguments(m_argv + std::min(1, m_argc), m_argv + m_argc);
    const CommandLineRequest request = parseCommandLine(arguments);
    if (const auto* error = std::get_if<UsageError>(&request))
        return fail(error->message, ExitStatus::wrongUsage);
    if (const auto* agent = std::get_if<AgentRequest>(&request))
        return runRequest(*agent);
    return fail("this is the agent's program; use tallyfox for the terminal", ExitStatus::wrongUsage);
}

ExitStatus TallyfoxApp::runRequest(const AgentRequest& request)
{
    const auto home = checkHome(request.home);
    if (const auto* error = std::get_if<UsageError>(&home))
        return fail(error->message, ExitStatus::wrongUsage);
    // Asked first: whoever only calls the running agent needs no display, and this process may have none that works.
    if (findRunningAgent(applicationId()))
        return forwardToRunningAgent(request.action, "the agent that runs on this desktop does not answer");
    if (request.action == AgentAction::toggle)
        return forwardToRunningAgent(request.action, "no agent is running on this desktop; tallyfox starts it");
    return start(request, std::get<std::optional<std::filesystem::path>>(home));
}

ExitStatus TallyfoxApp::forwardToRunningAgent(AgentAction action, const char* problem)
{
    const QCoreApplication application{m_argc, m_argv};
    return makeSingleInstance(applicationId())->send(action, m_activationToken) ? ExitStatus::done : fail(problem);
}

ExitStatus TallyfoxApp::start(const AgentRequest& request, const std::optional<std::filesystem::path>& home)
{
    std::variant<XcbConnection, DisplayProblem> display = chooseDisplay();
    if (const auto* problem = std::get_if<DisplayProblem>(&display))
        return fail(problem->message);
    setApplicationMetadata();
    std::signal(SIGHUP, SIG_IGN); // the agent outlives the terminal that it was started from
    TerminationSignals signals;
    qInstallMessageHandler(endWithoutDisplay);
    QApplication application{m_argc, m_argv};
    StandardStreams::silenceToolkit();
    display = XcbConnection{}; // the toolkit has its own now
    signals.watch();
    QObject::connect(&signals, &TerminationSignals::received, &application, &QCoreApplication::quit);
    const std::unique_ptr<SingleInstance> instance = makeSingleInstance(applicationId());
    if (instance->claim() != SingleInstance::Claim::other) {
        runAgent(request, home, *instance);
        signals.raiseReceived();
        return ExitStatus::done;
    }
    if (instance->send(request.action, m_activationToken))
        return ExitStatus::done;
    return fail("the agent that runs on this desktop does not answer");
}

void TallyfoxApp::runAgent(const AgentRequest& request, const std::optional<std::filesystem::path>& home,
                           SingleInstance& instance)
{
    installTranslations(*qApp, QLocale{});
    Theme::apply(*qApp);
    // Not every taskbar finds the icon through the desktop entry.
    QGuiApplication::setWindowIcon(StatusIconPainter::icon(QString{}));
    installAccessibleElements();
    installAccessibleSettings();
    StoreEnvironment store = makeStoreEnvironment(UserDefaults::standardPath(), home);
    if (request.fetchesQuota)
        addCodexQuota(store);
    FolderPicker picker;
    store.picker = &picker;
    AppDelegate delegate{makeEnvironment(std::move(store)), QStringLiteral(TALLYFOX_VERSION)};
    QObject::connect(&picker, &FolderPicker::aboutToOpen, &delegate, &AppDelegate::closePopover);
    QObject::connect(&instance, &SingleInstance::requested, &delegate,
                     [&](AgentAction action, const QByteArray& activationToken) {
                         delegate.setActivationToken(activationToken);
                         handle(delegate, action);
                     });
    QObject::connect(&delegate, &AppDelegate::statusItemSettled, &StandardStreams::reportReady);
    delegate.setActivationToken(m_activationToken);
    delegate.applicationDidFinishLaunching();
    if (request.action == AgentAction::settings)
        delegate.showSettings();
    QCoreApplication::exec();
}

} // namespace tallyfox
