/// A history file around the size of a tail, read by the tail reader and by an oracle that reads all of it.

#include "FuzzSupport.h"
#include "PlainLines.h"
#include "Support/ScratchFolder.h"
#include "TallyfoxCore/Files/FileDescriptor.h"
#include "TallyfoxCore/Files/HistoryFiles.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include <string>
#include <string_view>
#include <vector>

using namespace tallyfox;

namespace {

constexpr std::size_t tailSize = LocalUsageScanner::tailSize;

/// The first bytes of the input choose how much longer than a tail the file is, and how it is filled; the rest is its
/// text.
std::string contentOf(std::string_view input)
{
    if (input.size() < 4)
        return std::string{input};
    const auto number = [&](std::size_t place) { return std::size_t{static_cast<unsigned char>(input[place])}; };
    const std::size_t size = tailSize - 256 + (number(0) << 8U | number(1));
    const std::string_view text = input.substr(3);
    if (number(2) % 4 == 0)
        return std::string{text};
    // Filled up before or after the text with one long line, or by repeating the text.
    const std::string filler(size > text.size() ? size - text.size() : 0, number(2) % 4 == 1 ? '\n' : ' ');
    if (number(2) % 4 != 3)
        return number(2) % 8 < 4 ? filler + std::string{text} : std::string{text} + filler;
    std::string content;
    while (content.size() < size)
        content += text;
    return content;
}

/// The lines by the rule, from all bytes of the file.
std::vector<std::string_view> expectedLines(std::string_view content)
{
    if (content.size() <= tailSize)
        return plainLines<std::string_view>(content);
    auto lines = plainLines<std::string_view>(content.substr(content.size() - tailSize));
    if (!lines.empty())
        lines.erase(lines.begin());
    return lines;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const test::ScratchFolder folder;
    const std::string content = contentOf(textOf(data, size));
    test::writeFile(folder.path() / "a.jsonl", content);
    const FileDescriptor root = FileDescriptor::openFolder(folder.path().c_str());
    LocalUsageScanner::TailReader reader;
    const auto outcome = reader.tailLines(root, "a.jsonl");
    require(std::holds_alternative<HistoryTail>(outcome), "a file that is there is read");
    const auto& tail = std::get<HistoryTail>(outcome);
    require(tail.isPartial == (content.size() > tailSize), "what is longer than a tail is partial");
    std::vector<std::string_view> lines;
    forEachLine(tail.lines, LineSelection::all, {}, [&](std::string_view line) { lines.push_back(line); });
    require(lines == expectedLines(content), "the lines are those of the whole file's end");
    return 0;
}
