#include "xml/ElementMemory.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace zanfcp {
namespace {

// The address sanitizer is to see each element on its own.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kBlocks = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kBlocks = false;
#else
constexpr bool kBlocks = true;
#endif
#else
constexpr bool kBlocks = true;
#endif

constexpr std::size_t kAlignedAt = 64U << 10U;
constexpr std::size_t kBlockBytes = kAlignedAt - 16; ///< the allocator's own head fits between two blocks

/// Begins at a multiple of kAlignedAt, so that it is found from the places in it.
struct alignas(ElementMemory::kAlignment) Block {
    /// Places that are in use; while a thread takes places of it, kTaking less those that were given back since.
    std::atomic<std::uint32_t> inUse = kTaking;

    static constexpr std::uint32_t kTaking = 1U << 30U;

    static Block* of(void* place)
    {
        return reinterpret_cast<Block*>(reinterpret_cast<std::uintptr_t>(place) & ~(kAlignedAt - 1)); // NOLINT
    }
    char* begin() { return reinterpret_cast<char*>(this + 1); }
    char* end() { return reinterpret_cast<char*>(this) + kBlockBytes; }
    void drop(std::uint32_t places)
    {
        if (inUse.fetch_sub(places, std::memory_order_acq_rel) == places) std::free(this);
    }
};

/// The block that this thread takes places of. Plain data: elements may die after the thread's other objects.
struct Taking {
    Block* block = nullptr;
    char* next = nullptr;
    char* end = nullptr;
    std::uint32_t taken = 0;
};
constinit thread_local Taking taking;

void leaveBlock()
{
    if (taking.block != nullptr) taking.block->drop(Block::kTaking - taking.taken);
    taking = {};
}

struct LeaveAtExit {
    ~LeaveAtExit() { leaveBlock(); }
};

void* takeFromNewBlock(std::size_t size)
{
    static thread_local const LeaveAtExit leave;
    static_cast<void>(leave);
    void* memory = nullptr; // aligned_alloc takes no such size everywhere
    if (::posix_memalign(&memory, kAlignedAt, kBlockBytes) != 0) throw std::bad_alloc();
    leaveBlock();
    Block* const block = new (memory) Block;
    taking = {.block = block, .next = block->begin() + size, .end = block->end(), .taken = 1};
    return block->begin();
}

} // namespace

void* ElementMemory::take(std::size_t size)
{
    if constexpr (!kBlocks) return ::operator new(size);
    size = (size + kAlignment - 1) & ~(kAlignment - 1);
    if (static_cast<std::size_t>(taking.end - taking.next) < size) return takeFromNewBlock(size);
    ++taking.taken;
    return std::exchange(taking.next, taking.next + size);
}

void ElementMemory::giveBack(void* place) noexcept
{
    if constexpr (!kBlocks) return ::operator delete(place);
    Block* const block = Block::of(place);
    block->drop(1);
    if (block != taking.block || block->inUse.load(std::memory_order_acquire) != Block::kTaking - taking.taken) return;
    // Nothing is left in it, so that it begins anew: elements that come and go do not use it up.
    block->inUse.store(Block::kTaking, std::memory_order_relaxed);
    taking.next = block->begin();
    taking.taken = 0;
}

} // namespace zanfcp
