#include <QCoreApplication>
#include <gtest/gtest.h>

/// The store's timer and its events need an application object.
int main(int argumentCount, char** arguments)
{
    testing::InitGoogleTest(&argumentCount, arguments);
    const QCoreApplication application{argumentCount, arguments};
    return RUN_ALL_TESTS();
}
