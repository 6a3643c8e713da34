#include "tests/media/quicktime/CountedAllocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<std::uint64_t> allocated{0};
} // namespace

void* operator new(std::size_t size)
{
    allocated += size;
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc{};
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

std::uint64_t zanfcp::test::allocatedBytes()
{
    return allocated;
}
