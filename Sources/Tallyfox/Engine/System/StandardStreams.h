#pragma once

#include "Tallyfox/Engine/CommandLine/TextStyle.h"

#include <string_view>
#include <system_error>
#include <variant>

namespace tallyfox::StandardStreams {

/// Opens those of the three standard descriptors that are closed, so that no file the program opens later becomes one
/// of them. Using a stream that was closed still fails. Call this before anything else.
void guard();

struct Written { };
struct ReaderGone { }; ///< the reader has closed standard output, which does not count as a failure

/// Writes all of `text` to standard output; never raises SIGPIPE. Call it from one thread only.
std::variant<Written, ReaderGone, std::error_code> writeOutput(std::string_view text);

/// Writes one line to standard error: the program's name, the message and a line feed. Ignores failures.
void writeDiagnostic(std::string_view message);

/// Writes a line to the descriptor that `TALLYFOX_READY_FD` names, closes it, and unsets the variable; does nothing
/// without it. So scripts/run, which starts the agent in the background, knows when it is there.
void reportReady();

/// Silences Qt's own messages, except fatal ones: they would break the rule of one line per diagnostic, and users
/// cannot act on them.
void silenceToolkit();

/// What standard output can show: colour on a terminal that has it, unless `NO_COLOR` is set.
TextStyle outputStyle();

} // namespace tallyfox::StandardStreams
