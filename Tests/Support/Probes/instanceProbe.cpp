#include "Tallyfox/Agent/Instance/SingleInstance.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

using tallyfox::SingleInstance;

void report(const char* line)
{
    std::puts(line);
    std::fflush(stdout);
}

} // namespace

/// "claim" writes the outcome and then, as the agent, each action it is asked for. "show", "toggle" and "settings" send
/// that action and write whether it arrived. "look" writes whether there is an agent.
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
        report(instance->send(*action) ? "arrived" : "lost");
        return 0;
    }
    QObject::connect(instance.get(), &SingleInstance::requested,
                     [](tallyfox::AgentAction action) { report(tallyfox::toName(action)); });
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
