#pragma once

#include "TallyfoxCore/Usage/CodexRateLimitParser.h"
#include "TallyfoxCore/Usage/QuotaSnapshot.h"

#include <chrono>
#include <filesystem>
#include <stop_token>
#include <system_error>
#include <variant>
#include <vector>

namespace tallyfox {

class ChildReaper;

/// The failures that the fetch itself detects.
enum class SourceError {
    missingCLI, ///< no executable `codex` at any candidate path
    timeout, ///< no result within 10 seconds
    unavailable, ///< the session ended without the expected reply
    cancelled, ///< the caller asked to stop
};

/// Why a quota fetch failed: its own error, the system's (start, write, read), or the reply's.
using QuotaError = std::variant<SourceError, std::error_code, DecodingError>;

/// Asks the user's own `codex` executable for the account's rate limits, over newline-delimited JSON-RPC on the
/// standard input and output of a child process.
namespace CodexQuotaFetcher {

inline constexpr std::chrono::seconds timeLimit{10}; ///< of a whole fetch; includes system sleep

/// Where to look for `codex`, in this order.
std::vector<std::filesystem::path> candidates(const std::filesystem::path& accountHome);

/// The first candidate that is an executable file, or `SourceError::missingCLI`.
std::variant<std::filesystem::path, SourceError> executableURL(const std::vector<std::filesystem::path>& candidates);

/// One exchange. Blocks until the reply, a failure, the limit or a stop request, whichever comes first, but never until
/// the child exits. In every case `reaper` ends the child's process group, of which nothing is left 2 seconds later.
std::variant<QuotaSnapshot, QuotaError> fetch(const std::vector<std::filesystem::path>& candidates, ChildReaper& reaper,
                                              const std::stop_token& stop = {},
                                              std::chrono::milliseconds limit = timeLimit);

} // namespace CodexQuotaFetcher

} // namespace tallyfox
