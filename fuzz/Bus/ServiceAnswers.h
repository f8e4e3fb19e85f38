#pragma once

#include "Bus/FuzzInput.h"
#include "Bus/GrantLedger.h"

namespace tallyfox {

/// What services answer that keep to their protocols, whatever they say. The rest of the input says what.
namespace ServiceAnswers {

/// The answer to a call; returns whether a descriptor comes with it.
bool fill(FuzzInput& input, const AskedCall& asked, WireMessage& answer);
/// A portal's decision about a request: mostly consent, with what was asked for.
void fillResponse(FuzzInput& input, const AskedCall& asked, WireMessage& response);

} // namespace ServiceAnswers

} // namespace tallyfox
