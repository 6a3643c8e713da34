#pragma once

#include "../io/MediaSource.h"
#include "../klv/PartitionPack.h"
#include "../labels/UlDict.h"

#include <cstdint>

namespace TamrelMxf {

/// How much there is of one stream in a file that does not say it, mostly because it is still being written. Keys and
/// lengths are stepped through from the end of the header partition on, no value is read. Each look goes on where the
/// last one stopped.
class CEssenceWalk {
public:
    /// What is there of the stream.
    struct SExtent {
        std::int64_t elements = 0; ///< that are there whole
        std::int64_t bytes = 0;    ///< of their values and of what there is of the last one, if that stands open
    };

    /// \param trackNumber  of the stream: bytes 13 to 16 of its element keys; 0 takes every element of the container
    CEssenceWalk(std::uint32_t bodySid, std::uint32_t trackNumber) : bodySid_{bodySid}, trackNumber_{trackNumber} {}

    /// Counts what has come since the last look. What is still being written is left for the next one, but for the
    /// value of an element that is so far open: it may be the only one (clip wrapping).
    /// \param source  moved
    /// \param header  the header partition: the walk begins behind it
    SExtent Look(CMediaSource& source, const CMxfUlDict& dict, const CPartitionPack& header);

private:
    bool Begin(CMediaSource& source, const CPartitionPack& header);
    bool Step(CMediaSource& source, const CMxfUlDict& dict, std::int64_t size);
    bool IsOurs(const SUl& key) const;

    std::uint32_t bodySid_;
    std::uint32_t trackNumber_;
    std::int64_t position_ = -1; // of the next KLV; -1: not begun
    std::uint32_t partitionSid_ = 0;
    SExtent whole_;
    std::int64_t openBytes_ = 0; // of an element that has not ended yet
};

} // namespace TamrelMxf
