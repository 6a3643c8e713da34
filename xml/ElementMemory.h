#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace zanfcp {

/// Memory for elements. A document is made of a great many of them, which are made one after the other and mostly die
/// together: so they lie side by side in blocks of 64 KiB, one block for each thread that is making some, and a block
/// goes back to the allocator when the last element in it is gone. One that stays keeps its block.
/// From any thread; what one thread took may be given back by another.
class ElementMemory {
public:
    static constexpr std::size_t kAlignment = 16;
    static constexpr std::size_t kLargest = 1024; ///< bytes that can be taken at once

    /// Never null; aligned as kAlignment says. \throws std::bad_alloc
    static void* take(std::size_t size);
    /// What take() gave, once.
    static void giveBack(void* place) noexcept;
};

/// The same as an allocator of the standard library. Has no state.
template <typename T> struct ElementAllocator {
    using value_type = T;

    ElementAllocator() = default;
    template <typename U> ElementAllocator(const ElementAllocator<U>&) noexcept {} // NOLINT: as allocators convert

    T* allocate(std::size_t count)
    {
        static_assert(sizeof(T) <= ElementMemory::kLargest && alignof(T) <= ElementMemory::kAlignment);
        if (count != 1) throw std::bad_alloc(); // elements are made one at a time
        return static_cast<T*>(ElementMemory::take(sizeof(T)));
    }
    void deallocate(T* place, std::size_t) noexcept { ElementMemory::giveBack(place); }
    template <typename U> bool operator==(const ElementAllocator<U>&) const noexcept { return true; }
};

/// std::make_shared for elements.
template <typename Element, typename... Arguments> std::shared_ptr<Element> makeElement(Arguments&&... arguments)
{
    return std::allocate_shared<Element>(ElementAllocator<Element>(), std::forward<Arguments>(arguments)...);
}

} // namespace zanfcp
