#pragma once

#include "../io/Snitcher.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// Finding keys among bytes that are not KLV: a run-in, or rubbish between two triplets.
namespace TamrelMxf {

/// Moves `position` to the next place at or behind it where 06 0E 2B stands, or to 5 bytes before the end when
/// there is none, and reports the range that was stepped over as a warning, if any was.
/// \param buffer    `length` bytes, borrowed
/// \param position  in bytes from the start of the buffer, not negative
void SkipNonKlvData(const std::uint8_t* buffer, std::int64_t length, std::int64_t& position,
                    const CLoggerT<CSnitcher>& logger);

/// Moves `position` to the next place at or behind it where a key begins (06 0E 2B 34).
/// \return false when there is none before the last bytes of the buffer; `position` is then where to go on once
///   there are more
bool SkipToKey(std::span<const std::uint8_t> buffer, std::int64_t& position, const CLoggerT<CSnitcher>& logger);

/// The place of the first partition pack that the KLVs from `position` on lead to; what is not KLV is skipped.
/// \return its place, the pack itself may be cut short by the end of the buffer; nothing when the buffer ends or
///   a KLV reaches past it first; `position` is then where to go on once there are more
std::optional<std::int64_t> WalkToPartitionPack(std::span<const std::uint8_t> buffer, std::int64_t& position,
                                                const CLoggerT<CSnitcher>& logger);

/// The first place where the bytes of a partition pack key stand, whatever surrounds them.
std::optional<std::int64_t> SearchPartitionPack(std::span<const std::uint8_t> buffer);

} // namespace TamrelMxf
