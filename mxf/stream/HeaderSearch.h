#pragma once

#include "../klv/PartitionPack.h"
#include "../labels/UlDict.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace TamrelMxf {

/// Bytes that a search leaves at the end of a slice: a key and the start of its length may begin there.
inline constexpr std::size_t kSearchTail = 24;
/// A KLV of more bytes in all is not waited for: the search goes on inside it.
inline constexpr std::int64_t kMostBytesWaitedFor = std::int64_t{1} << 20;

/// What a search through one slice came to.
struct SHeaderSearch {
    std::size_t consumed = 0;             ///< bytes at the front that need not be seen again
    bool isFound = false;                 ///< the slice has a partition with header metadata at `consumed`
    bool isDamaged = false;               ///< the pack at `consumed` is there, and cannot be read
    std::unique_ptr<CPartitionPack> pack; ///< when found; its place counts from the start of the slice
    /// When found: the bytes of pack, header metadata and index table together, the pack taken up to the next line of
    /// its KLV alignment grid. The largest number when that has no end inside 63 bits.
    std::int64_t headerSize = 0;
};

/// Looks for the first partition pack that a header can be collected from: a header partition, or a body partition
/// that carries header metadata. Body partitions without are stepped over; anything else is searched byte by byte.
/// \param slice  what is queued of the stream
SHeaderSearch SearchHeader(std::span<const std::uint8_t> slice, const CMxfUlDict& dict);

} // namespace TamrelMxf
