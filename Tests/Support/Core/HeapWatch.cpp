#include "Support/HeapWatch.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <new>

// The whole test program takes its memory through these. They stand here and not in the support library, so that only
// the program that counts is linked with them.

namespace tallyfox::test {
namespace {

thread_local std::size_t blocksOfThread = 0;
thread_local std::size_t bytesOfThread = 0;
thread_local long long heldByThread = 0;
thread_local long long mostHeldByThread = 0;
thread_local std::size_t blocksUntilFailure = 0; ///< 0: none is to fail

void* allocateCounted(std::size_t size) noexcept
{
    if (blocksUntilFailure > 0 && --blocksUntilFailure == 0)
        return nullptr;
    ++blocksOfThread;
    bytesOfThread += size;
    void* const memory = std::malloc(size == 0 ? 1 : size);
    heldByThread += static_cast<long long>(::malloc_usable_size(memory));
    mostHeldByThread = std::max(mostHeldByThread, heldByThread);
    return memory;
}

void release(void* memory) noexcept
{
    heldByThread -= static_cast<long long>(::malloc_usable_size(memory));
    std::free(memory);
}

void* allocateOrThrow(std::size_t size)
{
    void* const memory = allocateCounted(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

} // namespace

HeapWatch::HeapWatch()
    : m_blocksBefore(blocksOfThread)
    , m_bytesBefore(bytesOfThread)
    , m_heldBefore(heldByThread)
{
    mostHeldByThread = heldByThread;
}

std::size_t HeapWatch::blocks() const
{
    return blocksOfThread - m_blocksBefore;
}

std::size_t HeapWatch::bytes() const
{
    return bytesOfThread - m_bytesBefore;
}

std::size_t HeapWatch::peak() const
{
    return static_cast<std::size_t>(mostHeldByThread - m_heldBefore);
}

long long HeapWatch::held() const
{
    return heldByThread - m_heldBefore;
}

FailingAllocation::FailingAllocation(std::size_t place)
{
    blocksUntilFailure = place;
}

FailingAllocation::~FailingAllocation()
{
    blocksUntilFailure = 0;
}

bool FailingAllocation::hasFailed() const
{
    return blocksUntilFailure == 0;
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
    tallyfox::test::release(memory);
}

void operator delete[](void* memory) noexcept
{
    tallyfox::test::release(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    tallyfox::test::release(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    tallyfox::test::release(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    tallyfox::test::release(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    tallyfox::test::release(memory);
}
