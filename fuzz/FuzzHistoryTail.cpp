/// The text of a tail: its lines must be those of a plain implementation of the rule, and the word search must find
/// what a naive one finds.

#include "FuzzSupport.h"
#include "PlainLines.h"
#include "TallyfoxCore/Json/WordSearch.h"
#include "TallyfoxCore/Usage/HistoryLines.h"

#include <string>
#include <vector>

using namespace tallyfox;

namespace {

std::vector<std::string> foundLines(const HistoryLines& lines)
{
    std::vector<std::string> found;
    LineCounter counter(lines);
    forEachLine(lines, LineSelection::all, {}, [&](std::string_view line) {
        require(counter.indexOf(line) == found.size(), "lines are counted in order");
        found.emplace_back(line);
    });
    return found;
}

bool mentions(std::string_view line, std::string_view word)
{
    for (std::size_t index = 0; index + 5 <= line.size(); ++index) {
        if (line.substr(index, 4) == "\\u00" && line[index + 4] >= '5' && line[index + 4] <= '7')
            return true;
    }
    return line.find('"' + std::string(word) + '"') != line.npos;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // A copy of exactly this size, so that the sanitizer sees a byte read beyond the end.
    const std::vector<char> copy(data, data + size);
    const HistoryLines lines(std::string_view(copy.data(), copy.size()));
    std::vector<std::string> expected = plainLines(lines.text());
    require(foundLines(lines) == expected, "lines are found as the rule says");

    std::vector<std::string> mentioning;
    forEachLine(lines, LineSelection::mentioning, "usage",
                [&](std::string_view line) { mentioning.emplace_back(line); });
    std::erase_if(expected, [](const std::string& line) { return !mentions(line, "usage"); });
    require(mentioning == expected, "exactly the lines that may mention the word are found");

    std::vector<std::string> rest = plainLines(lines.text());
    if (!rest.empty())
        rest.erase(rest.begin());
    require(foundLines(lines.withoutFirst()) == rest, "the rest lacks the first line alone");
    return 0;
}
