#include "Support/Agent/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <gtest/gtest.h>

namespace tallyfox::test {
namespace {

TEST(PrivateBus, connectionsArePeersOfTheSameBus)
{
    PrivateBus bus;
    ASSERT_FALSE(bus.address().isEmpty());
    QDBusConnection first = bus.connect();
    const QDBusConnection second = bus.connect();
    ASSERT_TRUE(first.registerService(QStringLiteral("org.tallyfox.test")));
    EXPECT_NE(first.baseService(), second.baseService());
    EXPECT_EQ(second.interface()->serviceOwner(QStringLiteral("org.tallyfox.test")).value(), first.baseService());
}

} // namespace
} // namespace tallyfox::test
