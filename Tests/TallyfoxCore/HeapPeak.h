#pragma once

#include <cstddef>

namespace tallyfox::test {

/// Measures, from its construction on, by how much the memory that this thread holds through `operator new` grew at
/// its highest. One at a time.
class HeapPeak {
public:
    HeapPeak();

    [[nodiscard]] std::size_t bytes() const;

private:
    long long m_before;
};

} // namespace tallyfox::test
