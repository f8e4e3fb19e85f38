#pragma once

#include <cstddef>

namespace tallyfox::test {

/// Watches what the calling thread takes from the heap through `operator new` while the object lives. One at a time.
class HeapWatch {
public:
    HeapWatch();

    [[nodiscard]] std::size_t blocks() const; ///< taken so far, given back or not
    [[nodiscard]] std::size_t bytes() const; ///< asked for in them
    [[nodiscard]] std::size_t peak() const; ///< by how many bytes the memory held has grown at its highest

private:
    std::size_t m_blocksBefore;
    std::size_t m_bytesBefore;
    long long m_heldBefore;
};

} // namespace tallyfox::test
