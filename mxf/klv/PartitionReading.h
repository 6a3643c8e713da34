#pragma once

#include "../io/MediaSource.h"
#include "../labels/UlDict.h"
#include "PartitionPack.h"

#include <cstdint>
#include <limits>
#include <memory>

/// Reading steps that the parts of the partition layer share. Positions are places in the source, in bytes.
namespace TamrelMxf {

/// A stated offset as a place in the source: less the run-in correction.
/// \return the position; -1 when it lies outside of what a source can address
constexpr std::int64_t ToPosition(std::uint64_t statedOffset, std::int64_t runInCorrection)
{
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    std::int64_t position = 0;
    if (statedOffset > kMost ||
        __builtin_sub_overflow(static_cast<std::int64_t>(statedOffset), runInCorrection, &position))
        return -1;
    return position < 0 ? -1 : position;
}

/// Reads key and length at `position`, also when fewer than 32 bytes are left there.
/// \return 0, or -6 or -9 as SKlvHeader::Parse; -9 also when the source cannot be sought or read
int ReadKlvHeader(CMediaSource& source, std::int64_t position, SKlvHeader& header);

/// Loads the partition pack at `position`. Nothing but a pack of a sensible size is loaded into memory.
/// \return the pack; null when none can be read there
std::unique_ptr<CPartitionPack> ReadPartitionPackAt(CMediaSource& source, const CMxfUlDict& dict,
                                                    std::int64_t position);

/// The place of the first KLV behind `position` that is not fill; `position` itself when none is there.
std::int64_t SkipFill(CMediaSource& source, std::int64_t position);

/// The place of the first essence element of a partition: behind its pack, header metadata, index table and
/// the fill between them. \return -1 when no KLV stands there
std::int64_t FindEssenceStart(CMediaSource& source, const SPartitionExtent& partition);

} // namespace TamrelMxf
