#include "TallyfoxCore/Json/WordSearch.h"

#include "TallyfoxCore/Json/ByteScan.h"

#include <algorithm>

namespace tallyfox {

namespace {

constexpr std::size_t blockSize = 256;

bool isWordAt(std::string_view text, std::size_t position, std::string_view word)
{
    const std::string_view rest = text.substr(position + 1);
    return text[position] == '"' && rest.starts_with(word) && rest.substr(word.size()).starts_with('"');
}

/// Whether an escape for one of U+0050 to U+007F may begin at the position.
bool isLetterEscapeAt(std::string_view text, std::size_t position)
{
    const std::string_view escape = text.substr(position, 5);
    return escape.size() == 5 && escape.starts_with("\\u00") && escape[4] >= '5' && escape[4] <= '7';
}

bool isFind(std::string_view text, std::size_t position, std::string_view word)
{
    return isWordAt(text, position, word) || isLetterEscapeAt(text, position);
}

/// The first find in [`from`, `end`), searched one by one.
std::size_t findOneByOne(std::string_view text, std::size_t from, std::size_t end, std::string_view word)
{
    while (from < end && !isFind(text, from, word))
        ++from;
    return from < end ? from : text.npos;
}

/// Whether a position may be a find: both quotation marks and the first letter match, or it looks like an escape for a
/// letter. Without branches, so that it also works on vectors of bytes.
template <typename Byte, typename Letter>
[[gnu::always_inline]] inline auto mayBeFind(Byte here, Byte next, Byte fourAhead, Byte closing, Letter firstLetter)
{
    const auto isQuoted = (here == '"') & (next == firstLetter) & (closing == '"');
    const auto isEscape = (here == '\\') & (next == 'u') & (fourAhead >= '5') & (fourAhead <= '7');
    return isQuoted | isEscape;
}

/// The first find among the positions of the block.
std::size_t findInBlock(std::string_view text, std::size_t block, std::string_view word)
{
    const auto loadAt = [text](std::size_t position) { return byteScan::load(text.data() + position); };
    const std::size_t end = block + blockSize;
    for (std::size_t from = block; from < end; from += byteScan::width) {
        const auto mask = mayBeFind(loadAt(from), loadAt(from + 1), loadAt(from + 4), loadAt(from + 1 + word.size()),
                                    static_cast<unsigned char>(word.front()));
        const std::size_t first = byteScan::firstSet(mask);
        if (first == byteScan::width)
            continue;
        const std::size_t found = findOneByOne(text, from + first, from + byteScan::width, word);
        if (found != text.npos)
            return found;
    }
    return text.npos;
}

/// Whether any position of `block` may be a find. The compiler vectorises the loop.
[[gnu::always_inline]] inline bool mayBeInBlock(const unsigned char* block, unsigned char firstLetter,
                                                std::size_t wordSize)
{
    unsigned char found = 0;
    for (std::size_t index = 0; index < blockSize; ++index) {
        found |= static_cast<unsigned char>(
            mayBeFind(block[index], block[index + 1], block[index + 4], block[index + 1 + wordSize], firstLetter));
    }
    return found != 0;
}

/// The position of the first block from `from` on that may hold a find; past `lastBlock` if there is none.
[[gnu::always_inline]] inline std::size_t skipBlocks(const char* text, std::size_t from, std::size_t lastBlock,
                                                     std::string_view word)
{
    const auto firstLetter = static_cast<unsigned char>(word.front());
    // As unsigned char: comparisons of signed ones keep the compiler from vectorising.
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text);
    while (from <= lastBlock && !mayBeInBlock(bytes + from, firstLetter, word.size()))
        from += blockSize;
    return from;
}

using SkipBlocks = std::size_t (*)(const char*, std::size_t, std::size_t, std::string_view);

std::size_t skipBlocksAnywhere(const char* text, std::size_t from, std::size_t lastBlock, std::string_view word)
{
    return skipBlocks(text, from, lastBlock, word);
}

#if defined(__x86_64__)

/// The same code for processors with AVX2, where it takes half the time.
[[gnu::target("avx2")]] std::size_t skipBlocksWithAvx2(const char* text, std::size_t from, std::size_t lastBlock,
                                                       std::string_view word)
{
    return skipBlocks(text, from, lastBlock, word);
}

SkipBlocks skipBlocksHere()
{
    return __builtin_cpu_supports("avx2") ? skipBlocksWithAvx2 : skipBlocksAnywhere;
}

#else

SkipBlocks skipBlocksHere()
{
    return skipBlocksAnywhere;
}

#endif

} // namespace

std::size_t findJsonWord(std::string_view text, std::size_t from, std::string_view word)
{
    const std::size_t bytesPerBlock = blockSize + std::max(word.size() + 1, std::size_t{4});
    const SkipBlocks skip = skipBlocksHere();
    while (from + bytesPerBlock <= text.size()) {
        from = skip(text.data(), from, text.size() - bytesPerBlock, word);
        if (from + bytesPerBlock > text.size())
            break;
        const std::size_t found = findInBlock(text, from, word);
        if (found != text.npos)
            return found;
        from += blockSize;
    }
    return findOneByOne(text, from, text.size(), word);
}

} // namespace tallyfox
