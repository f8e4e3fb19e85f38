#pragma once

#include "TallyfoxCore/Usage/QuotaSnapshot.h"

#include <cstdint>
#include <string_view>
#include <variant>

namespace tallyfox {

/// Why a rate-limit reply could not be decoded.
enum class DecodingError {
    malformed, ///< not one JSON text as RFC 8259 defines it, in valid UTF-8
    missingKey, ///< a required member is absent or null
    wrongType, ///< a member has another JSON type, or a number its type cannot hold
};

/// Decodes the reply of the Codex app server to "account/rateLimits/read".
namespace CodexRateLimitParser {

/// The snapshot in `reply`, one JSON object. Percentages pass through as they are; reset times are seconds since
/// 1970, saturating at the years 1 and 9999.
std::variant<QuotaSnapshot, DecodingError> decode(std::string_view reply);

/// Whether `line` is a JSON object whose member "id" is the integer `id` (however written: 2, 2.0, 2e0).
bool isReply(std::string_view line, std::int64_t id);

} // namespace CodexRateLimitParser

} // namespace tallyfox
