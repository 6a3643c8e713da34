#include "bench/CountingHeap.h"

#include <algorithm>
#include <cerrno>
#include <malloc.h>

// The C library's own allocator, which the functions below stand in front of while bytes are counted.
extern "C" {
void* __libc_malloc(std::size_t size);                          // NOLINT: glibc's names
void* __libc_calloc(std::size_t count, std::size_t size);       // NOLINT
void* __libc_realloc(void* block, std::size_t size);            // NOLINT
void* __libc_memalign(std::size_t alignment, std::size_t size); // NOLINT
void __libc_free(void* block);                                  // NOLINT
}

namespace {

bool counting = false;
std::size_t inUse = 0, highest = 0;
constexpr std::size_t kBlockHead = 8; ///< what the allocator adds to each block

void* taken(void* block)
{
    if (counting && block != nullptr) {
        inUse += malloc_usable_size(block) + kBlockHead;
        highest = std::max(highest, inUse);
    }
    return block;
}

void given(void* block)
{
    if (counting && block != nullptr) inUse -= malloc_usable_size(block) + kBlockHead;
}

} // namespace

namespace bench {

void countHeap()
{
    inUse = highest = 0;
    counting = true;
}

std::size_t countedPeak()
{
    counting = false;
    return highest;
}

} // namespace bench

extern "C" void* malloc(std::size_t size) noexcept
{
    return taken(__libc_malloc(size));
}
extern "C" void* calloc(std::size_t count, std::size_t size) noexcept
{
    return taken(__libc_calloc(count, size));
}
extern "C" void* realloc(void* block, std::size_t size) noexcept
{
    given(block);
    return taken(__libc_realloc(block, size));
}
extern "C" int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept
{
    *block = taken(__libc_memalign(alignment, size));
    return *block == nullptr ? ENOMEM : 0;
}
extern "C" void free(void* block) noexcept
{
    given(block);
    __libc_free(block);
}
