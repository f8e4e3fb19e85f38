#pragma once

#include <cstddef>

namespace tallyfox::test {

/// Counts what the calling thread allocates through `operator new` during its lifetime. One at a time.
class HeapWatch {
public:
    HeapWatch();

    [[nodiscard]] std::size_t blocks() const; ///< allocated so far, freed or not
    [[nodiscard]] std::size_t bytes() const; ///< requested by them
    [[nodiscard]] std::size_t peak() const; ///< by how many bytes the memory held has grown at its highest

    [[nodiscard]] long long held() const; ///< by how many bytes the memory held has grown

private:
    std::size_t m_blocksBefore;
    std::size_t m_bytesBefore;
    long long m_heldBefore;
};

/// Lets one allocation of the calling thread fail: the `place`-th one, counted from 1, in its lifetime. One at a time.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t place);
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    [[nodiscard]] bool hasFailed() const; ///< whether there were that many
};

} // namespace tallyfox::test
