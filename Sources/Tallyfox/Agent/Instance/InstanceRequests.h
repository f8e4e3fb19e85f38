#pragma once

#include "Tallyfox/Agent/Instance/SingleInstance.h"

#include <array>
#include <optional>

namespace tallyfox {

/// How the requests are called between two processes.
struct InstanceRequestName {
    InstanceRequest request;
    const char* name;
};

inline constexpr std::array<InstanceRequestName, 3> instanceRequestNames{
    {{InstanceRequest::show, "show"}, {InstanceRequest::toggle, "toggle"}, {InstanceRequest::settings, "settings"}}};

constexpr const char* nameOf(InstanceRequest request)
{
    for (const InstanceRequestName& each : instanceRequestNames) {
        if (each.request == request)
            return each.name;
    }
    return "";
}

/// Nothing for a name that no request has.
template <typename Text> std::optional<InstanceRequest> requestNamed(const Text& name)
{
    for (const InstanceRequestName& each : instanceRequestNames) {
        if (name == each.name)
            return each.request;
    }
    return std::nullopt;
}

} // namespace tallyfox
