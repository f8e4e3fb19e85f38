#pragma once

#include "Bus/FuzzInput.h"
#include "Bus/GrantLedger.h"

namespace tallyfox {

/// Replies of services that follow their protocols; the input decides what they contain.
namespace ServiceAnswers {

/// The reply to a call; returns whether it has a descriptor.
bool fill(FuzzInput& input, const AskedCall& asked, WireMessage& answer);
/// A portal's response to a request: mostly consent, with what was requested.
void fillResponse(FuzzInput& input, const AskedCall& asked, WireMessage& response);

} // namespace ServiceAnswers

} // namespace tallyfox
