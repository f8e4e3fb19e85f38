#pragma once

#include <cstddef>

namespace tallyfox::test {

/// Counts what the calling thread takes from the heap while the object lives.
class AllocationCount {
public:
    AllocationCount();

    [[nodiscard]] std::size_t blocks() const;
    [[nodiscard]] std::size_t bytes() const;

private:
    std::size_t m_blocksBefore;
    std::size_t m_bytesBefore;
};

} // namespace tallyfox::test
