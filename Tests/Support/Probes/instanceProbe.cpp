#include "Tallyfox/Agent/Instance/SingleInstance.h"

#include <QCoreApplication>

#include <cstdio>
#include <map>
#include <string>

namespace {

using tallyfox::InstanceRequest;
using tallyfox::SingleInstance;

void report(const char* line)
{
    std::puts(line);
    std::fflush(stdout);
}

} // namespace

/// "claim" tells the outcome, then, as the agent, each request; until its standard input ends. "show", "toggle" and
/// "settings" send that request and tell whether it arrived.
int main(int argumentCount, char** arguments)
{
    static const std::map<std::string, InstanceRequest> requests{
        {"show", InstanceRequest::show}, {"toggle", InstanceRequest::toggle}, {"settings", InstanceRequest::settings}};
    QCoreApplication application{argumentCount, arguments};
    const std::string wish = argumentCount > 1 ? arguments[1] : "claim";
    const auto instance = tallyfox::makeSingleInstance(QStringLiteral("org.tallyfox.tallyfox"));
    if (const auto request = requests.find(wish); request != requests.end()) {
        report(instance->send(request->second) ? "arrived" : "lost");
        return 0;
    }
    QObject::connect(instance.get(), &SingleInstance::requested, [](InstanceRequest asked) {
        for (const auto& [name, request] : requests) {
            if (request == asked)
                report(name.c_str());
        }
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
