#include "Support/Agent/MenuHost.h"

#include "Support/SpinUntil.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <gtest/gtest.h>

namespace tallyfox::test {

MenuHost::MenuHost(const QDBusConnection& bus, const QString& menu)
    : m_bus{bus}
    , m_menu{menu}
{
    EXPECT_TRUE(m_bus.connect(m_menu, StatusMenu::path(), interface, QStringLiteral("ItemsPropertiesUpdated"), this,
                              SLOT(handleUpdate(QDBusMessage))));
}

QDBusMessage MenuHost::message(const char* member, const QVariantList& arguments, const QString& name) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(m_menu, StatusMenu::path(), name, QLatin1String{member});
    call.setArguments(arguments);
    return call;
}

QDBusMessage MenuHost::call(const char* member, const QVariantList& arguments, const QString& name) const
{
    const QDBusPendingCall pending = start(message(member, arguments, name));
    EXPECT_TRUE(spinUntil([&] { return pending.isFinished(); }));
    QCoreApplication::processEvents(); // signals that came before the reply wait for the event loop
    return pending.reply();
}

StatusMenuLayout MenuHost::layout(int parent, int depth, const QStringList& names) const
{
    const QDBusMessage reply = call("GetLayout", {parent, depth, names});
    EXPECT_EQ(reply.signature().toStdString(), "u(ia{sv}av)");
    return qdbus_cast<StatusMenuLayout>(reply.arguments().value(1));
}

MenuHost::Labels MenuHost::labels() const
{
    Labels result;
    for (const StatusMenuEntry& entry : layout().children) {
        if (entry.properties.contains(QStringLiteral("label"))
            && entry.properties.value(QStringLiteral("visible"), true).toBool())
            result[entry.id] = entry.properties.value(QStringLiteral("label")).toString().toStdString();
    }
    return result;
}

QVariant MenuHost::property(int id, const char* name) const
{
    const QDBusMessage reply = call("GetProperty", {id, QLatin1String{name}});
    EXPECT_EQ(reply.signature().toStdString(), "v");
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

void MenuHost::handleUpdate(const QDBusMessage& signal)
{
    EXPECT_EQ(signal.signature().toStdString(), "a(ia{sv})a(ias)");
    updates += qdbus_cast<QList<StatusMenuEntry>>(signal.arguments().value(0));
    EXPECT_TRUE(qdbus_cast<QList<StatusMenuRemoval>>(signal.arguments().value(1)).isEmpty());
}

} // namespace tallyfox::test
