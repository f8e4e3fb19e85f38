#pragma once

#include "TallyfoxCore/Usage/Provider.h"

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace tallyfox::test {

/// Generates short history texts with everything that a writer, an editor, a crash or a cut can do to a history:
/// records in any spelling of their words, duplicate members, lines cut off, carriage returns, blank lines, colour
/// codes, invalid UTF-8. The same seed gives the same texts.
class GeneratedHistory {
public:
    GeneratedHistory(Provider provider, std::uint64_t seed);

    std::string text();

private:
    bool oneIn(unsigned count);
    unsigned upTo(unsigned largest);
    template <std::size_t count> std::string_view anyOf(const char* const (&choices)[count]);
    std::string spelled(std::string_view word);
    std::string member(std::string_view name, const std::string& value);
    std::string filler();
    std::string counts();
    std::string claudeRecord();
    std::string codexRecord();
    std::string record();
    std::string damaged(std::string line);
    std::string line();

    Provider m_provider;
    std::mt19937_64 m_random;
};

} // namespace tallyfox::test
