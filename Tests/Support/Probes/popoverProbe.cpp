#include "Tallyfox/Agent/Shell/PopoverWindow.h"

#include <QApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

namespace {

using tallyfox::PopoverKind;
using tallyfox::PopoverWindow;

/// Writes a line when the popover closes.
class Reporter : public QObject {
public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        if (event->type() == QEvent::Hide)
            report("hidden");
        return false;
    }

    static void report(const std::string& line)
    {
        std::puts(line.c_str());
        std::fflush(stdout);
    }
};

void handle(PopoverWindow& popover, const std::string& line)
{
    std::istringstream words{line};
    std::string command;
    QPoint click;
    std::string token;
    words >> command >> click.rx() >> click.ry() >> token;
    if (command == "close")
        popover.hide();
    else
        popover.open(click, QByteArray::fromStdString(token));
    if (popover.isVisible())
        Reporter::report("shown " + std::to_string(popover.winId()));
}

} // namespace

/// Shows a popover of the kind that is given: "popup" or "window". Reads commands: "open X Y TOKEN" with a click and
/// perhaps an activation token, and "close".
int main(int argumentCount, char** arguments)
{
    QApplication application{argumentCount, arguments};
    const bool isPopup = argumentCount > 1 && std::string{arguments[1]} == "popup";
    PopoverWindow popover{isPopup ? PopoverKind::popup : PopoverKind::x11Window};
    Reporter reporter;
    popover.installEventFilter(&reporter);
    QSocketNotifier commands{0, QSocketNotifier::Read};
    QObject::connect(&commands, &QSocketNotifier::activated, &popover, [&] {
        std::string line;
        if (std::getline(std::cin, line))
            handle(popover, line);
        else
            QApplication::quit();
    });
    Reporter::report("ready");
    return QApplication::exec();
}
