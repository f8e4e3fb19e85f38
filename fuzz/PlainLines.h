#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The lines of a history text, straight from the rule, byte by byte: a line feed ends a line unless it follows a
/// carriage return, and empty lines do not count. As copies, or as views of the text.
template <typename Line = std::string> std::vector<Line> plainLines(std::string_view text)
{
    std::vector<Line> lines;
    std::size_t begin = 0;
    for (std::size_t index = 0; index <= text.size(); ++index) {
        const bool isEnd = index == text.size();
        const bool endsLine = isEnd || (text[index] == '\n' && (index == 0 || text[index - 1] != '\r'));
        if (!endsLine)
            continue;
        if (index > begin)
            lines.emplace_back(text.substr(begin, index - begin));
        begin = index + 1;
    }
    return lines;
}
