#pragma once

#include "Bus/FuzzInput.h"
#include "Bus/WireMessage.h"
#include "Bus/WireWriter.h"

namespace tallyfox {

/// Any well-formed values: neither the bus library nor a bus accepts others.
namespace AnyValues {

std::string text(FuzzInput& input);
std::string objectPath(FuzzInput& input);
/// One complete type.
std::string type(FuzzInput& input, int depth = 0);
/// A value of the complete type with which `types` begins; removes that type from `types`.
void write(FuzzInput& input, WireWriter& writer, std::string_view& types, int depth = 0);
/// Sets the arguments of `message` to some values of any types.
void fill(FuzzInput& input, WireMessage& message);
/// Sets them to values of these types.
void fill(FuzzInput& input, WireMessage& message, std::string_view signature);

} // namespace AnyValues

} // namespace tallyfox
