#pragma once

#include "Identifiers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace TamrelMxf {

/// The Instance UIDs of a batch or array of references (UInt32 count, UInt32 entry size, 16-byte entries), as far
/// as the bytes reach. \return the entries without the header; a whole multiple of 16 bytes
inline std::span<const std::uint8_t> ReferenceEntries(std::span<const std::uint8_t> batch)
{
    constexpr std::size_t kHeader = 8;
    if (batch.size() < kHeader) return {};
    std::size_t count = 0;
    for (const std::uint8_t byte : batch.first(4))
        count = (count << 8) | byte;
    const std::size_t whole = (batch.size() - kHeader) / SUUID::kSize;
    return batch.subspan(kHeader, std::min(count, whole) * SUUID::kSize);
}

/// The objects that one set owns through the strong references stored under a local tag.
/// An import makes one object for each reference, empty but for its Instance UID; the reader of the header
/// metadata completes it from the set that carries the Instance UID.
/// \tparam T         has a member `instanceUid`
/// \tparam LocalTag  of the item that holds the references
template <typename T, std::uint16_t LocalTag> class CObjectList {
public:
    static constexpr std::uint16_t kLocalTag = LocalTag;

    /// Appends an object for each entry of the batch.
    /// \param batch  the value of the item, borrowed for the call; entries that are cut off are left out
    /// \param clear  true: the objects held are destroyed first
    /// \return 0; -2 for a null batch, which changes nothing
    int Import(std::span<const std::uint8_t> batch, bool clear)
    {
        if (batch.data() == nullptr) return -2;
        if (clear) objects_.clear();
        auto entries = ReferenceEntries(batch);
        objects_.reserve(objects_.size() + entries.size() / SUUID::kSize);
        for (; !entries.empty(); entries = entries.subspan(SUUID::kSize))
            objects_.emplace_back().instanceUid = SUUID::From(entries.data());
        return 0;
    }

    /// Destroys the objects that `predicate` picks and gives their memory back.
    template <typename Predicate> void Drop(Predicate predicate)
    {
        if (std::erase_if(objects_, predicate) != 0) objects_.shrink_to_fit();
    }
    T& Append(T object) { return objects_.emplace_back(std::move(object)); }

    std::size_t size() const { return objects_.size(); }
    bool empty() const { return objects_.empty(); }
    T& operator[](std::size_t index) { return objects_[index]; }
    const T& operator[](std::size_t index) const { return objects_[index]; }
    T& front() { return objects_.front(); }
    const T& front() const { return objects_.front(); }
    auto begin() { return objects_.begin(); }
    auto end() { return objects_.end(); }
    auto begin() const { return objects_.begin(); }
    auto end() const { return objects_.end(); }

private:
    std::vector<T> objects_;
};

} // namespace TamrelMxf
