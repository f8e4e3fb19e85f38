#include "Tallyfox/Agent/Desktop/WindowManager.h"
#include "Tallyfox/Agent/Instance/SingleInstance.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

using tallyfox::SingleInstance;

void report(const QByteArray& line)
{
    std::puts(line.constData());
    std::fflush(stdout);
}

} // namespace

/// "claim" writes the outcome and then, as the agent, each action it is asked for, with its activation token if there
/// is one. "show", "toggle" and "settings" send that action, with the token that this process was started with, and
/// write whether it arrived. "look" writes whether there is an agent.
int main(int argumentCount, char** arguments)
{
    const QString id = QStringLiteral("org.tallyfox.tallyfox");
    const QByteArray wish = argumentCount > 1 ? arguments[1] : "claim";
    if (wish == "look") {
        report(tallyfox::findRunningAgent(id) ? "running" : "none");
        return 0;
    }
    QCoreApplication application{argumentCount, arguments};
    const auto instance = tallyfox::makeSingleInstance(id);
    if (const auto action = tallyfox::findAction(wish)) {
        report(instance->send(*action, tallyfox::takeStartupToken()) ? "arrived" : "lost");
        return 0;
    }
    QObject::connect(instance.get(), &SingleInstance::requested,
                     [](tallyfox::AgentAction action, const QByteArray& activationToken) {
                         const QByteArray name = tallyfox::toName(action);
                         report(activationToken.isEmpty() ? name : name + ' ' + activationToken);
                     });
    switch (instance->claim()) {
    case SingleInstance::Claim::first:
        report("first");
        return QCoreApplication::exec();
    case SingleInstance::Claim::other:
        report("other");
        return 0;
    case SingleInstance::Claim::impossible:
        report("impossible");
        return 0;
    }
}
