#include "Support/Agent/SignalRecorder.h"

#include <QDBusArgument>
#include <QDBusMessage>

namespace tallyfox::test {

void SignalRecorder::record(const QDBusMessage& signal)
{
    QStringList words{signal.member()};
    for (const QVariant& argument : signal.arguments()) {
        if (argument.metaType() == QMetaType::fromType<QString>())
            words += argument.toString();
        else if (argument.metaType() == QMetaType::fromType<QDBusArgument>())
            words += qdbus_cast<QVariantMap>(argument).keys();
    }
    list.push_back(words.join(QLatin1Char{'|'}).toStdString());
}

} // namespace tallyfox::test
