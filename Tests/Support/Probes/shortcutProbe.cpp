#include "Tallyfox/Agent/Bus/SessionBus.h"
#include "Tallyfox/Agent/Shortcut/GlobalShortcut.h"

#include <QApplication>
#include <QLabel>

#include <cstdio>
#include <string_view>

/// Registers the global shortcut and writes a line for each activation. "--popup": the shortcut opens and closes a
/// popup, as in the program.
int main(int argumentCount, char** arguments)
{
    const bool hasPopup = argumentCount > 1 && std::string_view{arguments[1]} == "--popup";
    tallyfox::chooseSessionBus("org.tallyfox.tallyfox");
    QApplication application{argumentCount, arguments};
    QLabel popup{QStringLiteral("popup"), nullptr, Qt::Popup};
    const auto shortcut = tallyfox::registerGlobalShortcut();
    const auto report = [](const char* line) {
        std::puts(line);
        std::fflush(stdout);
    };
    QObject::connect(shortcut.get(), &tallyfox::GlobalShortcut::activated, &popup, [&] {
        if (hasPopup)
            popup.setVisible(!popup.isVisible());
        report(popup.isVisible() ? "shown" : "activated");
    });
    report("ready");
    return QApplication::exec();
}
