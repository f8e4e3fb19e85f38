#pragma once

#include <QString>

#include <cstdint>
#include <string>

class QLocale;

namespace tallyfox {

/// A short token count: "1.3M" from 1,000,000, "1.0K" from 1,000 ("1000.0K" just below a million), else the exact
/// count. Negative counts are exact.
std::string tokenText(std::int64_t tokens);

/// The same for the views: exact counts are written as `locale` writes integers.
QString tokenText(std::int64_t tokens, const QLocale& locale);

/// The exact token count, in groups of three digits: "1,234,567".
std::string exactTokenText(std::int64_t tokens);

} // namespace tallyfox
