#include "MemoryMeter.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t unlimited = std::numeric_limits<std::size_t>::max();

/// Of the process, as the operators are. The tests of this program run in one thread.
struct Account {
    bool isOpen = false;
    std::size_t limit = unlimited;
    std::size_t requests = 0;
    std::ptrdiff_t held = 0; ///< Below zero once something from before the start is given back.
    std::ptrdiff_t peak = 0;
};

constinit Account account;

void* allocate(std::size_t size) noexcept
{
    if (account.isOpen
        && size > account.limit
                - std::min(account.limit,
                    static_cast<std::size_t>(std::max<std::ptrdiff_t>(account.held, 0)))) {
        return nullptr;
    }
    void* const block = std::malloc(std::max<std::size_t>(size, 1));
    if (account.isOpen && block != nullptr) {
        ++account.requests;
        account.held += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
        account.peak = std::max(account.peak, account.held);
    }
    return block;
}

void release(void* block) noexcept
{
    if (account.isOpen && block != nullptr) {
        account.held -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
    }
    std::free(block);
}

void* allocateOrThrow(std::size_t size)
{
    void* const block = allocate(size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

} // namespace

void* operator new(std::size_t size)
{
    return allocateOrThrow(size);
}

void* operator new[](std::size_t size)
{
    return allocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void operator delete(void* block) noexcept
{
    release(block);
}

void operator delete[](void* block) noexcept
{
    release(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    release(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    release(block);
}

namespace KestryCore {

MemoryMeter::MemoryMeter()
{
    account = Account{};
    account.isOpen = true;
}

MemoryMeter::~MemoryMeter()
{
    account = Account{};
}

std::size_t MemoryMeter::peakBytes() const
{
    return static_cast<std::size_t>(account.peak);
}

std::size_t MemoryMeter::requests() const
{
    return account.requests;
}

void MemoryMeter::refuseBeyond(std::size_t bytes)
{
    account.limit = bytes;
}

} // namespace KestryCore
