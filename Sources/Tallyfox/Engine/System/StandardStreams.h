#pragma once

#include "Tallyfox/Engine/CommandLine/TextStyle.h"

#include <string_view>
#include <system_error>
#include <variant>

namespace tallyfox::StandardStreams {

/// Makes sure that the descriptors of the three standard streams are taken, so that no file the program opens later
/// becomes one of them. Reading or writing one that was closed fails as before. To be called first of all.
void guard();

struct Written { };
struct ReaderGone { }; ///< whoever read standard output wants no more, which is no failure

/// Writes all of `text` to standard output; never ends the program by a signal. The error is the system's. Call it
/// from one thread only.
std::variant<Written, ReaderGone, std::error_code> writeOutput(std::string_view text);

/// Writes one line to standard error: the program's name, the message and a line feed. Failure is ignored.
void writeDiagnostic(std::string_view message);

/// From now on messages of the toolkit are not printed, except for the one that ends the program: they would break the
/// rule of one line per diagnostic, and no user can act on them.
void silenceToolkit();

/// How to draw on standard output: with colour on a terminal that can, unless the user set `NO_COLOR`.
TextStyle outputStyle();

} // namespace tallyfox::StandardStreams
