#pragma once

#include <cstddef>
#include <string_view>

namespace tallyfox::test {

/// Room for texts between two inaccessible pages: reading one byte before or after a text at the edge crashes the
/// program, in builds without sanitizers too.
class GuardedText {
public:
    /// Room for texts of at most `capacity` bytes.
    explicit GuardedText(std::size_t capacity);
    GuardedText(const GuardedText&) = delete;
    GuardedText& operator=(const GuardedText&) = delete;
    ~GuardedText();

    /// A copy of `text` whose last byte is the last one of the room. Valid until the next call.
    std::string_view atEnd(std::string_view text);
    /// A copy of `text` whose first byte is the first one of the room. Valid until the next call.
    std::string_view atBegin(std::string_view text);

private:
    std::size_t m_pageSize;
    std::size_t m_roomSize;
    char* m_pages;
};

} // namespace tallyfox::test
