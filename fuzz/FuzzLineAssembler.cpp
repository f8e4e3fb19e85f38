/// A stream in pieces of any size gives the same lines as in one piece; lines that are too long are dropped.

#include "FuzzSupport.h"
#include "Tallyfox/Engine/Quota/LineAssembler.h"

#include <algorithm>
#include <string>
#include <vector>

using namespace tallyfox;

namespace {

constexpr std::size_t maximumLength = 16;

/// All lines, the last one also when no line feed ends it.
std::vector<std::string> expectedLines(std::string_view stream)
{
    std::vector<std::string> lines;
    while (!stream.empty()) {
        const std::size_t end = std::min(stream.find('\n'), stream.size());
        if (end <= maximumLength)
            lines.emplace_back(stream.substr(0, end));
        stream.remove_prefix(std::min(end + 1, stream.size()));
    }
    return lines;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view stream = textOf(data, size);
    const std::vector<std::string> expected = expectedLines(stream);
    LineAssembler assembler{maximumLength};
    std::vector<std::string> lines;
    while (!stream.empty()) {
        const std::size_t length =
            std::min<std::size_t>(stream.size(), 1 + static_cast<unsigned char>(stream.front()) % 7U);
        std::string_view piece = stream.substr(0, length);
        while (const auto line = assembler.next(piece))
            lines.emplace_back(*line);
        require(piece.empty(), "a piece is used up");
        stream.remove_prefix(length);
    }
    if (const auto last = assembler.last())
        lines.emplace_back(*last);
    require(lines == expected, "pieces give the lines of the whole");
    return 0;
}
