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

    [[nodiscard]] long long held() const; ///< by how many bytes the memory held has grown

private:
    std::size_t m_blocksBefore;
    std::size_t m_bytesBefore;
    long long m_heldBefore;
};

/// Lets one allocation of the calling thread fail: the `place`-th one, counted from 1, of those made while the object
/// lives. One at a time.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t place);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    [[nodiscard]] bool hasFailed() const; ///< whether there were as many
};

} // namespace tallyfox::test
