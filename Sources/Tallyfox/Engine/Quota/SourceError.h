#pragma once

#include "TallyfoxCore/Usage/CodexRateLimitParser.h"

#include <system_error>
#include <variant>

namespace tallyfox {

/// The failures a quota fetch raises itself.
enum class SourceError {
    missingCLI, ///< no executable `codex` at any candidate path
    timeout, ///< no result within 10 seconds
    unavailable, ///< the session ended without the expected reply
    cancelled, ///< the caller asked to stop
};

/// Why a quota fetch failed: its own error, the system's (start, write, read), or the reply's.
using QuotaError = std::variant<SourceError, std::error_code, DecodingError>;

} // namespace tallyfox
