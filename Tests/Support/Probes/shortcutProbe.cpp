#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

#include <QApplication>
#include <QLabel>
#include <QSocketNotifier>

#include <cstdio>
#include <string_view>
#include <unistd.h>

namespace {

void report(const char* line)
{
    std::puts(line);
    std::fflush(stdout);
}

void reportState(tallyfox::ShortcutState state)
{
    constexpr const char* names[] = {"not in force", "on request", "in force"};
    report(names[static_cast<int>(state)]);
}

void obey(tallyfox::GlobalShortcut& shortcut)
{
    char command = 0;
    if (read(STDIN_FILENO, &command, 1) != 1)
        QCoreApplication::quit();
    else if (command == 'c')
        shortcut.check();
    else if (command == 'r')
        shortcut.request();
}

} // namespace

/// Registers the global shortcut and writes a line for each activation. "--popup": the shortcut opens and closes a
/// popup, as in the program. "--states": writes a line for each state; "c" on standard input checks the shortcut, "r"
/// requests it, and the end of the input ends the program.
int main(int argumentCount, char** arguments)
{
    const std::string_view option = argumentCount > 1 ? arguments[1] : "";
    tallyfox::chooseSessionBus("org.tallyfox.tallyfox");
    QApplication application{argumentCount, arguments};
    QLabel popup{QStringLiteral("popup"), nullptr, Qt::Popup};
    const auto shortcut =
        tallyfox::registerGlobalShortcut(tallyfox::UserDefaults{tallyfox::UserDefaults::standardPath()});
    QObject::connect(shortcut.get(), &tallyfox::GlobalShortcut::activated, &popup, [&] {
        if (option == "--popup")
            popup.setVisible(!popup.isVisible());
        report(popup.isVisible() ? "shown" : "activated");
    });
    QSocketNotifier commands{STDIN_FILENO, QSocketNotifier::Read};
    commands.setEnabled(option == "--states");
    report("ready");
    if (option == "--states") {
        QObject::connect(&commands, &QSocketNotifier::activated, &popup, [&] { obey(*shortcut); });
        QObject::connect(shortcut.get(), &tallyfox::GlobalShortcut::stateChanged, &popup, &reportState);
        reportState(shortcut->state());
    }
    return QApplication::exec();
}
