#pragma once

#include "Bus/FuzzInput.h"
#include "Bus/WireMessage.h"
#include "Bus/WireWriter.h"

namespace tallyfox {

/// What a bus would pass on, whatever it means: the bus library refuses what is not well-formed, and so does a bus.
namespace AnyValues {

std::string text(FuzzInput& input);
std::string objectPath(FuzzInput& input);
/// One complete type.
std::string type(FuzzInput& input, int depth = 0);
/// A value of the complete type with which `types` begins; that type is taken off.
void write(FuzzInput& input, WireWriter& writer, std::string_view& types, int depth = 0);
/// Some values of any type become the arguments of `message`.
void fill(FuzzInput& input, WireMessage& message);
/// Values of these types.
void fill(FuzzInput& input, WireMessage& message, std::string_view signature);

} // namespace AnyValues

} // namespace tallyfox
