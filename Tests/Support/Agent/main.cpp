#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QApplication>
#include <QLocale>
#include <gtest/gtest.h>

#include <cstdlib>

/// Widgets need an application object. It needs no display, has a fixed language and time zone, and uses neither the
/// session bus nor the accessibility bus of the user.
int main(int argumentCount, char** arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("TZ", "UTC", 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    unsetenv("XDG_RUNTIME_DIR");
    QLocale::setDefault(QLocale{QLocale::English, QLocale::UnitedStates});
    QApplication application{argumentCount, arguments};
    tallyfox::Theme::apply(application);
    return RUN_ALL_TESTS();
}
