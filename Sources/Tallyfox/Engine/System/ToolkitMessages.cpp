#include "Tallyfox/Engine/System/ToolkitMessages.h"

#include "Tallyfox/Engine/System/StandardStreams.h"

#include <QString>
#include <QtGlobal>

namespace tallyfox {

namespace {

void reportFatalMessages(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    if (type == QtFatalMsg)
        StandardStreams::writeDiagnostic(message.simplified().toStdString());
}

} // namespace

void silenceToolkitMessages()
{
    qInstallMessageHandler(reportFatalMessages);
}

} // namespace tallyfox
