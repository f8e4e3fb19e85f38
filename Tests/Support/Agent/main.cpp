#include "Tallyfox/Agent/Theme/TallyfoxTheme.h"

#include <QApplication>
#include <QLocale>
#include <gtest/gtest.h>

#include <cstdlib>

/// Widgets need an application object. It draws without a display, in one language and one zone, and meets neither
/// the session bus nor the accessibility bus of whoever runs the tests.
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
