#pragma once

#include "Bus/FuzzInput.h"
#include "Bus/GrantLedger.h"

#include <string>

namespace tallyfox {

/// Replies of services that follow their protocols; the input decides what they contain.
namespace ServiceAnswers {

/// The reply to a call; returns whether it has a descriptor.
bool fill(FuzzInput& input, const AskedCall& asked, WireMessage& answer);
/// The body of the properties (`a{sv}`) of a watcher of status notifiers: whether it has a host, and whether its list
/// holds the program's item.
std::string watcherProperties(bool hasHost, bool isListed);
/// A portal's response to a request: mostly consent, with what was requested.
void fillResponse(FuzzInput& input, const AskedCall& asked, WireMessage& response);

} // namespace ServiceAnswers

} // namespace tallyfox
