#include <QCoreApplication>
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

/// The thread sanitizer cannot see the locks inside the packaged toolkit, which is not built with it, and takes what
/// QSettings shares between its objects under them for races. What is called from inside the toolkit is therefore left
/// out. Nothing of ours is. Without that sanitizer nobody calls this.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's name for it
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "called_from_lib:libQt6Core.so.6\n";
}

/// The store's timer and its events need an application object.
int main(int argumentCount, char** arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    // While TZ is unset, the C library renews its time zone at each use, under a lock that the sanitizer cannot see.
    setenv("TZ", "UTC", 0);
    tzset();
    const QCoreApplication application{argumentCount, arguments};
    return RUN_ALL_TESTS();
}
