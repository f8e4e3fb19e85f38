#include <QCoreApplication>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

/// Qt is not built with the thread sanitizer, which therefore misses Qt's locks and reports races in what QSettings
/// objects share. This excludes calls from inside Qt, and nothing of the program. Only the sanitizer calls it.
// NOLINTNEXTLINE(bugprone-reserved-identifier): named by the sanitizer
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "called_from_lib:libQt6Core.so.6\n";
}

/// The store's timer and its events need an application object.
int main(int argumentCount, char** arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    // While TZ is unset, the C library reloads the time zone at each use, under a lock that the sanitizer does not see.
    setenv("TZ", "UTC", 0);
    tzset();
    const QCoreApplication application{argumentCount, arguments};
    return RUN_ALL_TESTS();
}
