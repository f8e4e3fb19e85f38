#include "Support/AllocationCount.h"

#include <cstdlib>
#include <new>

// The whole test program takes its memory through these. They stand here and not in the support library, so that only
// the program that counts is linked with them.

namespace tallyfox::test {
namespace {

thread_local std::size_t blocksOfThread = 0;
thread_local std::size_t bytesOfThread = 0;

void* allocateCounted(std::size_t size) noexcept
{
    ++blocksOfThread;
    bytesOfThread += size;
    return std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size)
{
    void* const memory = allocateCounted(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

AllocationCount::AllocationCount()
    : m_blocksBefore(blocksOfThread)
    , m_bytesBefore(bytesOfThread)
{ }

std::size_t AllocationCount::blocks() const
{
    return blocksOfThread - m_blocksBefore;
}

std::size_t AllocationCount::bytes() const
{
    return bytesOfThread - m_bytesBefore;
}

} // namespace tallyfox::test

void* operator new(std::size_t size)
{
    return tallyfox::test::allocateOrThrow(size);
}

void* operator new[](std::size_t size)
{
    return tallyfox::test::allocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return tallyfox::test::allocateCounted(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return tallyfox::test::allocateCounted(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
