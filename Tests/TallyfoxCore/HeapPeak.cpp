#include "TallyfoxCore/HeapPeak.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

thread_local long long heldBytes = 0;
thread_local long long mostBytes = 0;

void* allocate(std::size_t size) noexcept
{
    void* const memory = std::malloc(std::max(size, std::size_t{1}));
    if (memory != nullptr) {
        heldBytes += static_cast<long long>(::malloc_usable_size(memory));
        mostBytes = std::max(mostBytes, heldBytes);
    }
    return memory;
}

void release(void* memory) noexcept
{
    if (memory != nullptr)
        heldBytes -= static_cast<long long>(::malloc_usable_size(memory));
    std::free(memory);
}

} // namespace

// Every form with which single objects come and go: a sanitizer brings its own, and complains when the two mix.

void* operator new(std::size_t size)
{
    void* const memory = allocate(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void operator delete(void* memory) noexcept
{
    release(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    release(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    release(memory);
}

namespace tallyfox::test {

HeapPeak::HeapPeak()
    : m_before(heldBytes)
{
    mostBytes = heldBytes;
}

std::size_t HeapPeak::bytes() const
{
    return static_cast<std::size_t>(mostBytes - m_before);
}

} // namespace tallyfox::test
